#include "Crypt/AES.h"
#include "Crypt/ConcatKDF.h"
#include "Crypt/DataExtensions.h"
#include "Crypt/EC.h"
#include "Crypt/JWE.h"
#include "Crypt/JWKSet.h"
#include "Crypt/JWS.h"
#include "Crypt/RSAPrivateKey.h"
#include "Crypt/RSAPublicKey.h"
#include "Crypt/SymmetricKey.h"
#include "tests/support/Failures.h"
#include "tests/support/Vectors.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using SA = SignatureAlgorithm;

std::string textOf(const JSON& row, const char* name) {
    return row.at(name);
}

Bytes decoded(const std::string& base64URL) {
    return fromBase64URL(base64URL).value();
}

SecKey publicKey(const JSON& jwk) {
    if (jwk.at("kty") == "EC") return ECPublicKey::decode(jwk).converted<SecKey>();
    return RSAPublicKey::decode(jwk).converted<SecKey>();
}

/// RSA keys are made of their numbers, since no JWK converts to one.
SecKey privateKey(const JSON& jwk) {
    if (jwk.at("kty") == "EC") return ECPrivateKey::decode(jwk).converted<SecKey>();
    return SecKeyCreateWithRSAPrivateNumbers(decoded(jwk.at("n")), decoded(jwk.at("e")),
                                             decoded(jwk.at("d")));
}

/// A decryption key of any type that suits an algorithm, owned.
using OwnedKey = std::variant<SecretBytes, SecKey, ECPrivateKey>;

OwnedKey decryptionKey(const JSON& jwk) {
    if (jwk.at("kty") == "oct") return SymmetricKey::decode(jwk).converted<SecretBytes>();
    if (jwk.at("kty") == "EC") return ECPrivateKey::decode(jwk);
    return privateKey(jwk);
}

AnyKey asAnyKey(const OwnedKey& key) {
    return std::visit([](const auto& held) { return AnyKey(held); }, key);
}

/// The signature algorithm that a JWK is pinned to; the vectors write ES512 as "ES521" too.
std::optional<SA> algorithmOf(const JSON& jwk) {
    const std::string name = jwk.at("alg");
    return fromRawValue<SA>(name == "ES521" ? "ES512" : name);
}

bool isOpened(const WycheproofTest& test, const OwnedKey& key) {
    const JWE jwe(test.text("jwe"));
    const Payload payload = jwe.decrypt(asAnyKey(key));
    const auto alg = fromRawValue<KeyManagementAlgorithm>(textOf(test.group.at("private"), "alg"));
    const auto enc = fromRawValue<ContentEncryptionAlgorithm>(test.text("enc"));
    EXPECT_EQ(jwe.decrypt(Decrypter::make(alg.value(), enc.value(), asAnyKey(key)).value()), payload);
    EXPECT_EQ(hexEncodedString(payload.data()), test.text("pt"));
    return true;
}

TEST(MessageVectors, IntactJWEsOfTheLayersAlgorithmsOpenAndNoOthers) {
    runWycheproof("json_web_encryption_odd.json", [](const JSON& group) -> WycheproofCheck {
        const OwnedKey key = decryptionKey(group.at("private"));
        return [key](const WycheproofTest& test) { return isOpened(test, key); };
    });
}

/// The JWK or the JWK set that signs the tests of a group.
const JSON& signerOf(const JSON& group) {
    return group.at(group.contains("public") ? "public" : "private");
}

bool isVerified(const WycheproofTest& test) {
    const JWS jws(test.text("jws"));
    const JSON& jwk = signerOf(test.group);
    if (jwk.at("kty") == "oct") { // of no algorithm of the layer: only the reader can refuse, and must
        EXPECT_FALSE(jws.header().algorithm());
        return test.why != "alg";
    }
    const SecKey key = publicKey(jwk);
    const auto algorithm = jwk.contains("alg") ? algorithmOf(jwk) : jws.header().algorithm();
    jws.validate(Verifier::make(algorithm.value(), key).value());
    EXPECT_TRUE(jws.isValid(key));
    return true;
}

/// The platform's key of the one public key of a set that has the identifier.
SecKey publicKeyOf(const JWKSet& set, const std::optional<std::string>& kid) {
    for (const JWKSet::Key& key : set) {
        if ((*key)["kid"] != kid) continue;
        if (const auto* ec = dynamic_cast<const ECPublicKey*>(key.get())) return ec->converted<SecKey>();
        if (const auto* rsa = dynamic_cast<const RSAPublicKey*>(key.get())) return rsa->converted<SecKey>();
    }
    throw std::invalid_argument("no such public key in the set");
}

bool isVerifiedByASet(const WycheproofTest& test) {
    const JWS jws(test.text("jws"));
    const JSON& source = signerOf(test.group);
    const JWKSet set = JWKSet::make(asBytes(source.dump()));
    const auto algorithm = jws.header().algorithm();
    EXPECT_EQ(!algorithm, test.why == "alg");
    if (!algorithm) return false;
    const SecKey key = publicKeyOf(set, jws.header().kid());
    const auto own = algorithmOf(source.at("keys").at(0));
    EXPECT_EQ(own != algorithm, test.outcome == VectorOutcome::pinned);
    EXPECT_FALSE(own && own != algorithm && jws.isValid(Verifier::make(*own, key).value()));
    jws.validate(Verifier::make(*algorithm, key).value());
    return true;
}

TEST(MessageVectors, GenuineJWSsOfTheLayersAlgorithmsVerifyAndNoOthers) {
    runWycheproof("json_web_signature_odd.json", isVerified);
    runWycheproof("json_web_key_test.json", isVerifiedByASet);
}

TEST(RFC7515, SignaturesAreReadVerifiedAndMadeAgain) {
    runRFC("rfc7515.json", 3, [](const JSON& row) {
        const JWS jws(textOf(row, "compact"));
        const auto alg = fromRawValue<SA>(textOf(row, "alg")).value();
        const Verifier verifier = Verifier::make(alg, publicKey(row.at("jwk"))).value();
        EXPECT_TRUE(jws.isValid(verifier));
        const JWS again(jws.header(), jws.payload(), Signer::make(alg, privateKey(row.at("jwk"))).value());
        EXPECT_TRUE(again.isValid(verifier));
        // RSASSA-PKCS1-v1_5 has one signature for one message, ECDSA many.
        EXPECT_EQ(again.compactSerializedString() == row.at("compact"), alg == SA::RS256);
    });
}

TEST(RFC7516, MessagesAreReadAndOpened) {
    runRFC("rfc7516.json", 2, [](const JSON& row) {
        const JWE jwe(textOf(row, "compact"));
        EXPECT_EQ(asText(jwe.decrypt(asAnyKey(decryptionKey(row.at("jwk")))).data()),
                  row.at("plaintext_text"));
    });
}

// Section 5.5. The JWE stands for the standard's layout, which the ECDH-ES rows depart from.
TEST(RFC7520, StandardECDHESIsReachedByThePrimitivesAlone) {
    const JSON vector = readVectors("rfc7520/5_5.key_agreement_using_ecdh-es_with_aes-cbc-hmac-sha2.json");
    const ECPrivateKey recipient = ECPrivateKey::decode(vector.at("input").at("key"));
    const JWE jwe(textOf(vector.at("output"), "compact"));
    EXPECT_RAISES(JOSEErrorCase::decryptingFailed, jwe.decrypt(recipient));
    const SecretBytes z = ecdhDeriveBits(recipient, jwe.header().epk().value());
    EXPECT_EQ(base64URLEncodedString(concatKDF(Hash::SHA256, z, 256, asBytes("A128CBC-HS256"), {}, {},
                                               bigEndianData(std::uint32_t{256}))),
              vector.at("encrypting_key").at("cek"));
}

// Sections 5.8 and 5.9.
TEST(RFC7520, KeyWrappedForAESGCMUnwrapsButItsJWEIsRefused) {
    for (const char* file : {"rfc7520/5_8.key_wrap_using_aes-keywrap_with_aes-gcm.json",
                             "rfc7520/5_9.compressed_content.json"}) {
        const JSON vector = readVectors(file);
        const SecretBytes kek = std::get<SecretBytes>(decryptionKey(vector.at("input").at("key")));
        const JWE jwe(textOf(vector.at("output"), "compact"));
        EXPECT_EQ(
            base64URLEncodedString(AES::unwrap(jwe.encryptedKey(), kek, KeyManagementAlgorithm::A128KW)),
            vector.at("generated").at("cek"));
        EXPECT_RAISES(JOSEErrorCase::decryptingFailed, jwe.decrypt(AnyKey(kek)));
        if (!vector.at("generated").contains("plaintext_c")) continue;
        const Bytes deflated = decoded(vector.at("generated").at("plaintext_c"));
        EXPECT_EQ(asText(DeflateCompressor().decompress(deflated)), vector.at("input").at("plaintext"));
    }
}

/// An RSA key is held without its primes.
template <class Key>
void expectRoundTrip(const std::string& file) {
    SCOPED_TRACE(file);
    JSON jwk = readVectors("rfc7520/" + file);
    const Key key = Key::decode(jwk);
    const JWKSet set = JWKSet::make(asBytes("{\"keys\":[" + jwk.dump() + "]}"));
    EXPECT_TRUE(dynamic_cast<const Key*>(&set[0]) && set[0] == key);
    for (const char* prime : {"p", "q", "dp", "dq", "qi"})
        jwk.erase(prime);
    EXPECT_EQ(nlohmann::json::parse(JWKSet::make(set.jsonData().value())[0].jsonString().value()),
              nlohmann::json::parse(jwk.dump()));
}

// Section 3.
TEST(RFC7520, PublishedKeysAreRecognisedAndWrittenAgain) {
    expectRoundTrip<ECPublicKey>("3_1.ec_public_key.json");
    expectRoundTrip<ECPrivateKey>("3_2.ec_private_key.json");
    expectRoundTrip<RSAPublicKey>("3_3.rsa_public_key.json");
    expectRoundTrip<RSAPrivateKey>("3_4.rsa_private_key.json");
    expectRoundTrip<SymmetricKey>("3_5.symmetric_key_mac_computation.json");
    expectRoundTrip<SymmetricKey>("3_6.symmetric_key_encryption.json");
}

TEST(RFC7638, ThumbprintIsThePublishedOne) {
    runRFC("rfc7638.json", 1, [](const JSON& row) {
        EXPECT_EQ(RSAPublicKey::decode(row.at("jwk")).thumbprint(), row.at("thumbprint"));
    });
}

} // namespace
} // namespace korvane
