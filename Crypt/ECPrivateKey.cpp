#include "Crypt/ECPrivateKey.h"

#include "Crypt/DataExtensions.h"
#include "Platform/UUID.h"

namespace korvane {

namespace {

constexpr std::array<std::string_view, 4> kNumbers{ECParameter::curve, ECParameter::x, ECParameter::y,
                                                   ECParameter::privateKey};
constexpr JWKForm kForm{JWKKeyType::EC, kNumbers, ECParameter::privateKey, "Key Type parameter wrong.", true};
static_assert(kForm.privateNumber == kNumbers.back());

/// Raises another failure than a public key, which has `invalidCurveType`.
std::string_view requiredCurve(const std::string& crv) {
    const auto curve = fromRawValue<ECCurveType>(crv);
    if (!curve) throw JOSEError(JOSEErrorCase::invalidCurvePointOctetLength);
    return rawValue(*curve);
}

SecKey generate(ECCurveType curveType) {
    try {
        return SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeEC, keyBitLength(curveType));
    } catch (const CFError&) {
        throw ECKeyPairError(ECKeyPairErrorCase::generateECKeyPairFail);
    }
}

} // namespace

ECPrivateKey::ECPrivateKey(const std::string& crv, std::string x, std::string y, std::string privateKey,
                           const StringMap& additionalParameters)
    : JWKOf(kForm,
            std::array{std::string(requiredCurve(crv)), std::move(x), std::move(y), std::move(privateKey)},
            additionalParameters) {}

ECPrivateKey::ECPrivateKey(const ECPrivateKeyComponents& components, const StringMap& additionalParameters)
    : ECPrivateKey(components.crv, base64URLEncodedString(components.x), base64URLEncodedString(components.y),
                   base64URLEncodedString(components.d), additionalParameters) {}

ECPrivateKey::ECPrivateKey(const JSONField& object) : JWKOf(kForm, object) {
    requireCurve();
}

ECPrivateKey ECPrivateKey::generateWith(ECCurveType curveType) {
    return ECPrivateKey(generate(curveType), {{std::string(JWKParameter::keyIdentifier), makeUUIDString()}});
}

ECPrivateKey ECPrivateKey::generateWithoutParametersWith(ECCurveType curveType) {
    return ECPrivateKey(generate(curveType));
}

ECCurveType ECPrivateKey::crv() const {
    return *fromRawValue<ECCurveType>(number(ECParameter::curve));
}

bool ECPrivateKey::isCorrespondWith(const ECPublicKey& publicKey) const {
    return crv() == publicKey.crv() && x() == publicKey.x() && y() == publicKey.y();
}

ECPrivateKeyComponents ECPrivateKey::components() const {
    return {number(ECParameter::curve),
            decodedNumber(ECParameter::x, JOSEErrorCase::xNotBase64URLUIntEncoded),
            decodedNumber(ECParameter::y, JOSEErrorCase::yNotBase64URLUIntEncoded),
            decodedSecret(ECParameter::privateKey, JOSEErrorCase::privateKeyNotBase64URLUIntEncoded)};
}

} // namespace korvane
