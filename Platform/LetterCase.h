#pragma once

#include <algorithm>
#include <string>

namespace korvane {

/// UUID texts are ASCII, and so no locale has a say in their case.
inline std::string lowercased(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

inline std::string uppercased(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return text;
}

} // namespace korvane
