#pragma once

#include "Crypt/JOSEError.h"
#include "Crypt/JOSEHeader.h"
#include "Crypt/Serializer.h"
#include "Platform/JSON.h"

#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

namespace korvane {

/// The decoded components of one serialization.
class CompactDeserializer {
public:
    /// @param header  the first component, where it need not be made of its bytes; else null.
    CompactDeserializer(std::span<Bytes> components, const JOSEHeader* header)
        : components_(components), header_(header) {}

    /// The header, made of its bytes by `Header::make`, which takes them where it succeeds.
    /// @throws JOSEError componentCouldNotBeInitializedFromData, with the bytes, where `make` gives no value.
    template <class Header>
    [[nodiscard]] Header deserializeHeader() const {
        if (header_) return static_cast<const Header&>(*header_);
        std::optional<Header> header = Header::make(std::move(components_.front()));
        if (!header)
            throw JOSEError(JOSEErrorCase::componentCouldNotBeInitializedFromData, components_.front());
        return std::move(*header);
    }

    /// The component at an index as plain bytes, which can be had once.
    [[nodiscard]] Bytes deserializeBytes(std::size_t index) const { return std::move(components_[index]); }

private:
    std::span<Bytes> components_;
    const JOSEHeader* header_;
};

/// What can be deserialized: knows how many parts it has and what its header is, and is made of a deserializer.
template <class Object>
concept CompactDeserializable = requires(const Object& object, const CompactDeserializer& deserializer) {
    { Object::componentCount } -> std::convertible_to<std::size_t>;
    { object.header() } -> std::convertible_to<const JOSEHeader&>;
    Object(deserializer);
};

/// Reads compact serializations.
class JOSEDeserializer {
public:
    /// The messages of a conversation have one header: each thread remembers the last one, and compares the
    /// next one's text with its before it reads it.
    /// @throws JOSEError invalidCompactSerializationComponentCount with the number of parts found;
    ///         componentNotValidBase64URL with the first part that does not decode; what the object's
    ///         constructor throws.
    template <CompactDeserializable Object>
    [[nodiscard]] Object deserialize(std::string_view compactSerialization) const {
        using Header = std::decay_t<decltype(std::declval<const Object&>().header())>;
        thread_local std::optional<Header> last;
        std::array<std::string_view, Object::componentCount> parts;
        cut(compactSerialization, parts);
        const bool isKnown = last && !parts.front().empty() && last->keptText() == parts.front();
        std::array<Bytes, Object::componentCount> components;
        decode(parts, components, isKnown ? 1 : 0);
        Object object(CompactDeserializer(components, isKnown ? &*last : nullptr));
        if (!isKnown && !object.header().keptText().empty()) last = object.header();
        return object;
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
    /// Cuts a text into the parts that it must have.
    static void cut(std::string_view text, std::span<std::string_view> parts);
    /// @param known  how many of the first parts need not be decoded.
    static void decode(std::span<const std::string_view> parts, std::span<Bytes> components,
                       std::size_t known);
};

} // namespace korvane
