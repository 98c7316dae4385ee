#include "Crypt/Deserializer.h"

#include "Platform/Logger.h"

#include <algorithm>

namespace korvane {

namespace {

constexpr const char* kFunction = "deserialize(_:fromCompactSerialization:)";

/// By `find`, which looks at many octets at a time where a plain count looks at each.
std::int64_t partCount(std::string_view text) {
    std::int64_t count = 1;
    for (std::size_t dot = text.find('.'); dot != std::string_view::npos; dot = text.find('.', dot + 1))
        ++count;
    return count;
}

} // namespace

void JOSEDeserializer::split(std::string_view text, std::span<Bytes> components) {
    const std::int64_t count = partCount(text);
    if (count != std::ssize(components)) {
        KORVANE_LOG(kFunction, "Invalid compact serialization component count: " + std::to_string(count));
        throw JOSEError(JOSEErrorCase::invalidCompactSerializationComponentCount, count);
    }
    for (Bytes& component : components) {
        const std::string_view part = text.substr(0, text.find('.'));
        std::optional<Bytes> decoded = fromBase64URL(part);
        if (!decoded) {
            KORVANE_LOG(kFunction, "Component not valid base64 URL: " + std::string(part));
            throw JOSEError(JOSEErrorCase::componentNotValidBase64URL, std::string(part));
        }
        component = std::move(*decoded);
        text.remove_prefix(std::min(part.size() + 1, text.size()));
    }
}

} // namespace korvane
