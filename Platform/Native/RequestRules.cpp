#include "Platform/Native/RequestRules.h"

#include <algorithm>

namespace korvane {

namespace {

bool hasPrefix(std::string_view text, std::string_view lowerCasePrefix) {
    const auto isSame = [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + ('a' - 'A') : a) == b; };
    return text.size() >= lowerCasePrefix.size() &&
           std::equal(lowerCasePrefix.begin(), lowerCasePrefix.end(), text.begin(),
                      [&](char prefix, char character) { return isSame(character, prefix); });
}

bool hasControl(std::string_view text) {
    return std::any_of(text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
}

} // namespace

std::optional<std::string> refusal(const URLRequest& request) {
    const std::string& url = request.url.absoluteString();
    if (!hasPrefix(url, "http://") && !hasPrefix(url, "https://")) return "unsupported URL";
    bool isBroken = request.httpMethod.empty() || hasControl(request.httpMethod);
    for (const auto& [name, value] : request.httpHeaderFields)
        isBroken = isBroken || name.empty() || hasControl(name) || hasControl(value);
    return isBroken ? std::optional<std::string>("malformed request") : std::nullopt;
}

bool isRepeatable(const URLRequest& request) {
    return request.httpMethod == "GET" || request.httpMethod == "HEAD";
}

bool isOverTLS(std::string_view url) {
    return hasPrefix(url, "https:");
}

} // namespace korvane
