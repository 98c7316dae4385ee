#include "Crypt/Deserializer.h"

#include "Platform/Logger.h"

namespace korvane {

namespace {

constexpr const char* kFunction = "deserialize(_:fromCompactSerialization:)";

} // namespace

void JOSEDeserializer::cut(std::string_view text, std::span<std::string_view> parts) {
    std::int64_t count = 0;
    // By `find`, which looks at many octets at a time.
    for (bool isLast = false; !isLast; ++count) {
        const std::size_t dot = text.find('.');
        isLast = dot == std::string_view::npos;
        if (count < std::ssize(parts)) parts[static_cast<std::size_t>(count)] = text.substr(0, dot);
        text.remove_prefix(isLast ? text.size() : dot + 1);
    }
    if (count == std::ssize(parts)) return;
    KORVANE_LOG(kFunction, "Invalid compact serialization component count: " + std::to_string(count));
    throw JOSEError(JOSEErrorCase::invalidCompactSerializationComponentCount, count);
}

void JOSEDeserializer::decode(std::span<const std::string_view> parts, std::span<Bytes> components,
                              std::size_t known) {
    for (std::size_t index = known; index < parts.size(); ++index) {
        std::optional<Bytes> decoded = fromBase64URL(parts[index]);
        if (!decoded) {
            KORVANE_LOG(kFunction, "Component not valid base64 URL: " + std::string(parts[index]));
            throw JOSEError(JOSEErrorCase::componentNotValidBase64URL, std::string(parts[index]));
        }
        components[index] = std::move(*decoded);
    }
}

} // namespace korvane
