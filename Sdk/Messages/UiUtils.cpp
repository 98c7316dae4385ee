#include "Sdk/Messages/UiUtils.h"

#include "Platform/Text.h"

#include <algorithm>
#include <array>

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
        const auto end = std::find_if_not(text.begin(), text.end(), isBase64URL);
        const auto length = static_cast<std::size_t>(end - text.begin());
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
    return !text.empty() && std::all_of(text.begin(), text.end(), isBase64URL);
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
