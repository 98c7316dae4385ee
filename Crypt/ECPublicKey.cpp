#include "Crypt/ECPublicKey.h"

#include "Crypt/DataExtensions.h"

namespace korvane {

namespace {

constexpr std::array<std::string_view, 3> kNumbers{ECParameter::curve, ECParameter::x, ECParameter::y};
constexpr JWKForm kForm{JWKKeyType::EC, kNumbers, "", "Key Type parameter wrong.", true};

ECCurveType requiredCurve(const std::string& crv) {
    const auto curve = fromRawValue<ECCurveType>(crv);
    if (!curve) throw JOSEError(JOSEErrorCase::invalidCurveType);
    return *curve;
}

bool isTakenAsItIs(std::size_t coordinateLength) {
    constexpr std::size_t kP256Length = 32;
    constexpr std::size_t kP521Length = 66;
    return coordinateLength == kP256Length || coordinateLength == kP521Length;
}

Bytes withoutSignByte(Bytes coordinate) {
    if (!isTakenAsItIs(coordinate.size()) && !coordinate.empty()) coordinate.erase(coordinate.begin());
    return coordinate;
}

} // namespace

ECPublicKey::ECPublicKey(ECCurveType crv, std::string x, std::string y, const StringMap& additionalParameters)
    : JWKOf(kForm, std::array{std::string(rawValue(crv)), std::move(x), std::move(y)}, additionalParameters) {
}

ECPublicKey::ECPublicKey(const ECPublicKeyComponents& components, const StringMap& additionalParameters)
    : ECPublicKey(requiredCurve(components.crv), base64URLEncodedString(components.x),
                  base64URLEncodedString(components.y), additionalParameters) {}

ECPublicKey::ECPublicKey(const JSONField& object) : JWKOf(kForm, object) {
    requireCurve();
}

ECCurveType ECPublicKey::crv() const {
    return *fromRawValue<ECCurveType>(number(ECParameter::curve));
}

void ECPublicKey::keep(const SecKey& key) {
    if (isTakenAsItIs(coordinateOctetLength(crv()))) kept_.keep(key);
}

ECPublicKeyComponents ECPublicKey::components() const {
    Bytes x = withoutSignByte(decodedNumber(ECParameter::x, JOSEErrorCase::xNotBase64URLUIntEncoded));
    Bytes y = withoutSignByte(decodedNumber(ECParameter::y, JOSEErrorCase::yNotBase64URLUIntEncoded));
    return {number(ECParameter::curve), std::move(x), std::move(y)};
}

} // namespace korvane
