#include "Platform/View/TextMeasurer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace korvane {

namespace {

struct CodePointRange {
    char32_t first;
    char32_t last;
};

constexpr std::array kWithoutWidth{CodePointRange{0x300, 0x36F}, CodePointRange{0x200B, 0x200F},
                                   CodePointRange{0xFE00, 0xFE0F}};

constexpr std::array kWide{CodePointRange{0x1100, 0x115F},   CodePointRange{0x2E80, 0xA4CF},
                           CodePointRange{0xAC00, 0xD7A3},   CodePointRange{0xF900, 0xFAFF},
                           CodePointRange{0xFE30, 0xFE6F},   CodePointRange{0xFF00, 0xFF60},
                           CodePointRange{0x1F300, 0x1FAFF}, CodePointRange{0x20000, 0x3FFFD}};

template <std::size_t count>
bool isIn(const std::array<CodePointRange, count>& ranges, char32_t point) {
    return std::ranges::any_of(
        ranges, [point](CodePointRange range) { return range.first <= point && point <= range.last; });
}

/// Takes the next code point off a text; bytes that are no UTF-8 count as one each.
char32_t takeCodePoint(std::string_view& text) {
    const auto byte = [&text](std::size_t index) { return static_cast<unsigned char>(text[index]); };
    const unsigned lead = byte(0);
    const std::size_t length = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (length == 1 || text.size() < length) {
        text.remove_prefix(1);
        return lead;
    }
    char32_t point = lead & (0xFFU >> (length + 1));
    for (std::size_t index = 1; index < length; ++index)
        point = (point << 6U) | (byte(index) & 0x3FU);
    text.remove_prefix(length);
    return point;
}

double advance(char32_t point, double size) {
    if (point < 0x300) return FixedAdvances::kAdvance * size;
    if (isIn(kWithoutWidth, point)) return 0;
    return (isIn(kWide, point) ? FixedAdvances::kWideAdvance : FixedAdvances::kAdvance) * size;
}

/// Breaks lines at blanks, and within words that are too long for a line of their own.
class Lines {
public:
    Lines(double maximumWidth, int maximumLines) : width_(maximumWidth), most_(maximumLines) {}

    void add(char32_t point, double advance) {
        if (point == '\n') return breakAfterWord();
        if (point == ' ') {
            line_ += word_ + advance;
            word_ = 0;
            return;
        }
        if (line_ > 0 && line_ + word_ + advance > width_) close(std::exchange(line_, 0));
        if (line_ == 0 && word_ > 0 && word_ + advance > width_) close(std::exchange(word_, 0));
        word_ += advance;
    }

    void breakAfterWord() {
        close(line_ + word_);
        line_ = word_ = 0;
    }

    [[nodiscard]] int count() const { return most_ > 0 ? std::min(count_, most_) : count_; }
    [[nodiscard]] double widest() const { return widest_; }

private:
    void close(double width) {
        if (most_ <= 0 || count_ < most_) widest_ = std::max(widest_, std::min(width, width_));
        ++count_;
    }

    double width_;
    int most_;
    double line_ = 0; // up to the last blank
    double word_ = 0; // since then
    double widest_ = 0;
    int count_ = 0;
};

} // namespace

CGSize FixedAdvances::size(std::string_view text, const UIFont& font, double maximumWidth,
                           int maximumLines) const {
    Lines lines(maximumWidth, maximumLines);
    while (!text.empty()) {
        const char32_t point = takeCodePoint(text);
        lines.add(point, advance(point, font.pointSize()));
    }
    lines.breakAfterWord();
    return {lines.widest(), lines.count() * kLineHeight * font.pointSize()};
}

} // namespace korvane
