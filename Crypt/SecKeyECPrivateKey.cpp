#include "Crypt/SecKeyECPrivateKey.h"

#include "Crypt/ECPoint.h"
#include "Crypt/JOSEError.h"

namespace korvane {

SecretBytes representing(std::type_identity<SecretBytes>, const ECPrivateKeyComponents& components) {
    SecretBytes bytes;
    joinPoint(bytes, {components.x, components.y, components.d});
    return bytes;
}

SecKey representing(std::type_identity<SecKey>, const ECPrivateKeyComponents& components) {
    return ecSecKey(representing(std::type_identity<SecretBytes>{}, components), components.crv,
                    SecKeyClass::kSecAttrKeyClassPrivate);
}

ECPrivateKeyComponents ecPrivateKeyComponents(ByteView bytes) {
    const ECNumbers numbers = splitPoint(bytes, 3);
    return {std::string(rawValue(numbers.curve)), toBytes(numbers.at(0)), toBytes(numbers.at(1)),
            toSecretBytes(numbers.at(2))};
}

ECPrivateKeyComponents ecPrivateKeyComponents(const SecKey& key) {
    if (SecKeyCopyAttributes(key).kSecAttrKeyClass != SecKeyClass::kSecAttrKeyClassPrivate)
        throw JWKError(JWKErrorCase::notAPrivateKey);
    return ecPrivateKeyComponents(SecKeyCopyExternalRepresentation(key));
}

} // namespace korvane
