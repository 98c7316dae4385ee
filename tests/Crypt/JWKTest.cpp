#include "Crypt/DataExtensions.h"
#include "Crypt/ECPrivateKey.h"
#include "Crypt/JWKSet.h"
#include "Crypt/RSAPrivateKey.h"
#include "Crypt/RSAPublicKey.h"
#include "Crypt/SymmetricKey.h"
#include "tests/support/Failures.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using enum JOSEErrorCase;
using testing::ElementsAre;
using testing::Key;

TEST(JWKConstruction, OwnParametersWinAndForeignOnesNeverReachTheJson) {
    const RSAPublicKey key("n", "e", {{"n", "foreign"}, {"kty", "EC"}, {"d", "private"}, {"kid", "2"}});
    EXPECT_EQ(key.modulus(), "n");
    EXPECT_EQ(key["kty"], "RSA");
    EXPECT_EQ(JSON::parse(key.jsonString().value()),
              (JSON{{"e", "e"}, {"kid", "2"}, {"kty", "RSA"}, {"n", "n"}}));
    EXPECT_FALSE(RSAPublicKey("\xFF", "e").jsonString()) << "what is not UTF-8 has no JSON";
    EXPECT_RAISES(thumbprintSerialization, RSAPublicKey("\xFF", "e").thumbprint());
}

TEST(JWKReading, ArraysArePassedOverExceptForSymmetricKeys) {
    const auto ec = ECPublicKey::make(asBytes(R"({"kty":"EC","crv":"P-256","x":"x","y":"y",)"
                                              R"("key_ops":["verify"],"x5c":["a"],"use":"sig","extra":{}})"));
    EXPECT_THAT(ec.parameters(), ElementsAre(Key("crv"), Key("kty"), Key("use"), Key("x"), Key("y")));
    EXPECT_RAISES(DecodingErrorCase::typeMismatch,
                  SymmetricKey::make(asBytes(R"({"kty":"oct","k":"AA","key_ops":["wrapKey"]})")));
}

TEST(JWKReading, FaultsAreToldApart) {
    using enum DecodingErrorCase;
    const Bytes rsa = toBytes(R"({"kty":"RSA","n":"not base64!","e":""})");
    EXPECT_EQ(RSAPublicKey::make(rsa).modulus(), "not base64!");
    EXPECT_RAISES_SAYING(keyNotFound, "Key Type parameter wrong.", ECPublicKey::make(rsa));
    EXPECT_RAISES(keyNotFound, RSAPublicKey::make(asBytes(R"({"kty":"RSA","n":"n"})")));
    EXPECT_RAISES(typeMismatch, RSAPublicKey::make(asBytes(R"({"kty":"RSA","n":"n","e":"e","kid":7})")));
    EXPECT_RAISES(dataCorrupted, ECPublicKey::make(asBytes(R"({"kty":"EC","crv":"P-257","x":"x","y":"y"})")));
    EXPECT_RAISES(symmetricKeyNotBase64URLEncoded, SymmetricKey::make(asBytes(R"({"kty":"oct","k":"A"})")));
    EXPECT_RAISES(dataCorrupted, JWKSet::make(asBytes(R"({"keys":[{"kty":"OKP"}]})")));
}

TEST(JWKConstruction, ForeignKeysOfAnotherKindAreRefused) {
    const SecKey privateKey = SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeEC, 256);
    EXPECT_RAISES(invalidCurvePointOctetLength, ECPrivateKey("P-257", "x", "y", "d"));
    EXPECT_RAISES(couldNotConstructJWK, ECPublicKey(privateKey));
    EXPECT_RAISES(couldNotConstructJWK, ECPrivateKey(SecKeyCopyPublicKey(privateKey)));
}

TEST(JWKConversion, NumbersThatMakeNoKeyAreNamed) {
    const std::string bad = "A", x32 = base64URLEncodedString(Bytes(32, 1));
    const auto p256 = ECCurveType::P256;
    EXPECT_RAISES(modulusNotBase64URLUIntEncoded, RSAPublicKey(bad, "AQAB").converted<Bytes>());
    EXPECT_RAISES(exponentNotBase64URLUIntEncoded, RSAPublicKey("AQAB", bad).converted<Bytes>());
    EXPECT_RAISES(xNotBase64URLUIntEncoded, ECPublicKey(p256, bad, x32).converted<Bytes>());
    EXPECT_RAISES(yNotBase64URLUIntEncoded, ECPublicKey(p256, x32, bad).converted<SecKey>());
    EXPECT_RAISES(privateKeyNotBase64URLUIntEncoded,
                  ECPrivateKey("P-256", x32, x32, bad).converted<SecretBytes>());
    const auto modulus = base64URLEncodedString(Bytes(256, 0xC1));
    EXPECT_RAISES(JWKErrorCase::cannotConvertToSecKeyChildClasses,
                  RSAPublicKey(modulus, "AQ").converted<SecKey>())
        << "under an exponent of 1 every message is its own signature";
    EXPECT_EQ(SecKeyGetBlockSize(RSAPublicKey(modulus, "Aw").converted<SecKey>()), 256U);
}

// A coordinate of neither 32 nor 66 bytes loses its first one: a sign byte, or one of a
// good P-384 coordinate.
TEST(JWKConversion, PublicCoordinatesLoseASignByte) {
    const auto pointOf = [](std::size_t length) {
        const std::string number = base64URLEncodedString(Bytes(length, 7));
        return ECPublicKey(ECCurveType::P521, number, number).converted<Bytes>().size();
    };
    for (const auto& [length, point] : {std::pair(32U, 65U), {33U, 65U}, {66U, 133U}, {67U, 133U}})
        EXPECT_EQ(pointOf(length), point) << length;
    for (const std::size_t length : {0U, 31U, 48U})
        EXPECT_RAISES(invalidCurvePointOctetLength, pointOf(length)) << length;
    const SecKey p384 = SecKeyCopyPublicKey(SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeEC, 384));
    EXPECT_RAISES(invalidCurvePointOctetLength, ECPublicKey(p384).converted<SecKey>())
        << "as little as the same key from texts";
    const std::string signedNumber = base64URLEncodedString(Bytes(33));
    EXPECT_RAISES(invalidCurvePointOctetLength,
                  ECPrivateKey("P-256", signedNumber, signedNumber, signedNumber).converted<SecretBytes>())
        << "private keys have no such rule";
}

} // namespace
} // namespace korvane
