#include "Crypt/AES.h"
#include "Crypt/DataExtensions.h"
#include "Crypt/RSA.h"
#include "tests/support/Failures.h"
#include "tests/support/Vectors.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using Alg = KeyManagementAlgorithm;

Alg wrapAlgorithm(std::size_t keyLength) {
    if (keyLength == 16) return Alg::A128KW;
    return keyLength == 24 ? Alg::A192KW : Alg::A256KW;
}

/// The tests without a ciphertext are about sizes that cannot be wrapped, the others about unwrapping.
bool isUnwrapped(const WycheproofTest& test) {
    const Bytes key = test.bytes("key"), message = test.bytes("msg"), wrapped = test.bytes("ct");
    const Alg alg = wrapAlgorithm(key.size());
    if (test.outcome == VectorOutcome::reject && wrapped.empty()) {
        EXPECT_RAISES(AESErrorCase::encryptingFailed, AES::wrap(message, key, alg));
    }
    EXPECT_EQ(hexEncodedString(AES::unwrap(wrapped, key, alg)), test.text("msg"));
    EXPECT_EQ(hexEncodedString(AES::wrap(message, key, alg)), test.text("ct"));
    return true;
}

WycheproofGroup decryption(Alg alg) {
    return [alg](const JSON& group) -> WycheproofCheck {
        const SecKey key = SecKeyCreateWithPKCS8(hexMember(group, "privateKeyPkcs8"));
        return [key, alg](const WycheproofTest& test) {
            const SecretBytes opened = RSA::decrypt(test.bytes("ct"), key, alg);
            if (test.outcome == VectorOutcome::messageHidden) {
                EXPECT_NE(hexEncodedString(opened), test.text("msg"));
                return false;
            }
            EXPECT_EQ(hexEncodedString(opened), test.text("msg"));
            return true;
        };
    };
}

TEST(KeyManagementVectors, AESKeyWrapUnwrapsIntactKeysOnly) {
    runWycheproof("aes_wrap_test.json", [](const JSON&) { return isUnwrapped; });
}

TEST(KeyManagementVectors, RSAOAEPOpensProperPaddingOnly) {
    runWycheproof("rsa_oaep_2048_sha1_mgf1sha1_test.json", decryption(Alg::RSAOAEP));
    runWycheproof("rsa_oaep_2048_sha256_mgf1sha256_test.json", decryption(Alg::RSAOAEP256));
}

TEST(KeyManagementVectors, RSA1_5NeverYieldsTheMessageOfBadPadding) {
    runWycheproof("rsa_pkcs1_2048_subset.json", decryption(Alg::RSA1_5));
}

} // namespace
} // namespace korvane
