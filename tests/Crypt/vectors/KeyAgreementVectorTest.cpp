#include "Crypt/AES.h"
#include "Crypt/ConcatKDF.h"
#include "Crypt/DataExtensions.h"
#include "Crypt/DeflateWrapper.h"
#include "Crypt/EC.h"
#include "Crypt/JWE.h"
#include "tests/Crypt/vectors/VectorKeys.h"
#include "tests/support/Failures.h"
#include "tests/support/Vectors.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

TEST(KeyAgreementVectors, ECDHAgreesWithPointsOnTheCurveOnly) {
    runWycheproof("ecdh_secp256r1_webcrypto_subset.json", [](const JSON&) -> WycheproofCheck {
        return [](const WycheproofTest& test) {
            const ECPrivateKey own = ECPrivateKey::decode(test.test.at("private"));
            const ECPublicKey foreign = ECPublicKey::decode(test.test.at("public"));
            EXPECT_EQ(hexEncodedString(ecdhDeriveBits(own, foreign)), test.text("shared"));
            return true;
        };
    });
}

// RFC 7520 section 5.5. The JWE stands for the standard's layout, which the ECDH-ES rows depart from.
TEST(KeyAgreementVectors, StandardECDHESIsReachedByThePrimitivesAlone) {
    const JSON vector = readVectors("rfc7520/5_5.key_agreement_using_ecdh-es_with_aes-cbc-hmac-sha2.json");
    const ECPrivateKey recipient = ECPrivateKey::decode(vector.at("input").at("key"));
    const JWE jwe(vector.at("output").at("compact").get<std::string>());
    EXPECT_RAISES(JOSEErrorCase::decryptingFailed, jwe.decrypt(recipient));

    const SecretBytes z = ecdhDeriveBits(recipient, jwe.header().epk().value());
    EXPECT_EQ(base64URLEncodedString(
                  concatKDF(Hash::SHA256, z, 256, asBytes("A128CBC-HS256"), {}, {}, bigEndianData(256))),
              vector.at("encrypting_key").at("cek"));
}

// RFC 7520 sections 5.8 and 5.9.
TEST(KeyAgreementVectors, KeyWrappedForAESGCMUnwrapsButItsJWEIsRefused) {
    for (const char* file : {"rfc7520/5_8.key_wrap_using_aes-keywrap_with_aes-gcm.json",
                             "rfc7520/5_9.compressed_content.json"}) {
        SCOPED_TRACE(file);
        const JSON vector = readVectors(file);
        const OwnedKey key = decryptionKey(vector.at("input").at("key"));
        const JWE jwe(vector.at("output").at("compact").get<std::string>());
        EXPECT_EQ(base64URLEncodedString(AES::unwrap(jwe.encryptedKey(), std::get<SecretBytes>(key),
                                                     KeyManagementAlgorithm::A128KW)),
                  vector.at("generated").at("cek"));
        EXPECT_RAISES(JOSEErrorCase::decryptingFailed, jwe.decrypt(asAnyKey(key)));
    }
}

TEST(CompressionVectors, RawDeflateInflates) {
    const JSON vector = readVectors("rfc7520/5_9.compressed_content.json");
    const Bytes inflated = DeflateCompressor().decompress(decoded(vector.at("generated").at("plaintext_c")));
    EXPECT_EQ(asText(inflated), vector.at("input").at("plaintext"));
}

} // namespace
} // namespace korvane
