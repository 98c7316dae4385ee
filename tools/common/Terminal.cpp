#include "tools/common/Terminal.h"

#include "Platform/Security/Secret.h"
#include "Platform/Text.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace korvane::tools {

namespace {

struct Range {
    std::uint32_t first;
    std::uint32_t last;
};

/// All of them have at most three octets in UTF-8 and four hexadecimal digits.
constexpr std::array<Range, 7> kUnprintable{{
    {0x0000, 0x0009},
    {0x000B, 0x001F},
    {0x007F, 0x009F},
    {0x061C, 0x061C}, // the direction of Arabic letters
    {0x200E, 0x200F}, // other marks of direction
    {0x2028, 0x202E}, // ends of lines and paragraphs; embedding and overriding of directions
    {0x2066, 0x2069}, // isolation of directions
}};

/// One character of a text and the octets that it takes there.
struct Character {
    std::uint32_t code;
    std::size_t length;
};

/// The first character of a text that is UTF-8.
Character firstOf(std::string_view text) {
    const auto octet = [text](std::size_t index) {
        return static_cast<std::uint32_t>(static_cast<unsigned char>(text[index]));
    };
    const auto rest = [&octet](std::size_t index) { return octet(index) & 0x3FU; };
    if (octet(0) < 0x80) return {octet(0), 1};
    if (octet(0) < 0xE0) return {(octet(0) & 0x1FU) << 6U | rest(1), 2};
    if (octet(0) < 0xF0) return {(octet(0) & 0x0FU) << 12U | rest(1) << 6U | rest(2), 3};
    return {(octet(0) & 0x07U) << 18U | rest(1) << 12U | rest(2) << 6U | rest(3), 4};
}

bool isPrintable(std::uint32_t code) {
    return std::none_of(kUnprintable.begin(), kUnprintable.end(),
                        [code](const Range& range) { return code >= range.first && code <= range.last; });
}

void appendEscape(std::string& text, std::uint32_t code) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    text += "\\u";
    for (const unsigned shift : {12U, 8U, 4U, 0U})
        text += kDigits[code >> shift & 0x0FU];
}

std::string escaped(std::string_view utf8) {
    std::string result;
    result.reserve(utf8.size());
    while (!utf8.empty()) {
        const Character character = firstOf(utf8);
        if (isPrintable(character.code))
            result += utf8.substr(0, character.length);
        else
            appendEscape(result, character.code);
        utf8.remove_prefix(character.length);
    }
    return result;
}

} // namespace

std::string printable(std::string_view text) {
    return isUtf8(text) ? escaped(text) : escaped(repairedUtf8(text));
}

std::string jsonLine(const JSON& value) {
    std::string line = value.dump(-1, ' ', false, JSON::error_handler_t::replace) + '\n';
    // The writer has escaped what lies below U+0020, so that only DEL and what is not
    // ASCII is left to see to.
    const bool isPlain = std::all_of(line.begin(), line.end(),
                                     [](char octet) { return static_cast<unsigned char>(octet) < 0x7F; });
    if (isPlain) return line;
    std::string result = escaped(line);
    cleanse(line);
    return result;
}

} // namespace korvane::tools
