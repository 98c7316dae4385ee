#include "Sdk/Messages/MessageType.h"

#include "Sdk/Messages/UiUtils.h"

#include <algorithm>
#include <optional>

namespace korvane {

namespace {

constexpr std::string_view kName = "messageType\"";
constexpr std::size_t kTypeLength = 4;

/// The longest text that decides about one place: the name, a blank, ":", a blank, a quote and the type.
constexpr std::size_t kWindow = kName.size() + 1 + 1 + 1 + 1 + kTypeLength;

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isWordCharacter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

void skipBlank(std::string_view& text) {
    if (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
}

bool skip(std::string_view& text, char expected) {
    if (!text.starts_with(expected)) return false;
    text.remove_prefix(1);
    return true;
}

/// The type in a text that begins with the name, by the pattern below for ASCII.
std::optional<std::string_view> typeAt(std::string_view text) {
    text.remove_prefix(kName.size());
    skipBlank(text);
    if (!skip(text, ':')) return std::nullopt;
    skipBlank(text);
    if (!skip(text, '"') || text.size() < kTypeLength) return std::nullopt;
    const std::string_view type = text.substr(0, kTypeLength);
    if (!std::all_of(type.begin(), type.end(), isWordCharacter)) return std::nullopt;
    return type;
}

MessageType named(std::string_view type) {
    if (type == "CRes") return MessageType::CRes;
    return type == "Erro" ? MessageType::Erro : MessageType::unknown;
}

/// What is blank or a word beyond ASCII is known to the regular expressions; texts that make us ask are rare.
MessageType typeByPattern(std::string_view text) {
    const auto matches = matchingStrings(text, R"(messageType"\s?:\s?"(\w{4}))");
    return matches.empty() ? MessageType::unknown : named(matches.front()[1]);
}

} // namespace

MessageType recognizeMessageType(std::string_view text) {
    for (auto at = text.find(kName); at != std::string_view::npos; at = text.find(kName, at + 1)) {
        const std::string_view rest = text.substr(at);
        if (!isAscii(rest.substr(0, kWindow))) return typeByPattern(rest);
        if (const auto type = typeAt(rest)) return named(*type);
    }
    return MessageType::unknown;
}

} // namespace korvane
