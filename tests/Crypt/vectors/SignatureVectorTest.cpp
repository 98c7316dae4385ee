#include "Crypt/EC.h"
#include "Crypt/RSA.h"
#include "tests/Crypt/vectors/VectorKeys.h"
#include "tests/support/Vectors.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

WycheproofGroup rsaVerification(SignatureAlgorithm algorithm) {
    return [algorithm](const JSON& group) -> WycheproofCheck {
        const SecKey key = SecKeyCreateWithSubjectPublicKeyInfo(hexMember(group, "publicKeyDer"));
        return [key, algorithm](const WycheproofTest& test) {
            return RSA::verify(test.bytes("msg"), test.bytes("sig"), key, algorithm);
        };
    };
}

TEST(SignatureVectors, ES256TakesGenuineRawSignaturesOnly) {
    runWycheproof("ecdsa_secp256r1_sha256_p1363_test.json", [](const JSON& group) -> WycheproofCheck {
        const SecKey key = publicKeyOfPoint(hexMember(group.at("publicKey"), "uncompressed"));
        return [key](const WycheproofTest& test) {
            return EC::verify(test.bytes("msg"), test.bytes("sig"), key, SignatureAlgorithm::ES256);
        };
    });
}

TEST(SignatureVectors, PS256TakesGenuineSignaturesWithTheDigestsSaltOnly) {
    runWycheproof("rsa_pss_2048_sha256_mgf1_32_test.json", rsaVerification(SignatureAlgorithm::PS256));
}

TEST(SignatureVectors, RS256TakesGenuineSignaturesOnly) {
    runWycheproof("rsa_signature_2048_sha256_subset.json", rsaVerification(SignatureAlgorithm::RS256));
}

} // namespace
} // namespace korvane
