#include "Crypt/DataExtensions.h"
#include "Crypt/ECPrivateKey.h"
#include "Crypt/JWEHeader.h"
#include "Crypt/JWKSet.h"
#include "Crypt/RSAPrivateKey.h"
#include "Crypt/RSAPublicKey.h"
#include "Crypt/SymmetricKey.h"
#include "tests/support/Failures.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::Key;

const std::string kX32 = base64URLEncodedString(Bytes(32, 1));

ECPublicKey ecKey(const Bytes& x, const Bytes& y, ECCurveType curve = ECCurveType::P256) {
    return {curve, base64URLEncodedString(x), base64URLEncodedString(y)};
}

JSON jsonOf(const JWK& key) {
    return JSONSerialization::jsonObject(key.jsonString().value()).value();
}

TEST(JWKConstruction, OwnParametersWinOverAdditionalOnes) {
    const ECPublicKey key(ECCurveType::P256, "own", "y",
                          {{"x", "foreign"}, {"kty", "RSA"}, {"kid", "1"}, {"z", "2"}});
    EXPECT_EQ(key.x(), "own");
    EXPECT_EQ(key["x"], "own");
    EXPECT_EQ(key["kty"], "EC");
    EXPECT_EQ(key["z"], "2");
    EXPECT_EQ(key["absent"], std::nullopt);
    EXPECT_THAT(key.parameters(),
                ElementsAre(Key("crv"), Key("kid"), Key("kty"), Key("x"), Key("y"), Key("z")));
    EXPECT_THAT(key.requiredParameters(), ElementsAre(Key("crv"), Key("kty"), Key("x"), Key("y")));
}

TEST(JWKWriting, ForeignNamesNeverReachTheJson) {
    const RSAPublicKey key("n", "e", {{"d", "private"}, {"other", "1"}, {"kid", "2"}, {"x5t#S256", "3"}});
    EXPECT_EQ(jsonOf(key), (JSON{{"e", "e"}, {"kid", "2"}, {"kty", "RSA"}, {"n", "n"}, {"x5t#S256", "3"}}));
    EXPECT_FALSE(RSAPublicKey("\xFF", "e").jsonString()) << "what is not UTF-8 has no JSON";
    EXPECT_RAISES(JOSEErrorCase::thumbprintSerialization, RSAPublicKey("\xFF", "e").thumbprint());
    EXPECT_EQ(jsonOf(RSAPrivateKey("n", "e", "d"))["d"], "d");
}

TEST(JWKReading, ArraysArePassedOverExceptForSymmetricKeys) {
    const auto ec = ECPublicKey::make(asBytes(
        R"({"kty":"EC","crv":"P-256","x":"x","y":"y","key_ops":["verify"],"x5c":["a"],"use":"sig","extra":"1","d2":{}})"));
    EXPECT_THAT(ec.parameters(), ElementsAre(Key("crv"), Key("kty"), Key("use"), Key("x"), Key("y")));
    EXPECT_RAISES(DecodingErrorCase::typeMismatch,
                  SymmetricKey::make(asBytes(R"({"kty":"oct","k":"AA","key_ops":["wrapKey"]})")));
    EXPECT_EQ(SymmetricKey::make(asBytes(R"({"kty":"oct","k":"AA","key_ops":"wrapKey"})"))["key_ops"],
              "wrapKey");
}

TEST(JWKReading, FaultsAreToldApart) {
    const std::string rsa = R"({"kty":"RSA","n":"n","e":"e"})";
    EXPECT_RAISES_SAYING(DecodingErrorCase::keyNotFound, "Key Type parameter wrong.",
                         ECPublicKey::make(asBytes(rsa)));
    EXPECT_RAISES_SAYING(DecodingErrorCase::keyNotFound, "Wrong parameter: key type",
                         SymmetricKey::make(asBytes(rsa)));
    const struct {
        const char* json;
        DecodingErrorCase kind;
    } rows[] = {
        {"{", DecodingErrorCase::dataCorrupted},
        {"[]", DecodingErrorCase::typeMismatch},
        {R"({"n":"n","e":"e"})", DecodingErrorCase::keyNotFound},
        {R"({"kty":"RSA","n":"n"})", DecodingErrorCase::keyNotFound},
        {R"({"kty":"RSA","n":"n","e":null})", DecodingErrorCase::valueNotFound},
        {R"({"kty":"RSA","n":["n"],"e":"e"})", DecodingErrorCase::typeMismatch},
        {R"({"kty":"RSA","n":"n","e":"e","kid":7})", DecodingErrorCase::typeMismatch},
    };
    for (const auto& row : rows)
        EXPECT_RAISES(row.kind, RSAPublicKey::make(asBytes(row.json))) << row.json;
    EXPECT_RAISES(DecodingErrorCase::dataCorrupted,
                  ECPublicKey::make(asBytes(R"({"kty":"EC","crv":"P-257","x":"x","y":"y"})")));
    EXPECT_RAISES(JOSEErrorCase::symmetricKeyNotBase64URLEncoded,
                  SymmetricKey::make(asBytes(R"({"kty":"oct","k":"A"})")));
    EXPECT_EQ(RSAPublicKey::make(asBytes(R"({"kty":"RSA","n":"not base64!","e":""})")).modulus(),
              "not base64!");
}

TEST(JWKConstruction, UnknownCurvesFailInTwoWays) {
    EXPECT_RAISES(JOSEErrorCase::invalidCurvePointOctetLength, ECPrivateKey("P-257", "x", "y", "d"));
    EXPECT_RAISES(JOSEErrorCase::couldNotConstructJWK, ECPublicKey(Bytes{2, 1, 1}));
    const SecKey privateKey = SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeEC, 256);
    EXPECT_RAISES(JOSEErrorCase::couldNotConstructJWK, ECPublicKey(privateKey));
    EXPECT_RAISES(JOSEErrorCase::couldNotConstructJWK, ECPrivateKey(SecKeyCopyPublicKey(privateKey)));
    EXPECT_RAISES(JOSEErrorCase::couldNotConstructJWK, RSAPublicKey(SecKeyCopyPublicKey(privateKey)));
}

TEST(JWKConversion, NumbersThatAreNotBase64URLAreNamed) {
    const std::string bad = "A";
    using enum JOSEErrorCase;
    EXPECT_RAISES(modulusNotBase64URLUIntEncoded, RSAPublicKey(bad, "AQAB").converted<Bytes>());
    EXPECT_RAISES(exponentNotBase64URLUIntEncoded, RSAPublicKey("AQAB", bad).converted<Bytes>());
    EXPECT_RAISES(xNotBase64URLUIntEncoded, ECPublicKey(ECCurveType::P256, bad, kX32).converted<Bytes>());
    EXPECT_RAISES(yNotBase64URLUIntEncoded, ECPublicKey(ECCurveType::P256, kX32, bad).converted<SecKey>());
    EXPECT_RAISES(privateKeyNotBase64URLUIntEncoded,
                  ECPrivateKey("P-256", kX32, kX32, bad).converted<SecretBytes>());
    EXPECT_RAISES(JWKErrorCase::cannotConvertToSecKeyChildClasses,
                  ECPublicKey(ECCurveType::P256, kX32, kX32).converted<SecKey>())
        << "a point off the curve";
}

TEST(JWKConversion, PublicCoordinatesLoseASignByte) {
    Bytes x(33, 7);
    x[0] = 0;
    EXPECT_EQ(ecKey(x, Bytes(32, 9)).converted<Bytes>(),
              ecKey(Bytes(32, 7), Bytes(32, 9)).converted<Bytes>());
    EXPECT_EQ(ecKey(Bytes(67), Bytes(66), ECCurveType::P521).converted<Bytes>().size(), 133U);
    const auto wrongLength = JOSEErrorCase::invalidCurvePointOctetLength;
    EXPECT_RAISES(wrongLength, ecKey(Bytes(31), Bytes(32)).converted<Bytes>());
    EXPECT_RAISES(wrongLength, ecKey(Bytes(), Bytes()).converted<Bytes>());
    EXPECT_RAISES(wrongLength, ecKey(Bytes(48), Bytes(48), ECCurveType::P384).converted<Bytes>())
        << "a well-formed P-384 coordinate loses its first byte";
    EXPECT_RAISES(
        wrongLength,
        ECPrivateKey("P-256", base64URLEncodedString(Bytes(33)), kX32, kX32).converted<SecretBytes>())
        << "private keys have no such rule";
}

TEST(JWKConversion, BytesFormsTellTheirCurve) {
    const struct {
        std::size_t length;
        std::optional<std::string> curve;
    } rows[] = {{65, "P-256"}, {97, "P-384"}, {133, "P-521"}, {64, {}}, {66, {}}, {1, {}}};
    for (const auto& row : rows) {
        Bytes point(row.length, 1);
        point[0] = 4;
        if (row.curve) {
            EXPECT_EQ(ecPublicKeyComponents(point).crv, row.curve);
        } else {
            EXPECT_RAISES(JOSEErrorCase::invalidCurvePointOctetLength, ecPublicKeyComponents(point));
        }
    }
    EXPECT_RAISES(JOSEErrorCase::compressedCurvePointsUnsupported, ecPublicKeyComponents(Bytes(33, 2)));
    EXPECT_RAISES(JOSEErrorCase::invalidCurvePointOctetLength, ecPublicKeyComponents(Bytes()));
}

TEST(JWKConversion, RsaModulusGetsOneZeroAndLosesIt) {
    const Bytes der = representing(std::type_identity<Bytes>{}, RSAPublicKeyComponents{{0x7F, 0x01}, {0x03}});
    EXPECT_EQ(hexEncodedString(der), "3008"
                                     "0203007f01"
                                     "020103");
    EXPECT_EQ(rsaPublicKeyComponents(der).modulus, (Bytes{0x7F, 0x01}));
}

TEST(JWKGeneration, PublicHalfCarriesEveryParameterButWritesPublicOnes) {
    const ECPrivateKey pair = ECPrivateKey::generateWith(ECCurveType::P256);
    EXPECT_THAT(pair["kid"].value(), testing::MatchesRegex("[0-9A-F-]{36}"));
    const ECPublicKey publicKey = pair.getPublic();
    EXPECT_EQ(publicKey["d"], pair.privateKey());
    EXPECT_FALSE(jsonOf(publicKey).contains("d"));
    EXPECT_TRUE(pair.isCorrespondWith(publicKey));
    EXPECT_FALSE(ECPrivateKey::generateWith(ECCurveType::P256).isCorrespondWith(publicKey));

    const JWEHeader header(KeyManagementAlgorithm::direct, ContentEncryptionAlgorithm::A128CBCHS256,
                           publicKey);
    EXPECT_EQ(header.parameters()["epk"].size(), 6U) << "kty, crv, x, y, kid and d go into the header";
    EXPECT_EQ(header.parameters()["epk"]["d"], pair.privateKey());
    EXPECT_EQ(ECPrivateKey::generateWithoutParametersWith(ECCurveType::P521)["kid"], std::nullopt);
}

TEST(JWKConstruction, SymmetricKeysAreMadeOfAnyBytes) {
    const SymmetricKey key(SecretBytes(16, 1));
    EXPECT_EQ(key, SymmetricKey(Bytes(16, 1)));
    EXPECT_EQ(key.converted<SecretBytes>(), SecretBytes(16, 1));
}

TEST(JWKThumbprint, PrivateAndPublicKeysShareIt) {
    const ECPrivateKey pair = ECPrivateKey::generateWith(ECCurveType::P384);
    EXPECT_EQ(pair.thumbprint(), pair.getPublic().thumbprint());
    const ECPrivateKey named = pair.withThumbprintAsKeyId();
    EXPECT_EQ(named["kid"], pair.thumbprint());
    EXPECT_EQ(named.privateKey(), pair.privateKey());
    EXPECT_RAISES(ThumbprintErrorCase::inputMustBeGreaterThanZero,
                  Thumbprint::calculate({}, JWKThumbprintAlgorithm::SHA256));
}

TEST(JWKSets, ElementsAreClassifiedByTypeAndPrivateNumber) {
    const std::string json =
        R"({"keys":[{"kty":"RSA","n":"n","e":"e"},{"kty":"RSA","n":"n","e":"e","d":"d"},{"kty":"oct","k":"AA","d":"d"},)"
        R"({"kty":"EC","crv":"P-256","x":"x","y":"y"},{"kty":"EC","crv":"P-256","x":"x","y":"y","d":"d"}]})";
    const JWKSet set = JWKSet::make(asBytes(json));
    ASSERT_EQ(set.size(), 5U);
    EXPECT_NE(dynamic_cast<const RSAPublicKey*>(&set[0]), nullptr);
    EXPECT_NE(dynamic_cast<const RSAPrivateKey*>(&set[1]), nullptr);
    EXPECT_NE(dynamic_cast<const SymmetricKey*>(&set[2]), nullptr);
    EXPECT_NE(dynamic_cast<const ECPublicKey*>(&set[3]), nullptr);
    EXPECT_NE(dynamic_cast<const ECPrivateKey*>(&set[4]), nullptr);
    const JWKSet again = JWKSet::make(set.jsonData().value());
    for (std::size_t index = 0; index < set.size(); ++index)
        EXPECT_EQ(again[index], set[index]);

    const std::string text =
        "No valid RSAPrivateKey, RSAPublicKey, SymmetricKey, ECPrivateKey, or ECPublicKey\n"
        "JSON found to decode.";
    for (const char* bad : {R"({"keys":[{"kty":"OKP"}]})", R"({"keys":[7]})", R"({"keys":[{"kty":1}]})",
                            R"({"keys":[{"kty":"EC","d":2}]})", R"({"keys":[{"kty":"RSA","n":"n"}]})"})
        EXPECT_RAISES_SAYING(DecodingErrorCase::dataCorrupted, text, JWKSet::make(asBytes(bad))) << bad;
    EXPECT_RAISES(DecodingErrorCase::keyNotFound, JWKSet::make(asBytes("{}")));
    EXPECT_EQ(JWKSet::make(asBytes(R"({"keys":[]})")).jsonString(), R"({"keys":[]})");
}

} // namespace
} // namespace korvane
