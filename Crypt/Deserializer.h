#pragma once

#include "Crypt/JOSEError.h"
#include "Crypt/Serializer.h"
#include "Platform/JSON.h"

#include <array>
#include <optional>
#include <span>
#include <string_view>

namespace korvane {

/// The decoded components of one serialization.
class CompactDeserializer {
public:
    explicit CompactDeserializer(std::span<Bytes> components) : components_(components) {}

    /// The component at an index, made of its bytes by `Component::make`, which takes the bytes where it
    /// succeeds. Each component can be had once.
    /// @throws JOSEError componentCouldNotBeInitializedFromData, with the bytes, where `make` gives no value.
    template <class Component>
    [[nodiscard]] Component deserialize(std::size_t index) const {
        std::optional<Component> component = Component::make(std::move(components_[index]));
        if (!component)
            throw JOSEError(JOSEErrorCase::componentCouldNotBeInitializedFromData, components_[index]);
        return std::move(*component);
    }

    /// The component at an index as plain bytes.
    [[nodiscard]] Bytes deserializeBytes(std::size_t index) const { return std::move(components_[index]); }

private:
    std::span<Bytes> components_;
};

/// What can be deserialized: knows how many parts it has and is made of a deserializer.
template <class Object>
concept CompactDeserializable = requires(const CompactDeserializer& deserializer) {
    { Object::componentCount } -> std::convertible_to<std::size_t>;
    Object(deserializer);
};

/// Reads compact serializations.
class JOSEDeserializer {
public:
    /// @throws JOSEError invalidCompactSerializationComponentCount with the number of parts found;
    ///         componentNotValidBase64URL with the first part that does not decode; what the object's
    ///         constructor throws.
    template <CompactDeserializable Object>
    [[nodiscard]] Object deserialize(std::string_view compactSerialization) const {
        std::array<Bytes, Object::componentCount> components;
        split(compactSerialization, components);
        return Object(CompactDeserializer(components));
    }

    /// @throws JOSEError wrongDataEncoding, with the bytes, when they are not UTF-8; else
    /// as the form for text.
    template <CompactDeserializable Object>
    [[nodiscard]] Object deserialize(ByteView compactSerialization) const {
        if (!isUtf8(asText(compactSerialization)))
            throw JOSEError(JOSEErrorCase::wrongDataEncoding, toBytes(compactSerialization));
        return deserialize<Object>(asText(compactSerialization));
    }

private:
    static void split(std::string_view text, std::span<Bytes> components);
};

} // namespace korvane
