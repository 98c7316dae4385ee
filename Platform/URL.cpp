#include "Platform/URL.h"

namespace korvane {

namespace {

constexpr std::string_view kHexDigits = "0123456789ABCDEFabcdef";

/// RFC 3986 section 2: unreserved and reserved characters. "%" is looked at on its own.
constexpr std::string_view kUriCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~"
    ":/?#[]@!$&'()*+,;=";

bool isHexDigit(std::string_view text, std::size_t position) {
    return position < text.size() && kHexDigits.find(text[position]) != std::string_view::npos;
}

} // namespace

std::optional<URL> URL::make(std::string_view text) {
    if (text.empty()) return std::nullopt;
    for (std::size_t position = 0; position < text.size(); ++position) {
        const char character = text[position];
        const bool isEscape =
            character == '%' && isHexDigit(text, position + 1) && isHexDigit(text, position + 2);
        if (!isEscape && kUriCharacters.find(character) == std::string_view::npos) return std::nullopt;
    }
    return URL(text);
}

} // namespace korvane
