#include "Crypt/RSAPublicKey.h"
#include "Crypt/JWE.h"
#include "Crypt/JWS.h"
#include "Crypt/ECPrivateKey.h"
#include "Platform/Security/SecKey.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

TEST(JWETrial, RoundTrips) {
    const SecretBytes key(32, 7);
    const auto enc = Encrypter::make(KeyManagementAlgorithm::direct, ContentEncryptionAlgorithm::A128CBCHS256, key);
    const auto dec = Decrypter::make(KeyManagementAlgorithm::direct, ContentEncryptionAlgorithm::A128CBCHS256, key);
    JWEHeader header(KeyManagementAlgorithm::direct, ContentEncryptionAlgorithm::A128CBCHS256);
    const JWE jwe(header, Payload(toBytes("hello")), *enc);
    const std::string text = jwe.compactSerializedString();
    EXPECT_EQ(asText(JWE(text).decrypt(*dec).data()), "hello");
    for (auto curve : {ECCurveType::P256, ECCurveType::P384, ECCurveType::P521}) {
        const auto pair = ECPrivateKey::generateWith(curve);
        const auto secKey = pair.converted<SecKey>();
        EXPECT_EQ(ECPrivateKey(secKey).privateKey(), pair.privateKey());
        const auto alg = curve == ECCurveType::P256 ? SignatureAlgorithm::ES256 : curve == ECCurveType::P384 ? SignatureAlgorithm::ES384 : SignatureAlgorithm::ES512;
        const JWS jws(JWSHeader(alg), Payload(toBytes("x")), *Signer::make(alg, secKey));
        EXPECT_TRUE(JWS(jws.compactSerializedString()).isValid(*Verifier::make(alg, SecKeyCopyPublicKey(secKey))));
    }
    const SecKey rsa = SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeRSA, 2047);
    const RSAPublicKey jwk(SecKeyCopyPublicKey(rsa));
    const auto pub = jwk.converted<SecKey>();
    for (auto alg : {KeyManagementAlgorithm::RSA1_5, KeyManagementAlgorithm::RSAOAEP, KeyManagementAlgorithm::RSAOAEP256}) {
        const JWE sealed(JWEHeader(alg, ContentEncryptionAlgorithm::A256CBCHS512), Payload(toBytes("hello")), *Encrypter::make(alg, ContentEncryptionAlgorithm::A256CBCHS512, pub));
        EXPECT_EQ(asText(JWE(sealed.compactSerializedString()).decrypt(rsa).data()), "hello");
    }
}

} // namespace
} // namespace korvane
