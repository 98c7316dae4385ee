#include "Crypt/ASN1DER.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace korvane {

namespace {

using enum ASN1DERParsingErrorCase;

/// From here on a first length byte announces further ones.
constexpr std::uint8_t kLongForm = 128;

/// No input reaches that far, so such a length runs past the end of any.
bool isBeyondMachineWord(ByteView lengthField) {
    if (lengthField.size() == 1) return false;
    const ByteView digits = lengthField.subspan(1);
    const auto first =
        std::find_if(digits.begin(), digits.end(), [](std::uint8_t digit) { return digit != 0; });
    const auto significant = static_cast<std::size_t>(digits.end() - first);
    return significant > sizeof(std::size_t) || (significant == sizeof(std::size_t) && *first >= 0x80);
}

TLVTriplet require(ByteView der, ASN1Type type) {
    const TLVTriplet element = nextTLVTriplet(der);
    if (element.tag != tag(type))
        throw ASN1DERParsingError(incorrectTypeTag, TagMismatch{element.tag, tag(type)});
    return element;
}

} // namespace

TLVTriplet nextTLVTriplet(ByteView der) {
    if (der.size() < 2) throw ASN1DERParsingError(incorrectTLVLength);
    const std::uint8_t elementTag = readTag(der, 0);
    const ByteView field = readLengthField(der, 1);
    if (isBeyondMachineWord(field)) throw ASN1DERParsingError(incorrectValueLength);
    return {elementTag, field, readValueField(length(field), der, 1 + field.size())};
}

ByteView read(ByteView der, ASN1Type type) {
    return require(der, type).value;
}

ByteView skip(ByteView der, ASN1Type type) {
    const TLVTriplet element = require(der, type);
    return der.subspan(1 + element.length.size() + element.value.size());
}

Bytes encode(ByteView value, ASN1Type type) {
    Bytes element{tag(type)};
    const Bytes field = lengthField(value);
    element.reserve(1 + field.size() + value.size());
    element.insert(element.end(), field.begin(), field.end());
    element.insert(element.end(), value.begin(), value.end());
    return element;
}

std::uint8_t readTag(ByteView der, std::size_t pointer) {
    return der[pointer];
}

ByteView readLengthField(ByteView der, std::size_t pointer) {
    const std::uint8_t first = der[pointer];
    if (first < kLongForm) return der.subspan(pointer, 1);
    const std::size_t following = first - kLongForm;
    if (pointer + following >= der.size()) throw ASN1DERParsingError(incorrectLengthFieldLength);
    return der.subspan(pointer, 1 + following);
}

std::size_t length(ByteView lengthField) {
    if (lengthField.size() == 1) return lengthField[0];
    if (isBeyondMachineWord(lengthField)) fatalError("A DER length does not fit a machine word.");
    std::size_t result = 0;
    for (const std::uint8_t digit : lengthField.subspan(1))
        result = (result << 8U) + digit;
    return result;
}

ByteView readValueField(std::size_t length, ByteView der, std::size_t pointer) {
    if (length > der.size() - pointer) throw ASN1DERParsingError(incorrectValueLength);
    return der.subspan(pointer, length);
}

Bytes lengthField(ByteView value) {
    if (value.size() < kLongForm) return {static_cast<std::uint8_t>(value.size())};
    Bytes field;
    for (std::size_t rest = value.size(); rest > 0; rest >>= 8U)
        field.push_back(static_cast<std::uint8_t>(rest));
    field.push_back(static_cast<std::uint8_t>(kLongForm + field.size()));
    std::reverse(field.begin(), field.end());
    return field;
}

} // namespace korvane
