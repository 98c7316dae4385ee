#include "Crypt/AES.h"
#include "Crypt/AESCBCEncryption.h"
#include "Crypt/HMAC.h"
#include "Crypt/KeyManagementModes.h"
#include "Crypt/RSA.h"
#include "Crypt/RSAPublicKey.h"
#include "Crypt/SecureRandom.h"
#include "tests/support/Failures.h"
#include "tests/support/RecordingLogger.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using KM = KeyManagementAlgorithm;
using CE = ContentEncryptionAlgorithm;

const SecKey& rsaKey() {
    static const SecKey key = SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeRSA, 2048);
    return key;
}

TEST(KeyManagementFactories, EachFamilyTakesItsOwnTypeOfKey) {
    const Bytes bytes(16);
    const ECPrivateKey ecPrivate = ECPrivateKey::generateWith(ECCurveType::P256);
    const ECPublicKey ecPublic = ecPrivate.getPublic();
    const RSAPublicKey jwk("n", "e");
    const struct {
        const char* name;
        AnyKey key;
        std::optional<KeyManagementFamily> encrypts[2];
        std::optional<KeyManagementFamily> decrypts[2];
    } rows[] = {
        {"SecKey", rsaKey(), {KeyManagementFamily::RSA, {}}, {KeyManagementFamily::RSA, {}}},
        {"bytes",
         bytes,
         {KeyManagementFamily::AES, KeyManagementFamily::direct},
         {KeyManagementFamily::AES, KeyManagementFamily::direct}},
        {"ECPublicKey", ecPublic, {KeyManagementFamily::EC, {}}, {{}, {}}},
        {"ECPrivateKey", ecPrivate, {{}, {}}, {KeyManagementFamily::EC, {}}},
        {"RSAPublicKey", jwk, {{}, {}}, {{}, {}}},
    };
    for (const auto& row : rows)
        for (const KM algorithm : allKeyManagementAlgorithms()) {
            SCOPED_TRACE(std::string(row.name) + " " + std::string(rawValue(algorithm)));
            const auto isIn = [&](const auto& families) {
                return families[0] == family(algorithm) || families[1] == family(algorithm);
            };
            EXPECT_EQ(makeEncryptionKeyManagementMode(algorithm, CE::A128CBCHS256, row.key) != nullptr,
                      isIn(row.encrypts));
            EXPECT_EQ(makeDecryptionKeyManagementMode(algorithm, CE::A128CBCHS256, row.key) != nullptr,
                      isIn(row.decrypts));
        }
    EXPECT_EQ(allKeyManagementAlgorithms().size(), 11U);
}

TEST(RSAKeyManagement, WhatDoesNotOpenGivesARandomKey) {
    const auto mode = makeDecryptionKeyManagementMode(KM::RSAOAEP256, CE::A256CBCHS512, rsaKey());
    const Bytes shortKey = RSA::encrypt(Bytes(32, 1), SecKeyCopyPublicKey(rsaKey()), KM::RSAOAEP256);
    for (const Bytes& encryptedKey : {Bytes(), Bytes(255), Bytes(256), Bytes(256, 0xFF), shortKey}) {
        const SecretBytes first = mode->determineContentEncryptionKey(encryptedKey);
        EXPECT_EQ(first.size(), 64U);
        EXPECT_NE(first, mode->determineContentEncryptionKey(encryptedKey));
    }
}

TEST(RSAKeyManagement, LengthsAreThoseOfTheBlock) {
    const SecKey publicKey = SecKeyCopyPublicKey(rsaKey());
    const std::pair<KM, std::ptrdiff_t> rows[] = {
        {KM::RSA1_5, 245}, {KM::RSAOAEP, 214}, {KM::RSAOAEP256, 190}};
    for (const auto& row : rows) {
        const KM algorithm = row.first;
        const std::ptrdiff_t longest = row.second;
        EXPECT_EQ(maxMessageLength(algorithm, publicKey), longest);
        const auto size = static_cast<std::size_t>(longest);
        EXPECT_EQ(RSA::decrypt(RSA::encrypt(Bytes(size, 7), publicKey, algorithm), rsaKey(), algorithm),
                  SecretBytes(size, 7));
        EXPECT_RAISES(RSAErrorCase::plainTextLengthNotSatisfied,
                      RSA::encrypt(Bytes(size + 1), publicKey, algorithm));
        EXPECT_RAISES(RSAErrorCase::cipherTextLenghtNotSatisfied,
                      RSA::decrypt(Bytes(257), rsaKey(), algorithm));
        EXPECT_RAISES(RSAErrorCase::algorithmNotSupported, RSA::encrypt(Bytes(1), rsaKey(), algorithm));
    }
    EXPECT_EQ(maxMessageLength(KM::A128KW, publicKey), std::nullopt);
    EXPECT_RAISES(RSAErrorCase::algorithmNotSupported, RSA::encrypt(Bytes(1), publicKey, KM::direct));
}

TEST(AESKeyManagement, KeysOfOtherLengthsAreRefused) {
    EXPECT_RAISES(AESErrorCase::keyLengthNotSatisfied, AES::wrap(Bytes(32), Bytes(16), KM::A256KW));
    EXPECT_RAISES(AESErrorCase::invalidAlgorithm, AES::wrap(Bytes(32), Bytes(16), KM::direct));
    EXPECT_RAISES(AESErrorCase::invalidAlgorithm, AES::unwrap(Bytes(32), Bytes(16), KM::ECDH_ES_A128KW));
    EXPECT_RAISES_SAYING(AESErrorCase::encryptingFailed, "Key wrap failed with status: -4300.",
                         AES::wrap(Bytes(20), Bytes(16), KM::A128KW));
    EXPECT_RAISES_SAYING(AESErrorCase::decryptingFailed, "Key unwrap failed with status: -4304.",
                         AES::unwrap(Bytes(24), Bytes(16), KM::A128KW));
    const Bytes kek(16, 3);
    const auto mode = makeDecryptionKeyManagementMode(KM::A128KW, CE::A128CBCHS256, kek);
    EXPECT_RAISES(AESErrorCase::keyLengthNotSatisfied,
                  mode->determineContentEncryptionKey(AES::wrap(Bytes(24), kek, KM::A128KW)))
        << "there is no random key to fall back on";
}

TEST(DirectKeyManagement, ASecondPartIsRefused) {
    const RecordingLogger log;
    const auto mode = makeDecryptionKeyManagementMode(KM::direct, CE::A128CBCHS256, Bytes(32, 1));
    const std::string text = "Direct encryption does not expect an encrypted key.";
    EXPECT_EQ(mode->determineContentEncryptionKey({}), SecretBytes(32, 1));
    EXPECT_RAISES_SAYING(JOSEErrorCase::decryptingFailed, text,
                         mode->determineContentEncryptionKey(Bytes(1)));
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_THAT(log.lines()[0], testing::AllOf(testing::StartsWith("Crypt/"), testing::EndsWith(text)));
}

TEST(ContentEncryption, KeyLengthsAreChecked) {
    const std::pair<CE, std::size_t> rows[] = {{CE::A128CBCHS256, 32}, {CE::A256CBCHS512, 64}};
    for (const auto& [algorithm, length] : rows)
        for (const std::size_t wrong : {std::size_t{0}, length - 1, length + 1, 96 - length}) {
            const AESCBCEncryption cipher(algorithm, SecretBytes(wrong));
            const auto refused = JWEErrorCase::keyLengthNotSatisfied;
            EXPECT_RAISES(refused, cipher.encrypt({}, Payload(Bytes(1))));
            EXPECT_RAISES(refused, cipher.decrypt({Bytes(16), Bytes(16), {}, Bytes(16)}));
        }
    EXPECT_RAISES(AESErrorCase::keyLengthNotSatisfied,
                  AES::encrypt(Bytes(1), Bytes(32), CE::A128CBCHS256, Bytes(16)));
}

TEST(ContentEncryption, AnyChangeFailsAtTheTag) {
    const AESCBCEncryption cipher(CE::A128CBCHS256, SecretBytes(32, 5));
    const Bytes aad = toBytes("aad");
    const ContentEncryptionContext sealed = cipher.encrypt(toBytes("some text"), aad);
    EXPECT_EQ(sealed.authenticationTag.size(), 16U);
    EXPECT_EQ(asText(cipher.decrypt(
                  {sealed.ciphertext, sealed.initializationVector, aad, sealed.authenticationTag})),
              "some text");
    const auto flipped = [](Bytes bytes, std::size_t bit) {
        bytes[bit / 8] = static_cast<std::uint8_t>(bytes[bit / 8] ^ (1U << (bit % 8)));
        return bytes;
    };
    const auto refused = JWEErrorCase::hmacNotAuthenticated;
    for (std::size_t bit = 0; bit < 128; ++bit) {
        EXPECT_RAISES(refused, cipher.decrypt({flipped(sealed.ciphertext, bit), sealed.initializationVector,
                                               aad, sealed.authenticationTag}));
        EXPECT_RAISES(refused, cipher.decrypt({sealed.ciphertext, flipped(sealed.initializationVector, bit),
                                               aad, sealed.authenticationTag}));
        EXPECT_RAISES(refused, cipher.decrypt({sealed.ciphertext, sealed.initializationVector, aad,
                                               flipped(sealed.authenticationTag, bit)}));
    }
    EXPECT_RAISES(refused, cipher.decrypt({sealed.ciphertext, sealed.initializationVector, toBytes("aae"),
                                           sealed.authenticationTag}));
    for (const std::size_t length : {0U, 15U, 17U, 32U}) {
        Bytes tag = sealed.authenticationTag;
        tag.resize(length);
        EXPECT_RAISES(refused, cipher.decrypt({sealed.ciphertext, sealed.initializationVector, aad, tag}))
            << length;
    }
}

TEST(ContentEncryption, EmptyInputsAreRefused) {
    const AESCBCEncryption cipher(CE::A256CBCHS512, SecretBytes(64));
    EXPECT_RAISES_SAYING(AESErrorCase::encryptingFailed, "Encryption failed with status: -4300.",
                         cipher.encrypt({}, {}));
    EXPECT_RAISES_SAYING(AESErrorCase::decryptingFailed, "Decryption failed with status: -4300.",
                         AES::decrypt({}, Bytes(16), CE::A128CBCHS256, Bytes(16)));
    EXPECT_RAISES(HMACErrorCase::inputMustBeGreaterThanZero,
                  HMAC::calculate({}, Bytes(1), HMACAlgorithm::SHA256));
    EXPECT_EQ(HMAC::calculate(Bytes(1), {}, HMACAlgorithm::SHA512).size(), 64U)
        << "an empty key is passed on";
    EXPECT_RAISES(SecureRandomErrorCase::countMustBeGreaterThanZero, SecureRandom::generate(0));
    EXPECT_RAISES(SecureRandomErrorCase::countMustBeGreaterThanZero, randomBytes(-5));
    EXPECT_NE(randomBytes(16), randomBytes(16));
}

} // namespace
} // namespace korvane
