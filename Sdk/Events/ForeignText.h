#pragma once

#include "Platform/Text.h"

#include <string>
#include <string_view>

namespace korvane {

/// What another party wrote, as far as it goes into a text for the application: its first 1,000 characters.
[[nodiscard]] inline std::string foreignText(std::string_view text) {
    constexpr std::size_t kMost = 1000;
    return firstCharacters(text, kMost);
}

} // namespace korvane
