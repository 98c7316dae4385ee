#pragma once

#include "Sdk/Events/Events.h"

#include <string>

namespace korvane {

/// An error of the challenge protocol as it travels inside the library: a value, not a raised failure. `code`
/// is the protocol's error code.
struct KorvaneError {
    int code;
    std::string description;
    std::string details;

    /// The protocol's texts for a code. A code that has none gives 404, with the code asked for in the
    /// details.
    [[nodiscard]] static KorvaneError getErrorByCode(int code);

    friend bool operator==(const KorvaneError&, const KorvaneError&) = default;
};

/// The code as decimal text, and the description; the details are dropped.
[[nodiscard]] RuntimeErrorEvent convertKorvaneErrorToRuntimeError(const KorvaneError& error);

} // namespace korvane
