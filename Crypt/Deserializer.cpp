#include "Crypt/Deserializer.h"

#include "Platform/Logger.h"

#include <algorithm>

namespace korvane {

namespace {

constexpr const char* kFunction = "deserialize(_:fromCompactSerialization:)";

} // namespace

void JOSEDeserializer::split(std::string_view text, std::span<Bytes> components) {
    const auto count = std::count(text.begin(), text.end(), '.') + 1;
    if (count != std::ssize(components)) {
        KORVANE_LOG(kFunction, "Invalid compact serialization component count: " + std::to_string(count));
        throw JOSEError(JOSEErrorCase::invalidCompactSerializationComponentCount, std::int64_t{count});
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
