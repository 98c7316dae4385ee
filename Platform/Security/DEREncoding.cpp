#include "Platform/Security/DEREncoding.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace korvane {

namespace {

constexpr int kDepthLimit = 32;

struct Element {
    std::uint8_t identifier = 0;
    ByteView content;
    ByteView rest;

    [[nodiscard]] bool isConstructed() const { return (identifier & 0x20U) != 0; }
    [[nodiscard]] bool isUniversal() const { return (identifier & 0xC0U) == 0; }
    [[nodiscard]] std::uint8_t number() const { return identifier & 0x1FU; }
};

/// The length field at the front of `bytes`, which it is taken from; no value where it is not the shortest.
std::optional<std::size_t> takeLength(ByteView& bytes) {
    constexpr std::size_t kLongForm = 0x80;
    constexpr std::size_t kLongestField = 4;
    if (bytes.empty()) return std::nullopt;
    std::size_t length = bytes[0];
    bytes = bytes.subspan(1);
    if (length < kLongForm) return length;
    const std::size_t count = length - kLongForm;
    if (count == 0 || count > kLongestField || count > bytes.size() || bytes[0] == 0) return std::nullopt;
    length = 0;
    for (const std::uint8_t byte : bytes.first(count))
        length = length << 8U | byte;
    bytes = bytes.subspan(count);
    return length < kLongForm ? std::nullopt : std::optional(length);
}

std::optional<Element> readElement(ByteView bytes) {
    constexpr std::uint8_t kLongTag = 0x1F;
    if (bytes.empty()) return std::nullopt;
    Element element{bytes[0], {}, bytes.subspan(1)};
    const auto length = takeLength(element.rest);
    if (element.number() == kLongTag || !length || *length > element.rest.size()) return std::nullopt;
    element.content = element.rest.first(*length);
    element.rest = element.rest.subspan(*length);
    return element;
}

bool isBoolean(ByteView content) {
    return content.size() == 1 && (content[0] == 0x00 || content[0] == 0xFF);
}

bool isInteger(ByteView content) {
    if (content.size() < 2) return content.size() == 1;
    const bool isNegative = content[1] >= 0x80;
    return content[0] != (isNegative ? 0xFF : 0x00);
}

bool isBitString(ByteView content) {
    if (content.empty() || content[0] > 7) return false;
    const unsigned unused = (1U << content[0]) - 1U;
    return content.size() == 1 ? unused == 0 : (content.back() & unused) == 0;
}

bool isNull(ByteView content) {
    return content.empty();
}

bool isObjectIdentifier(ByteView content) {
    bool isAtStart = true;
    for (const std::uint8_t byte : content) {
        if (isAtStart && byte == 0x80) return false;
        isAtStart = byte < 0x80;
    }
    return !content.empty() && isAtStart;
}

/// The universal types whose content has a form of its own.
struct TypeRow {
    std::uint8_t number;
    bool (*isContent)(ByteView);
};

constexpr std::array<TypeRow, 6> kTypes{{{1, isBoolean},
                                         {2, isInteger},
                                         {3, isBitString},
                                         {5, isNull},
                                         {6, isObjectIdentifier},
                                         {10, isInteger}}};

bool isPrimitive(const Element& element) {
    if (!element.isUniversal()) return true;
    const auto* row = std::find_if(kTypes.begin(), kTypes.end(), [&element](const TypeRow& each) {
        return each.number == element.number();
    });
    return row == kTypes.end() || row->isContent(element.content);
}

bool areElements(ByteView bytes, int depth);

bool isElement(const Element& element, int depth) {
    constexpr std::uint8_t kSequence = 16;
    constexpr std::uint8_t kSet = 17;
    const bool isCollection = element.number() == kSequence || element.number() == kSet;
    if (element.isUniversal() && element.isConstructed() != isCollection) return false;
    return element.isConstructed() ? areElements(element.content, depth + 1) : isPrimitive(element);
}

bool areElements(ByteView bytes, int depth) {
    if (depth > kDepthLimit) return false;
    while (!bytes.empty()) {
        const auto element = readElement(bytes);
        if (!element || !isElement(*element, depth)) return false;
        bytes = element->rest;
    }
    return true;
}

} // namespace

bool isDER(ByteView bytes) {
    const auto element = readElement(bytes);
    return element && element->rest.empty() && isElement(*element, 1);
}

} // namespace korvane
