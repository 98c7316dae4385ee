#pragma once

#include "Crypt/DataExtensions.h"

#include <array>
#include <span>
#include <string>

namespace korvane {

/// The places of the parts in a compact serialization (RFC 7515 section 3.1, RFC 7516 section 3.1).
namespace ComponentCompactSerializedIndex {
inline constexpr std::size_t jwsHeaderIndex = 0;
inline constexpr std::size_t jwsPayloadIndex = 1;
inline constexpr std::size_t jwsSignatureIndex = 2;
inline constexpr std::size_t jweHeaderIndex = 0;
inline constexpr std::size_t jweEncryptedKeyIndex = 1;
inline constexpr std::size_t jweInitializationVectorIndex = 2;
inline constexpr std::size_t jweCiphertextIndex = 3;
inline constexpr std::size_t jweAuthenticationTagIndex = 4;
} // namespace ComponentCompactSerializedIndex

/// Gathers the components of one serialization, in order. Borrows them.
class CompactSerializer {
public:
    [[nodiscard]] std::span<const DataConvertible> components() const noexcept {
        return {components_.data(), count_};
    }

    /// A sixth component is a programmer's fault and ends the process: no JOSE object has more than five.
    void serialize(DataConvertible object);

private:
    std::array<DataConvertible, 5> components_{ByteView(), ByteView(), ByteView(), ByteView(), ByteView()};
    std::size_t count_ = 0;
};

/// What can be serialized: gives its components to a serializer, in order.
template <class Object>
concept CompactSerializable = requires(const Object& object, CompactSerializer& serializer) {
    object.serialize(serializer);
};

/// Writes compact serializations: the Base64URL texts of the components, joined by full stops.
class JOSESerializer {
public:
    template <CompactSerializable Object>
    [[nodiscard]] std::string serialize(const Object& compact) const {
        CompactSerializer serializer;
        compact.serialize(serializer);
        return joinedBase64URL(serializer.components());
    }
};

} // namespace korvane
