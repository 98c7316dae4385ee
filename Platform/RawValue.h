#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace korvane {

/// To be specialised beside each enumeration that stands for texts: `texts`, in the enumeration's order.
template <class Enumeration>
struct RawValues;

template <class Enumeration>
concept HasRawValues = requires {
    RawValues<Enumeration>::texts;
};

/// The text of a case.
template <HasRawValues Enumeration>
[[nodiscard]] constexpr std::string_view rawValue(Enumeration value) {
    return RawValues<Enumeration>::texts[static_cast<std::size_t>(value)];
}

/// The case of a text, or no value.
template <HasRawValues Enumeration>
[[nodiscard]] constexpr std::optional<Enumeration> fromRawValue(std::string_view text) {
    constexpr auto& texts = RawValues<Enumeration>::texts;
    for (std::size_t index = 0; index < texts.size(); ++index)
        if (texts[index] == text) return static_cast<Enumeration>(index);
    return std::nullopt;
}

} // namespace korvane
