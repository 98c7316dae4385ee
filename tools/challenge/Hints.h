#pragma once

#include "Platform/Bytes.h"
#include "Platform/JSON.h"
#include "tools/challenge/Wire.h"

#include <string>

namespace korvane::challenge {

/// What the tool knows of a challenge beside its events.
struct Circumstances {
    const Wire& wire;
    /// The certificate that the ACS's chain must end in, in DER.
    const Bytes& root;
    /// As the challenge was started with it; may be empty.
    const std::string& signedContent;
};

/// What there is to say of an ending beside its own members: an answer that was no JWE, why a chain of
/// certificates is not trusted, the names of failures that texts number. Empty for nothing.
[[nodiscard]] std::string hintAt(const JSON& ending, const Circumstances& circumstances);

} // namespace korvane::challenge
