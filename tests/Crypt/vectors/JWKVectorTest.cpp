#include "Crypt/ECPrivateKey.h"
#include "Crypt/JWKSet.h"
#include "Crypt/JWS.h"
#include "Crypt/RSAPrivateKey.h"
#include "Crypt/RSAPublicKey.h"
#include "Crypt/SymmetricKey.h"
#include "tests/Crypt/vectors/VectorKeys.h"
#include "tests/support/Vectors.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

/// The platform's key of the one public key of a set that has the identifier.
SecKey publicKeyOf(const JWKSet& set, const std::optional<std::string>& kid) {
    for (const JWKSet::Key& key : set) {
        if ((*key)["kid"] != kid) continue;
        if (const auto* ec = dynamic_cast<const ECPublicKey*>(key.get())) return ec->converted<SecKey>();
        if (const auto* rsa = dynamic_cast<const RSAPublicKey*>(key.get())) return rsa->converted<SecKey>();
    }
    throw std::invalid_argument("no such public key in the set");
}

bool isVerified(const WycheproofTest& test) {
    const JWS jws(test.text("jws"));
    const JSON& source = test.group.at(test.group.contains("public") ? "public" : "private");
    const JWKSet set = JWKSet::make(asBytes(source.dump()));
    const auto algorithm = jws.header().algorithm();
    EXPECT_EQ(!algorithm, test.why == "alg");
    if (!algorithm) return false;
    const SecKey key = publicKeyOf(set, jws.header().kid());
    const auto own = algorithmOf(source.at("keys").at(0));
    EXPECT_EQ(own != algorithm, test.outcome == VectorOutcome::pinned);
    if (own && own != algorithm) {
        EXPECT_FALSE(jws.isValid(Verifier::make(*own, key).value()));
    }
    jws.validate(Verifier::make(*algorithm, key).value());
    return true;
}

TEST(JWKVectors, KeysOfASetVerifyWhenTheyAreSound) {
    runWycheproof("json_web_key_test.json", [](const JSON&) { return isVerified; });
}

/// The members of a key that its JSON keeps: an RSA key is held without its primes.
nlohmann::json withoutPrimes(nlohmann::json jwk) {
    for (const char* prime : {"p", "q", "dp", "dq", "qi"})
        jwk.erase(prime);
    return jwk;
}

template <class Key>
void expectRoundTrip(const std::string& file) {
    SCOPED_TRACE(file);
    const std::string text = readVectors("rfc7520/" + file).dump();
    const Key key = Key::make(asBytes(text));
    const std::string written = key.jsonString().value();
    EXPECT_EQ(nlohmann::json::parse(written), withoutPrimes(nlohmann::json::parse(text)));
    EXPECT_TRUE(Key::make(asBytes(written)) == key);
    const JWKSet set = JWKSet::make(asBytes("{\"keys\":[" + text + "]}"));
    ASSERT_EQ(set.size(), 1U);
    EXPECT_TRUE(dynamic_cast<const Key*>(&set[0]) && set[0] == key);
}

// RFC 7520 section 3.
TEST(JWKVectors, PublishedKeysAreRecognisedAndWrittenAgain) {
    expectRoundTrip<ECPublicKey>("3_1.ec_public_key.json");
    expectRoundTrip<ECPrivateKey>("3_2.ec_private_key.json");
    expectRoundTrip<RSAPublicKey>("3_3.rsa_public_key.json");
    expectRoundTrip<RSAPrivateKey>("3_4.rsa_private_key.json");
    expectRoundTrip<SymmetricKey>("3_5.symmetric_key_mac_computation.json");
    expectRoundTrip<SymmetricKey>("3_6.symmetric_key_encryption.json");
}

template <class Family>
void expectPair(const std::string& publicFile, const std::string& privateFile, SignatureAlgorithm algorithm) {
    SCOPED_TRACE(privateFile);
    const Bytes message = toBytes("any message");
    const Bytes signature =
        Family::sign(message, privateKey(readVectors("rfc7520/" + privateFile)), algorithm);
    EXPECT_TRUE(
        Family::verify(message, signature, publicKey(readVectors("rfc7520/" + publicFile)), algorithm));
}

TEST(JWKVectors, PublishedPairsBelongTogether) {
    expectPair<EC>("3_1.ec_public_key.json", "3_2.ec_private_key.json", SignatureAlgorithm::ES512);
    expectPair<RSA>("3_3.rsa_public_key.json", "3_4.rsa_private_key.json", SignatureAlgorithm::RS256);
}

TEST(JWKVectors, ThumbprintIsThePublishedOne) {
    runRFC("rfc7638.json", 1, [](const JSON& row) {
        const RSAPublicKey key = RSAPublicKey::decode(row.at("jwk"));
        EXPECT_EQ(key.thumbprint(), row.at("thumbprint"));
        EXPECT_EQ(key.withThumbprintAsKeyId()["kid"], row.at("thumbprint").get<std::string>());
    });
}

} // namespace
} // namespace korvane
