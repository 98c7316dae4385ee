#pragma once

#include "Platform/JSON.h"

#include <string_view>
#include <vector>

namespace korvane::acs {

/// The members of a CRes that make a screen; those that every CRes has, the ACS sets itself.
[[nodiscard]] std::vector<std::string_view> screenMembers();

/// A screen's members as a whole CRes. What the ACS adds is good; HTML is sealed as Base64URL.
[[nodiscard]] JSON messageOf(const JSON& screen);

} // namespace korvane::acs
