#pragma once

#include "Crypt/JWKParameters.h"
#include "Platform/Bytes.h"
#include "Platform/Security/SecKey.h"

#include <initializer_list>
#include <string_view>

namespace korvane {

/// An uncompressed point, or such a point with d behind it, split into its numbers. Views of the input.
struct ECNumbers {
    ECCurveType curve;
    std::size_t coordinateLength;
    ByteView numbers;

    [[nodiscard]] ByteView at(std::size_t index) const {
        return numbers.subspan(index * coordinateLength, coordinateLength);
    }
};

/// @param count  how many numbers stand behind the first byte: 2 for a public key, 3 for a private one.
/// @throws JOSEError compressedCurvePointsUnsupported, invalidCurvePointOctetLength
[[nodiscard]] ECNumbers splitPoint(ByteView bytes, std::size_t count);

/// Appends 04 and the numbers to `bytes`.
/// @throws JOSEError invalidCurvePointOctetLength when they are not all of one curve's length.
template <class Container>
void joinPoint(Container& bytes, std::initializer_list<ByteView> numbers);

/// The platform's key of a bytes form.
/// @throws JWKError invalidECCurveType, cannotConvertToSecKeyChildClasses
[[nodiscard]] SecKey ecSecKey(ByteView bytes, std::string_view crv, SecKeyClass keyClass);

} // namespace korvane
