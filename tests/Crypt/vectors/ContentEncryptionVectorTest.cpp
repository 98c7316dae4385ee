#include "Crypt/AES.h"
#include "Crypt/AESCBCEncryption.h"
#include "Crypt/DataExtensions.h"
#include "Crypt/HMAC.h"
#include "Crypt/JOSEError.h"
#include "tests/support/Failures.h"
#include "tests/support/Vectors.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using Enc = ContentEncryptionAlgorithm;

/// Sealing has a vector of its own each time, so what was sealed here is opened again.
void expectResealed(const AESCBCEncryption& encryption, ByteView message, ByteView aad) {
    const ContentEncryptionContext sealed = encryption.encrypt(message, aad);
    EXPECT_EQ(hexEncodedString(encryption.decrypt(
                  {sealed.ciphertext, sealed.initializationVector, aad, sealed.authenticationTag})),
              hexEncodedString(message));
}

template <class Seal>
void expectCannotBeSealed(const WycheproofTest& test, Seal seal) {
    EXPECT_EQ(test.outcome, VectorOutcome::emptyPlaintext);
    EXPECT_RAISES_SAYING(AESErrorCase::encryptingFailed, "Encryption failed with status: -4300.", seal());
}

/// A whole content encryption with the authenticated data as they are.
bool isOpened(const WycheproofTest& test, Enc enc) {
    const AESCBCEncryption encryption(enc, toSecretBytes(test.bytes("key")));
    const Bytes message = test.bytes("msg"), aad = test.bytes("aad"), iv = test.bytes("iv");
    const Bytes ciphertext = test.bytes("ct"), tag = test.bytes("tag");
    const auto open = [&] { return encryption.decrypt({ciphertext, iv, aad, tag}); };
    if (test.outcome == VectorOutcome::reject) {
        EXPECT_RAISES(JWEErrorCase::hmacNotAuthenticated, open());
    }
    EXPECT_EQ(hexEncodedString(open()), test.text("msg"));
    if (message.empty()) {
        expectCannotBeSealed(test, [&] { return encryption.encrypt(message, aad); });
        return true;
    }
    const Bytes key = test.bytes("key");
    EXPECT_EQ(hexEncodedString(AES::encrypt(message, retrieveKeys(enc, key).encryptionKey, enc, iv)),
              test.text("ct"));
    expectResealed(encryption, message, aad);
    return true;
}

/// The bare cipher with its padding.
bool isDecrypted(const WycheproofTest& test) {
    const Bytes key = test.bytes("key"), iv = test.bytes("iv"), message = test.bytes("msg");
    const Enc enc = key.size() == 32 ? Enc::A256CBCHS512 : Enc::A128CBCHS256;
    if (test.why == "aes192cbc") {
        for (const Enc row : {Enc::A128CBCHS256, Enc::A256CBCHS512})
            EXPECT_RAISES(AESErrorCase::keyLengthNotSatisfied, AES::decrypt(test.bytes("ct"), key, row, iv));
        return false;
    }
    EXPECT_EQ(hexEncodedString(AES::decrypt(test.bytes("ct"), key, enc, iv)), test.text("msg"));
    const auto seal = [&] { return AES::encrypt(message, key, enc, iv); };
    if (message.empty()) {
        expectCannotBeSealed(test, seal);
    } else {
        EXPECT_EQ(hexEncodedString(seal()), test.text("ct"));
    }
    return true;
}

bool isAuthentic(const WycheproofTest& test, HMACAlgorithm algorithm) {
    const Bytes mac = HMAC::calculate(test.bytes("msg"), test.bytes("key"), algorithm);
    EXPECT_EQ(mac.size(), outputLength(algorithm));
    const auto tagLength = test.group.at("tagSize").get<std::size_t>() / 8;
    return hexEncodedString(ByteView(mac).first(tagLength)) == test.text("tag");
}

TEST(ContentEncryptionVectors, AESCBCHMACOpensAuthenticTextsOnly) {
    runWycheproof("a128cbc_hs256_test.json", [](const JSON&) -> WycheproofCheck {
        return [](const WycheproofTest& test) { return isOpened(test, Enc::A128CBCHS256); };
    });
    runWycheproof("a256cbc_hs512_test.json", [](const JSON&) -> WycheproofCheck {
        return [](const WycheproofTest& test) { return isOpened(test, Enc::A256CBCHS512); };
    });
}

TEST(ContentEncryptionVectors, AESCBCTakesProperPaddingOnly) {
    runWycheproof("aes_cbc_pkcs5_test.json", [](const JSON&) { return isDecrypted; });
}

TEST(ContentEncryptionVectors, HMACIsThePublishedOne) {
    runWycheproof("hmac_sha256_subset.json", [](const JSON&) -> WycheproofCheck {
        return [](const WycheproofTest& test) { return isAuthentic(test, HMACAlgorithm::SHA256); };
    });
    runWycheproof("hmac_sha512_subset.json", [](const JSON&) -> WycheproofCheck {
        return [](const WycheproofTest& test) { return isAuthentic(test, HMACAlgorithm::SHA512); };
    });
}

} // namespace
} // namespace korvane
