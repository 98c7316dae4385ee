#include "Crypt/SecKeyRSAPublicKey.h"

#include "Crypt/ASN1DER.h"
#include "Crypt/JOSEError.h"

namespace korvane {

Bytes representing(std::type_identity<Bytes>, const RSAPublicKeyComponents& components) {
    Bytes modulus = components.modulus;
    if (modulus.empty() || modulus.front() != 0) modulus.insert(modulus.begin(), 0);
    Bytes content = encode(modulus, ASN1Type::integer);
    const Bytes exponent = encode(components.exponent, ASN1Type::integer);
    content.insert(content.end(), exponent.begin(), exponent.end());
    return encode(content, ASN1Type::sequence);
}

SecKey representing(std::type_identity<SecKey>, const RSAPublicKeyComponents& components) {
    const Bytes der = representing(std::type_identity<Bytes>{}, components);
    try {
        return SecKeyCreateWithData(der, {SecKeyType::kSecAttrKeyTypeRSA, SecKeyClass::kSecAttrKeyClassPublic,
                                          components.modulus.size() * 8});
    } catch (const CFError&) {
        throw JWKError(JWKErrorCase::cannotConvertToSecKeyChildClasses);
    }
}

RSAPublicKeyComponents rsaPublicKeyComponents(ByteView der) {
    const ByteView content = read(der, ASN1Type::sequence);
    ByteView modulus = read(content, ASN1Type::integer);
    const ByteView exponent = read(skip(content, ASN1Type::integer), ASN1Type::integer);
    if (!modulus.empty() && modulus.front() == 0) modulus = modulus.subspan(1);
    return {toBytes(modulus), toBytes(exponent)};
}

RSAPublicKeyComponents rsaPublicKeyComponents(const SecKey& key) {
    if (SecKeyCopyAttributes(key).kSecAttrKeyClass != SecKeyClass::kSecAttrKeyClassPublic)
        throw JWKError(JWKErrorCase::notAPublicKey);
    return rsaPublicKeyComponents(SecKeyCopyExternalRepresentation(key));
}

} // namespace korvane
