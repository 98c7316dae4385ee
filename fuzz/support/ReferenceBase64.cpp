#include "fuzz/support/ReferenceBase64.h"

#include <algorithm>

namespace korvane::fuzzing {

namespace {

int valueOf(char character, Alphabet alphabet) {
    if (character >= 'A' && character <= 'Z') return character - 'A';
    if (character >= 'a' && character <= 'z') return character - 'a' + 26;
    if (character >= '0' && character <= '9') return character - '0' + 52;
    if (character == '+' || (character == '-' && alphabet == Alphabet::url)) return 62;
    if (character == '/' || (character == '_' && alphabet == Alphabet::url)) return 63;
    return -1;
}

char characterOf(int value, Alphabet alphabet) {
    if (value < 26) return static_cast<char>('A' + value);
    if (value < 52) return static_cast<char>('a' + value - 26);
    if (value < 62) return static_cast<char>('0' + value - 52);
    if (value == 62) return alphabet == Alphabet::url ? '-' : '+';
    return alphabet == Alphabet::url ? '_' : '/';
}

} // namespace

std::optional<Bytes> referenceDecode(std::string_view text, Alphabet alphabet) {
    std::string padded(text);
    if (alphabet == Alphabet::url && padded.size() % 4 != 1)
        while (padded.size() % 4 != 0)
            padded += '=';
    if (padded.size() % 4 != 0) return std::nullopt;
    const std::size_t digits = std::min(padded.find('='), padded.size());
    const std::size_t padding = padded.size() - digits;
    if (padding > 2 || padded.find_first_not_of('=', digits) != std::string::npos) return std::nullopt;

    std::string bits;
    for (std::size_t index = 0; index < digits; ++index) {
        const int value = valueOf(padded[index], alphabet);
        if (value < 0) return std::nullopt;
        for (int bit = 5; bit >= 0; --bit)
            bits += ((value >> bit) & 1) != 0 ? '1' : '0';
    }
    Bytes bytes;
    for (std::size_t start = 0; start + 8 <= bits.size(); start += 8)
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(bits.substr(start, 8), nullptr, 2)));
    return bytes;
}

std::string referenceEncode(ByteView bytes, Alphabet alphabet) {
    std::string bits;
    for (const std::uint8_t byte : bytes)
        for (int bit = 7; bit >= 0; --bit)
            bits += ((byte >> bit) & 1) != 0 ? '1' : '0';
    while (bits.size() % 6 != 0)
        bits += '0';
    std::string text;
    for (std::size_t start = 0; start < bits.size(); start += 6)
        text += characterOf(std::stoi(bits.substr(start, 6), nullptr, 2), alphabet);
    if (alphabet == Alphabet::ordinary)
        while (text.size() % 4 != 0)
            text += '=';
    return text;
}

} // namespace korvane::fuzzing
