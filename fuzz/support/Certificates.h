#pragma once

#include "Platform/Bytes.h"

#include <string>

namespace korvane::fuzzing {

/// The fixed certificates that the seeds are made with: a root, whose key nobody has, and a leaf under it for
/// each key pair of `Keys`. They end in 2126.
struct Certificates {
    Bytes root;
    Bytes rsaLeaf;
    Bytes ecLeaf;
    /// The leaves as "x5c" holds them.
    std::string rsaText;
    std::string ecText;
};

[[nodiscard]] const Certificates& certificates();

} // namespace korvane::fuzzing
