#pragma once

#include "Platform/Bytes.h"

#include <optional>
#include <string_view>

namespace korvane::acs {

/// A PNG image (RFC 2083) of one colour: `issuer` or `ps`, at one of three densities,
/// as in `issuer-high.png`.
/// @return no value for another name.
[[nodiscard]] std::optional<Bytes> makeLogo(std::string_view name);

} // namespace korvane::acs
