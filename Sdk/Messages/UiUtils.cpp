#include "Sdk/Messages/UiUtils.h"

#include "Platform/Text.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace korvane {

namespace {

constexpr auto kIsBase64URL = [] {
    std::array<bool, 256> table{};
    for (const char character :
         std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_"))
        table[static_cast<unsigned char>(character)] = true;
    return table;
}();

bool isBase64URL(char character) {
    return kIsBase64URL[static_cast<unsigned char>(character)];
}

/// Eight characters at once, each in an octet of a word; an answer is in the top bit of each octet.
using Word = std::uint64_t;
using Words = std::array<Word, 4>;

constexpr Word kEach = 0x0101010101010101;
constexpr Word kTopBits = 0x80 * kEach;

/// Which octets are `first` to `last`. All octets are below 0x80, and so are the limits, so that no sum
/// carries into the next octet.
constexpr Word within(Word octets, unsigned char first, unsigned char last) {
    const Word fromFirst = octets + (0x80U - first) * kEach;
    const Word beyondLast = octets + (0x7FU - last) * kEach;
    return fromFirst & ~beyondLast;
}

constexpr Word areBase64URL(Word characters) {
    const Word octets = characters & ~kTopBits;
    const Word lowerCased = octets | (0x20 * kEach);
    const Word known = within(lowerCased, 'a', 'z') | within(octets, '0', '9') | within(octets, '-', '-') |
                       within(octets, '_', '_');
    return known & ~characters & kTopBits;
}

/// How many characters of the alphabet the text begins with.
std::size_t base64URLPrefixLength(std::string_view text) {
    std::size_t length = 0;
    for (Words words{}; text.size() - length >= sizeof(Words); length += sizeof(Words)) {
        std::memcpy(words.data(), text.data() + length, sizeof(Words));
        Word all = kTopBits;
        for (const Word word : words)
            all &= areBase64URL(word);
        if (all != kTopBits) break;
    }
    while (length < text.size() && isBase64URL(text[length]))
        ++length;
    return length;
}

/// The line terminators before which "$" matches at the end of a text (UTS 18 section 1.6), in UTF-8.
constexpr std::array<std::string_view, 8> kLineTerminators{
    "\r\n", "\n", "\r", "\v", "\f", "\xC2\x85", "\xE2\x80\xA8", "\xE2\x80\xA9"};

std::string_view withoutLineTerminator(std::string_view text) {
    for (const std::string_view terminator : kLineTerminators)
        if (text.ends_with(terminator)) return text.substr(0, text.size() - terminator.size());
    return text;
}

} // namespace

bool validateJWE(std::string_view text) {
    constexpr std::size_t kPartCount = 5;
    constexpr std::size_t kEncryptedKeyPart = 1;
    text = withoutLineTerminator(text);
    for (std::size_t part = 0; part < kPartCount; ++part) {
        const std::size_t length = base64URLPrefixLength(text);
        if (length == 0 && part != kEncryptedKeyPart) return false;
        text.remove_prefix(length);
        if (part + 1 == kPartCount) return text.empty();
        if (!text.starts_with('.')) return false;
        text.remove_prefix(1);
    }
    return false;
}

bool validateBase64url(std::string_view text) {
    text = withoutLineTerminator(text);
    return !text.empty() && base64URLPrefixLength(text) == text.size();
}

std::string base64urlToBase64(std::string_view text) {
    std::string base64(text);
    std::replace(base64.begin(), base64.end(), '-', '+');
    std::replace(base64.begin(), base64.end(), '_', '/');
    const std::size_t tail = characterCount(base64) % 4;
    if (tail != 0) base64.append(4 - tail, '=');
    return base64;
}

std::vector<std::vector<std::string>> matchingStrings(std::string_view text, std::string_view regex) {
    return regularExpressionMatches(regex, text);
}

} // namespace korvane
