#include "Crypt/JWKParameters.h"

namespace korvane {

namespace {

struct CurveRow {
    ECCurveType curve;
    std::size_t keyBitLength;
    std::size_t coordinateOctetLength;
};

constexpr std::array<CurveRow, 3> kCurves{
    {{ECCurveType::P256, 256, 32}, {ECCurveType::P384, 384, 48}, {ECCurveType::P521, 521, 66}}};
static_assert(hasRowsOfAllCases(kCurves, &CurveRow::curve));

const CurveRow& rowOf(ECCurveType curve) {
    return kCurves[static_cast<std::size_t>(curve)];
}

std::optional<ECCurveType> curveWhere(std::size_t CurveRow::*member, std::size_t value) {
    for (const CurveRow& row : kCurves)
        if (row.*member == value) return row.curve;
    return std::nullopt;
}

} // namespace

std::size_t keyBitLength(ECCurveType curve) {
    return rowOf(curve).keyBitLength;
}

std::size_t coordinateOctetLength(ECCurveType curve) {
    return rowOf(curve).coordinateOctetLength;
}

std::size_t signatureOctetLength(ECCurveType curve) {
    return 2 * coordinateOctetLength(curve);
}

std::optional<ECCurveType> fromCoordinateOctetLength(std::size_t length) {
    return curveWhere(&CurveRow::coordinateOctetLength, length);
}

std::optional<ECCurveType> fromKeyBitLength(std::size_t length) {
    return curveWhere(&CurveRow::keyBitLength, length);
}

std::size_t outputLenght(JWKThumbprintAlgorithm algorithm) {
    switch (algorithm) {
    case JWKThumbprintAlgorithm::SHA256: return 32;
    }
    return 0;
}

} // namespace korvane
