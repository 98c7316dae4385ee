#pragma once

#include "Platform/Bytes.h"

#include <optional>
#include <string_view>

namespace korvane::acs {

/// The mark of an invented bank (`issuer`) or scheme (`ps`) as a PNG image (RFC 2083) on nothing, which stands on
/// light and on dark, at one of three densities, as in `issuer-high.png`.
/// @return no value for another name.
[[nodiscard]] std::optional<Bytes> makeLogo(std::string_view name);

} // namespace korvane::acs
