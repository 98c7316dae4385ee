#pragma once

#include <string>
#include <string_view>

namespace korvane::challenge {

/// The names of the failures that a text of the library numbers, as in "(Korvane.JOSEError error 9.)": a
/// sentence for each that is known, or an empty text.
[[nodiscard]] std::string namesOfFailures(std::string_view text);

} // namespace korvane::challenge
