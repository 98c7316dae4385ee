#include "Crypt/ECPoint.h"

#include "Crypt/JOSEError.h"

namespace korvane {

namespace {

constexpr auto kUncompressed = static_cast<std::uint8_t>(ECCompression::Uncompressed);

} // namespace

ECNumbers splitPoint(ByteView bytes, std::size_t count) {
    if (bytes.empty()) throw JOSEError(JOSEErrorCase::invalidCurvePointOctetLength);
    if (bytes.front() != kUncompressed) throw JOSEError(JOSEErrorCase::compressedCurvePointsUnsupported);
    const ByteView numbers = bytes.subspan(1);
    const auto curve = fromCoordinateOctetLength(numbers.size() / count);
    if (!curve || numbers.size() % count != 0) throw JOSEError(JOSEErrorCase::invalidCurvePointOctetLength);
    return {*curve, numbers.size() / count, numbers};
}

template <class Container>
void joinPoint(Container& bytes, std::initializer_list<ByteView> numbers) {
    const std::size_t length = numbers.begin()->size();
    bytes.reserve(1 + numbers.size() * length);
    bytes.push_back(kUncompressed);
    for (const ByteView number : numbers) {
        if (number.size() != length || !fromCoordinateOctetLength(length))
            throw JOSEError(JOSEErrorCase::invalidCurvePointOctetLength);
        bytes.insert(bytes.end(), number.begin(), number.end());
    }
}

template void joinPoint(Bytes&, std::initializer_list<ByteView>);
template void joinPoint(SecretBytes&, std::initializer_list<ByteView>);

SecKey ecSecKey(ByteView bytes, std::string_view crv, SecKeyClass keyClass) {
    const auto curve = fromRawValue<ECCurveType>(crv);
    if (!curve) throw JWKError(JWKErrorCase::invalidECCurveType);
    try {
        return SecKeyCreateWithData(bytes, {SecKeyType::kSecAttrKeyTypeEC, keyClass, keyBitLength(*curve)});
    } catch (const CFError&) {
        throw JWKError(JWKErrorCase::cannotConvertToSecKeyChildClasses);
    }
}

} // namespace korvane
