#include "tests/Crypt/vectors/VectorKeys.h"

#include "Crypt/DataExtensions.h"
#include "Crypt/ECPublicKey.h"
#include "Crypt/RSAPublicKey.h"
#include "Crypt/SymmetricKey.h"

namespace korvane {

OwnedKey decryptionKey(const JSON& jwk) {
    if (jwk.at("kty") == "oct") return SymmetricKey::decode(jwk).converted<SecretBytes>();
    if (jwk.at("kty") == "EC") return ECPrivateKey::decode(jwk);
    return privateKey(jwk);
}

AnyKey asAnyKey(const OwnedKey& key) {
    return std::visit([](const auto& held) { return AnyKey(held); }, key);
}

SecKey publicKey(const JSON& jwk) {
    if (jwk.at("kty") == "EC") return ECPublicKey::decode(jwk).converted<SecKey>();
    return RSAPublicKey::decode(jwk).converted<SecKey>();
}

SecKey privateKey(const JSON& jwk) {
    if (jwk.at("kty") == "EC") return ECPrivateKey::decode(jwk).converted<SecKey>();
    return SecKeyCreateWithRSAPrivateNumbers(decoded(jwk.at("n")), decoded(jwk.at("e")),
                                             decoded(jwk.at("d")));
}

std::optional<SignatureAlgorithm> algorithmOf(const JSON& jwk) {
    const std::string name = jwk.at("alg");
    return fromRawValue<SignatureAlgorithm>(name == "ES521" ? "ES512" : name);
}

SecKey publicKeyOfPoint(ByteView point) {
    return representing(std::type_identity<SecKey>{}, ecPublicKeyComponents(point));
}

Bytes decoded(const std::string& base64URL) {
    return fromBase64URL(base64URL).value();
}

} // namespace korvane
