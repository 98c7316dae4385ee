#include "Ui/Customisation/Customization.h"

#include "Platform/LetterCase.h"
#include "Platform/Text.h"

#include <algorithm>
#include <charconv>

namespace korvane {

namespace {

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(kWhiteSpace);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kWhiteSpace) - first + 1);
}

/// Behind blanks, as far as there are digits; 0 without any.
unsigned scannedHexadecimal(std::string_view digits) {
    digits.remove_prefix(std::min(digits.find_first_not_of(kWhiteSpace), digits.size()));
    if (digits.starts_with("0X")) digits.remove_prefix(2);
    unsigned value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    return value;
}

} // namespace

Customization::Customization(FontValues font, std::optional<UIColor> itsTextColor) : textColor(itsTextColor) {
    setTextFont(std::move(font));
}

void Customization::setTextFont(FontValues font) {
    textFontName = std::move(font.name);
    textFontSize = font.size;
    textFontWeight = font.weight;
}

std::optional<UIColor> hexStringToUIColor(std::string_view hex) {
    constexpr std::size_t kDigits = 6;
    const std::string upper = uppercased(std::string(trimmed(hex)));
    std::string_view digits = upper;
    if (digits.starts_with('#')) digits.remove_prefix(1);
    if (characterCount(digits) != kDigits) return std::nullopt;
    const unsigned value = scannedHexadecimal(digits);
    const auto component = [value](unsigned shift) { return ((value >> shift) & 0xFF) / 255.0; };
    return UIColor(component(16), component(8), component(0), 1.0);
}

} // namespace korvane
