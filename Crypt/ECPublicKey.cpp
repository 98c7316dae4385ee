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

Bytes withoutSignByte(Bytes coordinate) {
    constexpr std::size_t kP256Length = 32;
    constexpr std::size_t kP521Length = 66;
    const bool isTakenAsItIs = coordinate.size() == kP256Length || coordinate.size() == kP521Length;
    if (!isTakenAsItIs && !coordinate.empty()) coordinate.erase(coordinate.begin());
    return coordinate;
}

} // namespace

ECPublicKey::ECPublicKey(ECCurveType crv, std::string x, std::string y, const StringMap& additionalParameters)
    : JWKOf(kForm,
            {{std::string(ECParameter::curve), rawValue(crv)},
             {std::string(ECParameter::x), std::move(x)},
             {std::string(ECParameter::y), std::move(y)}},
            additionalParameters) {}

ECPublicKey::ECPublicKey(const ECPublicKeyComponents& components, const StringMap& additionalParameters)
    : ECPublicKey(requiredCurve(components.crv), base64URLEncodedString(components.x),
                  base64URLEncodedString(components.y), additionalParameters) {}

ECPublicKey::ECPublicKey(const JSONField& object) : JWKOf(kForm, object) {
    requireCurve();
}

ECCurveType ECPublicKey::crv() const {
    return *fromRawValue<ECCurveType>(number(ECParameter::curve));
}

ECPublicKeyComponents ECPublicKey::components() const {
    Bytes x = withoutSignByte(decodedNumber(ECParameter::x, JOSEErrorCase::xNotBase64URLUIntEncoded));
    Bytes y = withoutSignByte(decodedNumber(ECParameter::y, JOSEErrorCase::yNotBase64URLUIntEncoded));
    return {number(ECParameter::curve), std::move(x), std::move(y)};
}

} // namespace korvane
