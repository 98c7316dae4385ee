#include "Crypt/SecKeyECPublicKey.h"

#include "Crypt/ECPoint.h"
#include "Crypt/JOSEError.h"

namespace korvane {

Bytes representing(std::type_identity<Bytes>, const ECPublicKeyComponents& components) {
    Bytes point;
    joinPoint(point, {components.x, components.y});
    return point;
}

SecKey representing(std::type_identity<SecKey>, const ECPublicKeyComponents& components) {
    return ecSecKey(representing(std::type_identity<Bytes>{}, components), components.crv,
                    SecKeyClass::kSecAttrKeyClassPublic);
}

ECPublicKeyComponents ecPublicKeyComponents(ByteView point) {
    const ECNumbers numbers = splitPoint(point, 2);
    return {std::string(rawValue(numbers.curve)), toBytes(numbers.at(0)), toBytes(numbers.at(1))};
}

ECPublicKeyComponents ecPublicKeyComponents(const SecKey& key) {
    if (SecKeyCopyAttributes(key).kSecAttrKeyClass != SecKeyClass::kSecAttrKeyClassPublic)
        throw JWKError(JWKErrorCase::notAPublicKey);
    return ecPublicKeyComponents(SecKeyCopyExternalRepresentation(key));
}

} // namespace korvane
