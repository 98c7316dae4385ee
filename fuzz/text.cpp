// The linear scans of texts against the regular expressions that they stand for, and counting characters.

#include "Platform/Text.h"
#include "Sdk/Messages/MessageType.h"
#include "Sdk/Messages/UiUtils.h"
#include "fuzz/support/Fuzz.h"

#include <algorithm>

namespace korvane::fuzzing {

namespace {

constexpr std::string_view kJWEPattern =
    "^[A-Za-z0-9-_]+\\.[A-Za-z0-9-_]*\\.[A-Za-z0-9-_]+\\.[A-Za-z0-9-_]+\\.[A-Za-z0-9-_]+$";
constexpr std::string_view kBase64URLPattern = "^[A-Za-z0-9-_]+$";

void checkScans(std::string_view text) {
    require(validateJWE(text) == (regularExpressionMatches(kJWEPattern, text).size() == 1),
            "The scan for a JWE differs from its expression.");
    require(validateBase64url(text) == (regularExpressionMatches(kBase64URLPattern, text).size() == 1),
            "The scan for Base64URL differs from its expression.");
}

MessageType typeByPattern(std::string_view text) {
    const auto matches = regularExpressionMatches("messageType\"\\s?:\\s?\"(\\w{4})", text);
    if (matches.empty()) return MessageType::unknown;
    if (matches.front()[1] == "CRes") return MessageType::CRes;
    return matches.front()[1] == "Erro" ? MessageType::Erro : MessageType::unknown;
}

/// The fuzzer seldom writes the long name by itself: it is put in front of the input, and there twice.
void checkTypes(std::string_view text) {
    const std::string name = "messageType\"";
    const std::string half(text.substr(0, text.size() / 2));
    for (const std::string& message : {std::string(text), name + std::string(text),
                                       name + half + name + std::string(text.substr(half.size()))})
        require(recognizeMessageType(message) == typeByPattern(message),
                "The scan for a message's type differs from its expression.");
}

bool isAscii(std::string_view text) {
    return std::all_of(text.begin(), text.end(),
                       [](char character) { return static_cast<signed char>(character) >= 0; });
}

std::size_t countOf(std::string_view text, std::string_view wanted) {
    std::size_t count = 0;
    for (std::size_t at = text.find(wanted); at != std::string_view::npos;
         at = text.find(wanted, at + wanted.size()))
        ++count;
    return count;
}

void checkCounting(std::string_view text) {
    const std::size_t count = characterCount(text);
    require(count <= text.size() && (count > 0) == !text.empty(),
            "A text has more characters than bytes, or none.");
    if (isAscii(text)) require(count == text.size() - countOf(text, "\r\n"), "ASCII is counted wrongly.");
    // CR LF breaks from whatever stands around it (UAX 29, GB4 and GB5), so that counts add up across it.
    const std::string_view half = text.substr(0, text.size() / 2);
    const std::string joined = std::string(half) + "\r\n" + std::string(text);
    require(half.ends_with('\r') || characterCount(joined) == characterCount(half) + 1 + count,
            "Counts do not add up across a line.");
}

/// Marks go from where they are too many, and nothing else goes.
void checkMarks(std::string_view text) {
    const std::string bounded = withBoundedMarks(text);
    require(bounded.size() <= text.size() && withBoundedMarks(bounded) == bounded, "Marks stay too many.");
    require(text.size() > 31 || bounded == text, "A text without so many marks changes.");
}

void checkPadding(std::string_view text) {
    std::string expected(text);
    for (char& character : expected) {
        if (character == '-') character = '+';
        if (character == '_') character = '/';
    }
    const std::string base64 = base64urlToBase64(text);
    require(base64.starts_with(expected), "A text changes beyond its two characters.");
    const std::string_view padding = std::string_view(base64).substr(expected.size());
    require(padding.size() < 4 && padding.find_first_not_of('=') == std::string_view::npos,
            "The padding is none.");
    require((characterCount(expected) + padding.size()) % 4 == 0, "The padding has the wrong length.");
}

} // namespace

void run(ByteView input) {
    const std::string_view text = asText(input);
    checkScans(text);
    checkTypes(text);
    checkCounting(text);
    checkMarks(text);
    checkPadding(text);
}

} // namespace korvane::fuzzing
