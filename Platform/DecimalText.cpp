#include "Platform/DecimalText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace korvane {

namespace {

bool hasExponent(double value) {
    constexpr double kSmallest = 1e-4;
    constexpr double kLargest = 0x1p54;
    const double magnitude = std::abs(value);
    return magnitude > kLargest || (magnitude < kSmallest && magnitude > 0);
}

} // namespace

std::string decimalText(double value) {
    const auto format = hasExponent(value) ? std::chars_format::scientific : std::chars_format::fixed;
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format).ptr;
    std::string text(buffer.data(), end);
    const bool isWhole = std::isfinite(value) && text.find_first_of(".e") == std::string::npos;
    return isWhole ? text + ".0" : text;
}

} // namespace korvane
