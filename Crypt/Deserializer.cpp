#include "Crypt/Deserializer.h"

#include "Platform/Logger.h"

#include <algorithm>

namespace korvane {

namespace {

constexpr const char* kFunction = "deserialize(_:fromCompactSerialization:)";

[[noreturn]] void refuseCount(std::int64_t count) {
    KORVANE_LOG(kFunction, "Invalid compact serialization component count: " + std::to_string(count));
    throw JOSEError(JOSEErrorCase::invalidCompactSerializationComponentCount, count);
}

} // namespace

/// Of a long text the last full stop is looked for from the end, so that the long part before it is read once,
/// by its decoding, which finds those that are too many.
void JOSEDeserializer::cut(std::string_view text, std::span<std::string_view> parts) {
    std::size_t index = 0;
    for (; index + 2 < parts.size(); ++index) {
        const std::size_t dot = text.find('.');
        if (dot == std::string_view::npos) refuseCount(static_cast<std::int64_t>(index) + 1);
        parts[index] = text.substr(0, dot);
        text.remove_prefix(dot + 1);
    }
    constexpr std::size_t kLong = 4096;
    const std::size_t dot = text.size() < kLong ? text.find('.') : text.rfind('.');
    if (dot == std::string_view::npos) refuseCount(static_cast<std::int64_t>(index) + 1);
    parts[index] = text.substr(0, dot);
    parts[index + 1] = text.substr(dot + 1);
}

void JOSEDeserializer::decode(std::span<const std::string_view> parts, std::span<Bytes> components,
                              std::size_t known) {
    for (std::size_t index = known; index < parts.size(); ++index) {
        std::optional<Bytes> decoded = fromBase64URL(parts[index]);
        if (decoded) {
            components[index] = std::move(*decoded);
            continue;
        }
        std::int64_t count = std::ssize(parts);
        for (const std::string_view part : parts)
            count += std::count(part.begin(), part.end(), '.');
        if (count != std::ssize(parts)) refuseCount(count);
        KORVANE_LOG(kFunction, "Component not valid base64 URL: " + std::string(parts[index]));
        throw JOSEError(JOSEErrorCase::componentNotValidBase64URL, std::string(parts[index]));
    }
}

} // namespace korvane
