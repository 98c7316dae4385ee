#include "Platform/Text.h"

#include "Platform/JSON.h"
#include "Platform/Unicode.h"

#include <algorithm>
#include <cstdio>
#include <optional>

namespace korvane {

namespace {

/// In ASCII only CR LF makes one character of two octets, so that anything without CR counts by octets. A block
/// is looked at without a branch, which a compiler does many octets at a time. A char has a sign on some machines only, so
/// that it is given one.
bool countsByOctets(std::string_view text) {
    constexpr std::size_t kBlock = 64;
    const auto isOther = [](char octet) { return static_cast<signed char>(octet) <= 0 || octet == '\r'; };
    for (; text.size() >= kBlock; text.remove_prefix(kBlock)) {
        const char* const block = text.data();
        unsigned char others = 0;
        for (std::size_t index = 0; index < kBlock; ++index)
            others = static_cast<unsigned char>(others | static_cast<unsigned char>(isOther(block[index])));
        if (others != 0) return false;
    }
    return std::none_of(text.begin(), text.end(), isOther);
}

/// A code point that must not go out as it is, and how many octets of UTF-8 it has.
struct Control {
    unsigned codePoint = 0;
    std::size_t octets = 0;
};

std::optional<Control> controlAtStart(std::string_view text) {
    constexpr unsigned kSpace = 0x20;
    constexpr unsigned kDelete = 0x7F;
    constexpr std::string_view kLineSeparator = "\u2028";
    constexpr std::string_view kParagraphSeparator = "\u2029";
    const auto octet = [text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    if (octet(0) < kSpace || octet(0) == kDelete) return Control{octet(0), 1};
    // C1 ends below the no-break space.
    if (octet(0) == 0xC2 && octet(1) < 0xA0) return Control{octet(1), 2};
    if (text.starts_with(kLineSeparator)) return Control{0x2028, kLineSeparator.size()};
    if (text.starts_with(kParagraphSeparator)) return Control{0x2029, kParagraphSeparator.size()};
    return std::nullopt;
}

bool isContinuation(char octet) {
    return (static_cast<unsigned char>(octet) & 0xC0U) == 0x80U;
}

} // namespace

std::size_t characterCount(std::string_view text) {
    if (countsByOctets(text)) return text.size();
    return unicode::clusterCount(text);
}

std::string repairedUtf8(std::string_view text) {
    return unicode::repaired(text);
}

std::string escapedControls(std::string_view text, LineBreaks lineBreaks) {
    if (!isUtf8(text)) return escapedControls(repairedUtf8(text), lineBreaks);
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const auto control = controlAtStart(text);
        const std::size_t octets = control ? control->octets : 1;
        const bool isKept = !control || (lineBreaks == LineBreaks::kept && control->codePoint == '\n');
        if (isKept) {
            result += text.substr(0, octets);
        } else {
            char number[8];
            std::snprintf(number, sizeof number, "\\u%04x", control->codePoint);
            result += number;
        }
        text.remove_prefix(octets);
    }
    return result;
}

std::string withBoundedMarks(std::string_view text) {
    constexpr int kMostInARow = 30;
    constexpr unsigned char kFirstOctetOfMarks = 0xCC; // of U+0300
    std::string result;
    result.reserve(text.size());
    int inARow = 0;
    for (unicode::CodePoint point; !text.empty(); text.remove_prefix(point.octets)) {
        const bool canBeMark = static_cast<unsigned char>(text.front()) >= kFirstOctetOfMarks;
        point = canBeMark ? unicode::firstCodePoint(text) : unicode::CodePoint{1, false};
        inARow = point.isCombining ? inARow + 1 : 0;
        if (inARow <= kMostInARow) result += text.substr(0, point.octets);
    }
    return result;
}

std::string firstCharacters(std::string_view text, std::size_t count) {
    if (!isUtf8(text)) return firstCharacters(repairedUtf8(text), count);
    std::size_t end = 0;
    for (; count > 0 && end < text.size(); --count) {
        ++end;
        while (end < text.size() && isContinuation(text[end]))
            ++end;
    }
    return std::string(text.substr(0, end));
}

bool isRightToLeft(std::string_view text) {
    return unicode::isRightToLeft(text);
}

std::string joined(const std::vector<std::string>& texts) {
    std::string result;
    for (const std::string& text : texts) {
        if (&text != &texts.front()) result += ',';
        result += text;
    }
    return result;
}

std::vector<std::vector<std::string>> regularExpressionMatches(std::string_view pattern,
                                                               std::string_view text) {
    return unicode::matches(pattern, text);
}

} // namespace korvane
