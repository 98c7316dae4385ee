#include "Platform/View/DrawnPart.h"

#include "Platform/Text.h"

namespace korvane {

namespace {

constexpr std::size_t kMostCodePoints = 4000;
constexpr std::size_t kMostBytes = std::size_t{16} << 10U;
constexpr std::string_view kEllipsis = "\u2026";

bool beginsCodePoint(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

} // namespace

std::string drawnPart(std::string_view text) {
    std::size_t end = 0; // the last place where an ellipsis still has room
    std::size_t points = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (beginsCodePoint(text[at])) {
            if (at + kEllipsis.size() <= kMostBytes && points < kMostCodePoints) end = at;
            ++points;
        }
        if (at >= kMostBytes || points > kMostCodePoints)
            return withBoundedMarks(text.substr(0, end)).append(kEllipsis);
    }
    return withBoundedMarks(text);
}

} // namespace korvane
