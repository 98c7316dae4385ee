#include "Crypt/AES.h"
#include "Crypt/AESCBCEncryption.h"
#include "Crypt/ConcatKDF.h"
#include "Crypt/EC.h"
#include "Crypt/Encrypter.h"
#include "Crypt/HMAC.h"
#include "Crypt/RSA.h"
#include "Crypt/SecureRandom.h"
#include "tests/support/Failures.h"

#include <gtest/gtest.h>

namespace korvane {
namespace {

using KM = KeyManagementAlgorithm;
using CE = ContentEncryptionAlgorithm;

constexpr CE kEnc = CE::A128CBCHS256;
constexpr CE kLongEnc = CE::A256CBCHS512;

const ECPrivateKey kAlice = ECPrivateKey::generateWith(ECCurveType::P256);
const ECPrivateKey kBob = ECPrivateKey::generateWith(ECCurveType::P256);

const SecKey& rsaKey() {
    static const SecKey key = SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeRSA, 2048);
    return key;
}

TEST(RSAKeyManagement, WhatDoesNotOpenGivesARandomKey) {
    const auto mode = makeDecryptionKeyManagementMode(KM::RSAOAEP256, kLongEnc, rsaKey());
    const Bytes shortKey = RSA::encrypt(Bytes(32, 1), SecKeyCopyPublicKey(rsaKey()), KM::RSAOAEP256);
    for (const Bytes& encryptedKey : {Bytes(), Bytes(255), Bytes(256), Bytes(256, 0xFF), shortKey}) {
        const SecretBytes first = mode->determineContentEncryptionKey(encryptedKey);
        EXPECT_EQ(first.size(), 64U);
        EXPECT_NE(first, mode->determineContentEncryptionKey(encryptedKey));
    }
}

TEST(AESKeyManagement, KeyOfAnotherLengthIsRefused) {
    const Bytes kek(16, 3);
    const auto mode = makeDecryptionKeyManagementMode(KM::A128KW, kEnc, kek);
    EXPECT_RAISES(AESErrorCase::keyLengthNotSatisfied,
                  mode->determineContentEncryptionKey(AES::wrap(Bytes(24), kek, KM::A128KW)))
        << "there is no random key to fall back on";
}

TEST(ContentEncryption, TagsAndTextsMustHaveTheirLength) {
    for (const auto& [algorithm, length] : {std::pair(kEnc, 32U), {kLongEnc, 64U}}) {
        const AESCBCEncryption cipher(algorithm, SecretBytes(length, 5));
        const ContentEncryptionContext sealed = cipher.encrypt(toBytes("some text"), {});
        for (const std::size_t wrong : {0U, length / 2 - 1, length / 2 + 1, length}) {
            Bytes tag = sealed.authenticationTag;
            tag.resize(wrong);
            EXPECT_RAISES(JWEErrorCase::hmacNotAuthenticated,
                          cipher.decrypt({sealed.ciphertext, sealed.initializationVector, {}, tag}));
        }
    }
    EXPECT_RAISES_SAYING(AESErrorCase::decryptingFailed, "Decryption failed with status: -4300.",
                         AES::decrypt({}, Bytes(16), kEnc, Bytes(16)));
    EXPECT_RAISES(SecureRandomErrorCase::countMustBeGreaterThanZero, randomBytes(0));
}

// RFC 2104 section 2: a key of up to a block is filled up with zeros, and only a longer one is hashed.
TEST(Hmac, AKeyOfABlockIsTakenAsItIs) {
    for (const auto& row : {std::pair(HMACAlgorithm::SHA256, 64U), {HMACAlgorithm::SHA512, 128U}}) {
        const auto mac = [&row](ByteView key) { return HMAC::calculate(Bytes(1), key, row.first); };
        Bytes key(row.second + 1, 'k');
        std::fill_n(key.rbegin(), 2, 0);
        EXPECT_EQ(mac(ByteView(key).first(row.second)), mac(ByteView(key).first(row.second - 1)));
        EXPECT_NE(mac(ByteView(key).first(row.second)), mac(key));
        EXPECT_EQ(mac({}), mac(Bytes(1)));
    }
    EXPECT_RAISES(HMACErrorCase::inputMustBeGreaterThanZero,
                  HMAC::calculate({}, Bytes(1), HMACAlgorithm::SHA256));
}

/// One round of RFC 7518 section 4.6.2 by hand.
SecretBytes kdfRound(std::uint8_t counter) {
    Bytes input{0, 0, 0, counter};
    input.resize(36, 7);
    const Bytes framed{0, 0, 0, 0, 0, 0, 0, 1, 'u', 0, 0, 0, 2, 'r', 'n', 0, 0, 1, 0, 5};
    input.insert(input.end(), framed.begin(), framed.end());
    return digest(Hash::SHA256, input);
}

TEST(ConcatKdf, EveryRoundHasItsCounterAndTheLastIsCut) {
    const auto derive = [](std::size_t bits) {
        return concatKDF(Hash::SHA256, Bytes(32, 7), bits, {}, toBytes("u"), toBytes("rn"), Bytes{0, 0, 1, 0},
                         Bytes{5});
    };
    const SecretBytes first = kdfRound(1);
    const SecretBytes second = kdfRound(2);
    SecretBytes both = first;
    both.insert(both.end(), second.begin(), second.end());
    EXPECT_EQ(derive(256), first);
    EXPECT_EQ(derive(512), both);
    both.resize(33);
    both[32] = static_cast<std::uint8_t>(both[32] & 0xF0U);
    EXPECT_EQ(derive(260), both);
    EXPECT_TRUE(derive(0).empty());
}

TEST(KeyAgreement, WrapperFramesItsValuesTwice) {
    const SecretBytes z = ecdhDeriveBits(kAlice, kBob.getPublic());
    const std::tuple<KM, std::string, std::uint32_t> rows[] = {
        {KM::ECDH_ES, "", 256},
        {KM::ECDH_ES_A128KW, "ECDH-ES+A128KW", 128},
        {KM::ECDH_ES_A192KW, "ECDH-ES+A192KW", 192},
        {KM::ECDH_ES_A256KW, "ECDH-ES+A256KW", 256},
    };
    for (const auto& [algorithm, name, bits] : rows)
        EXPECT_EQ(keyAgreementCompute(algorithm, kEnc, kBob, kAlice.getPublic(), toBytes("u"), {}),
                  concatKDF(Hash::SHA256, z, bits, prefixedBigEndenLen(asBytes(name)), Bytes{0, 0, 0, 1, 'u'},
                            Bytes(4), bigEndianData(bits)));
}

TEST(ECEncryption, AHeaderThatCannotBeWrittenIsNotSealedUnder) {
    JWEHeader header(KM::ECDH_ES, kEnc);
    header.setKid("\xff"); // without its "epk" nobody could open it
    EXPECT_RAISES(ECErrorCase::encryptingFailed,
                  EC::encryptionContextFor(kBob.getPublic(), KM::ECDH_ES, kEnc, header, {}));
}

TEST(ECDecryption, AKeyOfTheWrongLengthIsReplacedAndAMissingOneRefused) {
    const JWEHeader header(KM::ECDH_ES_A128KW, kEnc, {}, {}, kAlice.getPublic());
    const SecretBytes kek = keyAgreementCompute(KM::ECDH_ES_A128KW, kEnc, kAlice, kBob.getPublic(), {}, {});
    const Bytes wrapped = AES::wrap(Bytes(32, 1), kek, KM::A128KW);
    const auto mode = makeDecryptionKeyManagementMode(KM::ECDH_ES_A128KW, kLongEnc, kBob);
    const SecretBytes key = mode->determineContentEncryptionKey(wrapped, header);
    EXPECT_EQ(key.size(), 64U);
    EXPECT_NE(key, mode->determineContentEncryptionKey(wrapped, header));
    EXPECT_RAISES(AESErrorCase::decryptingFailed, mode->determineContentEncryptionKey(Bytes(40), header));
    const JWEHeader bare(KM::ECDH_ES, kEnc);
    EXPECT_RAISES(ECErrorCase::invalidJWK, EC::decrypt({}, kBob, KM::ECDH_ES, kEnc, &bare));
}

// The first byte of every second number of P-521 is zero.
TEST(ECKeys, LeadingZerosSurvive) {
    for (int draws = 0; draws < 16; ++draws) {
        const ECPrivateKey key = ECPrivateKey::generateWithoutParametersWith(ECCurveType::P521);
        EXPECT_EQ(ECPrivateKey(key.converted<SecKey>()), key);
    }
}

} // namespace
} // namespace korvane
