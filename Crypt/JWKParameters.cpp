#include "Crypt/JWKParameters.h"

#include "Crypt/RawValue.h"

namespace korvane {

namespace {

struct KeyTypeRow {
    JWKKeyType type;
    std::string_view rawValue;
};

constexpr std::array<KeyTypeRow, 3> kKeyTypes{
    {{JWKKeyType::RSA, "RSA"}, {JWKKeyType::OCT, "oct"}, {JWKKeyType::EC, "EC"}}};

struct CurveRow {
    ECCurveType curve;
    std::string_view rawValue;
    std::size_t keyBitLength;
    std::size_t coordinateOctetLength;
};

constexpr std::array<CurveRow, 3> kCurves{{{ECCurveType::P256, "P-256", 256, 32},
                                           {ECCurveType::P384, "P-384", 384, 48},
                                           {ECCurveType::P521, "P-521", 521, 66}}};

const CurveRow& rowOf(ECCurveType curve) {
    return kCurves[static_cast<std::size_t>(curve)];
}

std::optional<ECCurveType> curveWhere(std::size_t CurveRow::*member, std::size_t value) {
    for (const CurveRow& row : kCurves)
        if (row.*member == value) return row.curve;
    return std::nullopt;
}

} // namespace

std::string_view rawValue(JWKKeyType type) {
    return kKeyTypes[static_cast<std::size_t>(type)].rawValue;
}

std::optional<JWKKeyType> keyTypeFromRawValue(std::string_view text) {
    const KeyTypeRow* row = rowOfRawValue(kKeyTypes, text);
    return row ? std::optional(row->type) : std::nullopt;
}

std::string_view rawValue(ECCurveType curve) {
    return rowOf(curve).rawValue;
}

std::optional<ECCurveType> curveFromRawValue(std::string_view text) {
    const CurveRow* row = rowOfRawValue(kCurves, text);
    return row ? std::optional(row->curve) : std::nullopt;
}

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
