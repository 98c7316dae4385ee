#include "Platform/JSONLines.h"

#include <algorithm>

namespace korvane {

JSONLines::JSONLines(std::string_view text) : text_(text) {
    readValue({});
}

std::size_t JSONLines::lineOf(std::string_view path) const {
    for (;;) {
        if (const auto found = lines_.find(path); found != lines_.end()) return found->second;
        const std::size_t end = path.find_last_of(".[");
        path = path.substr(0, end == std::string_view::npos ? 0 : end);
    }
}

void JSONLines::readValue(const std::string& path) {
    skipSpace();
    lines_.emplace(path, line_);
    if (isAt("{"))
        readObject(path);
    else if (isAt("["))
        readArray(path);
    else if (isAt("\""))
        static_cast<void>(readString());
    else
        readScalar();
    skipSpace();
}

void JSONLines::readObject(const std::string& path) {
    ++position_;
    for (skipSpace(); !skip('}'); static_cast<void>(skip(',')), skipSpace()) {
        const std::size_t line = line_;
        const std::string member = memberPath(path, readString());
        // The member stands where its name does.
        if (!lines_.emplace(member, line).second) repeated_.emplace_back(member, line);
        skipSpace();
        static_cast<void>(skip(':'));
        readValue(member);
    }
}

void JSONLines::readArray(const std::string& path) {
    ++position_;
    skipSpace();
    for (std::size_t index = 0; !skip(']'); ++index) {
        readValue(elementPath(path, index));
        static_cast<void>(skip(','));
    }
}

std::string JSONLines::readString() {
    const std::size_t start = ++position_;
    while (position_ < text_.size() && text_[position_] != '"')
        position_ += text_[position_] == '\\' ? 2 : 1;
    return std::string(text_.substr(start, position_++ - start));
}

void JSONLines::skipSpace() {
    while (isAt(" \t\r\n"))
        if (text_[position_++] == '\n') ++line_;
}

void JSONLines::readScalar() {
    while (position_ < text_.size() && !isAt(" \t\r\n,]}"))
        ++position_;
}

bool JSONLines::skip(char wanted) {
    // The end counts as everything: a text that is not valid ends the reading instead of going round in it.
    const bool isFound = position_ >= text_.size() || text_[position_] == wanted;
    if (isFound) ++position_;
    return isFound;
}

bool JSONLines::isAt(std::string_view anyOf) const {
    return position_ < text_.size() && anyOf.find(text_[position_]) != std::string_view::npos;
}

std::size_t lineAt(std::string_view text, std::size_t position) {
    const std::string_view before = text.substr(0, position);
    return 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n'));
}

std::string memberPath(std::string_view path, std::string_view name) {
    return path.empty() ? std::string(name) : std::string(path) + "." + std::string(name);
}

std::string elementPath(std::string_view path, std::size_t index) {
    return std::string(path) + "[" + std::to_string(index) + "]";
}

} // namespace korvane
