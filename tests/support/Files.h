#pragma once

#include "Platform/Bytes.h"

#include <string>

namespace korvane {

/// The whole of a file of the tests; a missing one ends the test program.
[[nodiscard]] std::string readFile(const std::string& path);

/// The DER bytes of a PEM file's first block.
[[nodiscard]] Bytes readPemAsDer(const std::string& path);

} // namespace korvane
