#pragma once

#include "Platform/Bytes.h"
#include "Platform/Failure.h"

#include <cstddef>
#include <cstdint>

namespace korvane {

/// The two types that keys and signatures are made of; the value is the tag (ITU-T X.690).
enum class ASN1Type : std::uint8_t { integer = 2, sequence = 48 };

[[nodiscard]] constexpr std::uint8_t tag(ASN1Type type) {
    return static_cast<std::uint8_t>(type);
}

/// One element: its tag, its length field as encoded (first byte included), its value. Views of the input.
struct TLVTriplet {
    std::uint8_t tag;
    ByteView length;
    ByteView value;
};

enum class ASN1DERParsingErrorCase {
    incorrectTypeTag, // TagMismatch
    incorrectLengthFieldLength,
    incorrectValueLength,
    incorrectTLVLength,
};

[[nodiscard]] constexpr std::string_view rawValue(ASN1DERParsingErrorCase value) {
    using enum ASN1DERParsingErrorCase;
    switch (value) {
    case incorrectTypeTag: return "incorrectTypeTag";
    case incorrectLengthFieldLength: return "incorrectLengthFieldLength";
    case incorrectValueLength: return "incorrectValueLength";
    case incorrectTLVLength: return "incorrectTLVLength";
    }
    return kNoRawValue;
}

struct TagMismatch {
    std::uint8_t actualTag;
    std::uint8_t expectedTag;
    friend bool operator==(const TagMismatch&, const TagMismatch&) = default;
};

template <>
struct FailureTraits<ASN1DERParsingErrorCase> {
    static constexpr std::string_view domain = "ASN1DERParsingError";
    using Value = std::variant<std::monostate, Description, TagMismatch>;
};

using ASN1DERParsingError = TypedFailure<ASN1DERParsingErrorCase>;

/// The element at the front of `der`; what stands behind it is ignored. An empty value is allowed.
/// @throws ASN1DERParsingError
[[nodiscard]] TLVTriplet nextTLVTriplet(ByteView der);

/// The value of the element at the front, a view of `der`: of a SEQUENCE its content.
/// @throws ASN1DERParsingError incorrectTypeTag when it is of another type, or as `nextTLVTriplet`.
[[nodiscard]] ByteView read(ByteView der, ASN1Type type);

/// What stands behind the element at the front, a view of `der`.
/// @throws ASN1DERParsingError as `read`.
[[nodiscard]] ByteView skip(ByteView der, ASN1Type type);

/// `value` as a new element. No sign byte is added: an INTEGER's value must be right before.
[[nodiscard]] Bytes encode(ByteView value, ASN1Type type);

[[nodiscard]] std::uint8_t readTag(ByteView der, std::size_t pointer);

/// The length field that starts at `pointer`, which is inside `der`.
/// @throws ASN1DERParsingError incorrectLengthFieldLength
[[nodiscard]] ByteView readLengthField(ByteView der, std::size_t pointer);

/// The number in a length field. A number beyond a signed machine word is a programmer's fault and ends the
/// process: `nextTLVTriplet` never asks for one.
[[nodiscard]] std::size_t length(ByteView lengthField);

/// @throws ASN1DERParsingError incorrectValueLength when the value runs past the end.
[[nodiscard]] ByteView readValueField(std::size_t length, ByteView der, std::size_t pointer);

/// The shortest length field of a value of that many bytes.
[[nodiscard]] Bytes lengthField(ByteView value);

} // namespace korvane
