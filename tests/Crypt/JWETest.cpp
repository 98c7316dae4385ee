#include "Crypt/JWE.h"
#include "Crypt/AESCBCEncryption.h"
#include "Crypt/EC.h"
#include "Sdk/Messages/UiUtils.h"
#include "tests/support/Failures.h"
#include "tests/support/RecordingLogger.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

namespace korvane {
namespace {

using KM = KeyManagementAlgorithm;
using CE = ContentEncryptionAlgorithm;
using enum JOSEErrorCase;

/// A sender's and a receiver's key for each row.
class Keys {
public:
    [[nodiscard]] AnyKey sealing(KM algorithm, CE encryption) const {
        switch (family(algorithm)) {
        case KeyManagementFamily::RSA: return rsaPublic_;
        case KeyManagementFamily::EC: return ecPublic_;
        default: return symmetric(algorithm, encryption);
        }
    }

    [[nodiscard]] AnyKey opening(KM algorithm, CE encryption) const {
        switch (family(algorithm)) {
        case KeyManagementFamily::RSA: return rsa_;
        case KeyManagementFamily::EC: return ec_;
        default: return symmetric(algorithm, encryption);
        }
    }

private:
    [[nodiscard]] ByteView symmetric(KM algorithm, CE encryption) const {
        return ByteView(octets_).first(keyBitSize(algorithm).value_or(keyBitSize(encryption)) / 8);
    }

    SecKey rsa_ = SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeRSA, 2048);
    SecKey rsaPublic_ = SecKeyCopyPublicKey(rsa_);
    ECPrivateKey ec_ = ECPrivateKey::generateWith(ECCurveType::P256);
    ECPublicKey ecPublic_ = ec_.getPublic();
    Bytes octets_ = Bytes(64, 0x42);
};

const Keys& keys() {
    static const Keys made;
    return made;
}

Encrypter encrypter(KM algorithm, CE encryption) {
    return Encrypter::make(algorithm, encryption, keys().sealing(algorithm, encryption)).value();
}

Decrypter decrypter(KM algorithm, CE encryption) {
    return Decrypter::make(algorithm, encryption, keys().opening(algorithm, encryption)).value();
}

JWE sealed(const std::string& text, KM algorithm = KM::direct, CE encryption = CE::A128CBCHS256) {
    return {JWEHeader(algorithm, encryption), Payload(toBytes(text)), encrypter(algorithm, encryption)};
}

RC_GTEST_PROP(JWEProperty, OpeningUndoesSealingInEveryRow, (bool isZipped, const Bytes& kidOctets)) {
    const auto text = *rc::gen::nonEmpty<std::string>();
    const std::string kid = hexEncodedString(kidOctets);
    for (const KM algorithm : allKeyManagementAlgorithms())
        for (const CE encryption : {CE::A128CBCHS256, CE::A256CBCHS512}) {
            JWEHeader header(algorithm, encryption);
            header.setKid(kid);
            if (isZipped) header.setZip("DEF");
            const JWE jwe(header, Payload(toBytes(text)), encrypter(algorithm, encryption));
            const std::string compact = jwe.compactSerializedString();
            RC_ASSERT(validateJWE(compact));
            const JWE received(compact);
            RC_ASSERT(received.header().data() == jwe.header().data());
            RC_ASSERT(received.header().kid() == kid);
            RC_ASSERT(asText(received.decrypt(decrypter(algorithm, encryption)).data()) == text);
            RC_ASSERT(asText(received.decrypt(keys().opening(algorithm, encryption)).data()) == text);
        }
}

TEST(JWESealing, DirectFormHasAnEmptySecondPart) {
    const std::string compact = sealed("text").compactSerializedString();
    EXPECT_THAT(compact, testing::ContainsRegex("^[^.]+\\.\\.[^.]+\\.[^.]+\\.[^.]+$"));
    EXPECT_NE(compact, sealed("text").compactSerializedString()) << "every message has a fresh vector";
}

TEST(JWESealing, FailuresSayWhatHappened) {
    const Encrypter direct = encrypter(KM::direct, CE::A128CBCHS256);
    const auto sealing = [&](JWEHeader header, const Bytes& payload, const Encrypter& with) {
        return [=] { return JWE(header, Payload(payload), with); };
    };
    const JWEHeader good(KM::direct, CE::A128CBCHS256);
    JWEHeader unknownZip = good;
    unknownZip.setZip("GZ");
    JWEHeader zipped = good;
    zipped.setZip("DEF");
    const auto mismatch = [](int index) {
        return "The operation couldn\u2019t be completed. (Korvane.JWEError error " + std::to_string(index) +
               ".)";
    };
    EXPECT_RAISES_SAYING(encryptingFailed, "Encryption failed with status: -4300.",
                         sealing(good, {}, direct)());
    EXPECT_RAISES_SAYING(encryptingFailed, mismatch(0),
                         sealing(JWEHeader(KM::A128KW, CE::A128CBCHS256), Bytes(1), direct)());
    EXPECT_RAISES_SAYING(encryptingFailed, mismatch(1),
                         sealing(JWEHeader(KM::direct, CE::A256CBCHS512), Bytes(1), direct)());
    EXPECT_RAISES_SAYING(
        encryptingFailed, mismatch(2),
        sealing(good, Bytes(1), Encrypter::make(KM::direct, CE::A128CBCHS256, Bytes(31)).value())());
    EXPECT_RAISES(compressionAlgorithmNotSupported, sealing(unknownZip, Bytes(1), direct)());
    EXPECT_RAISES_SAYING(encryptingFailed,
                         "The operation couldn\u2019t be completed. (Korvane.JOSEError error 24.)",
                         sealing(zipped, {}, direct)());
    EXPECT_FALSE(Encrypter::make(KM::RSAOAEP256, CE::A128CBCHS256, Bytes(32)));
    EXPECT_TRUE(Encrypter::make(KM::direct, AnyKey(Bytes(32)), CE::A128CBCHS256)) << "the older form";
    EXPECT_FALSE(Decrypter::make(KM::ECDH_ES, AnyKey(Bytes(32)), CE::A128CBCHS256));
}

TEST(JWEOpening, FailuresSayWhatHappened) {
    const JWE jwe = sealed("text");
    const Decrypter direct = decrypter(KM::direct, CE::A128CBCHS256);
    const std::string mismatch = "JWE header algorithms do not match encrypter algorithms.";
    EXPECT_RAISES_SAYING(decryptingFailed, mismatch,
                         jwe.decrypt(decrypter(KM::RSAOAEP256, CE::A128CBCHS256)));
    EXPECT_RAISES_SAYING(decryptingFailed, mismatch, jwe.decrypt(decrypter(KM::direct, CE::A256CBCHS512)));
    EXPECT_RAISES_SAYING(decryptingFailed, "Wrong key type.",
                         jwe.decrypt(keys().opening(KM::RSAOAEP, CE::A128CBCHS256)));
    EXPECT_RAISES_SAYING(decryptingFailed,
                         "The operation couldn\u2019t be completed. (Korvane.JWEError error 3.)",
                         jwe.decrypt(AnyKey(Bytes(32, 1))));

    const auto with = [](const std::string& header, const std::string& rest) {
        return JWE(base64URLEncodedString(asBytes(header)) + rest);
    };
    const std::string parts = "..AAAAAAAAAAAAAAAAAAAAAA.AAAAAAAAAAAAAAAAAAAAAA.AAAAAAAAAAAAAAAAAAAAAA";
    const JWE unknown = with(R"({"alg":"dir","enc":"A128GCM"})", parts);
    EXPECT_RAISES_SAYING(decryptingFailed, "Invalid header parameter.", unknown.decrypt(AnyKey(Bytes(32))));
    EXPECT_RAISES_SAYING(decryptingFailed, mismatch, unknown.decrypt(direct));
    EXPECT_RAISES(compressionAlgorithmNotSupported,
                  with(R"({"alg":"dir","enc":"A128CBC-HS256","zip":"LZ"})", parts).decrypt(direct));
    EXPECT_RAISES_SAYING(
        decryptingFailed, "Direct encryption does not expect an encrypted key.",
        with(R"({"alg":"dir","enc":"A128CBC-HS256"})", ".AA" + parts.substr(1)).decrypt(direct));
    EXPECT_RAISES(decryptingFailed, with(R"({"alg":"dir","enc":"A128CBC-HS256"})", "....").decrypt(direct));
}

TEST(JWEOpening, OnlyInflationTellsOnItsOwn) {
    // What is inside is sealed properly, but is no DEFLATE stream: the header gets its "zip" from the
    // sender's hand.
    const std::string header = R"({"alg":"dir","enc":"A128CBC-HS256","zip":"DEF"})";
    const auto sealedAsIfZipped = [&](const Bytes& content) {
        const AESCBCEncryption cipher(CE::A128CBCHS256, SecretBytes(32, 0x42));
        const ContentEncryptionContext parts = cipher.encrypt(asBytes(header), Payload(content));
        const Bytes headerData = toBytes(header);
        return JWE(joinedBase64URL(std::array<DataConvertible, 5>{
            headerData, ByteView(), parts.initializationVector, parts.ciphertext, parts.authenticationTag}));
    };
    const Decrypter direct = decrypter(KM::direct, CE::A128CBCHS256);
    EXPECT_RAISES(decompressionFailed, sealedAsIfZipped(toBytes("not deflated")).decrypt(direct));
    const Bytes zipped = DeflateCompressor().compress(Bytes(1000, 'a'));
    EXPECT_EQ(sealedAsIfZipped(zipped).decrypt(direct).data(), Bytes(1000, 'a'));
    EXPECT_RAISES(decompressionFailed,
                  sealedAsIfZipped(Bytes(zipped.begin(), zipped.end() - 3)).decrypt(direct));
}

TEST(JWEOpening, EveryTruncationIsATypedFailure) {
    for (const KM algorithm : {KM::direct, KM::A192KW, KM::RSAOAEP256, KM::ECDH_ES_A256KW}) {
        const std::string compact = sealed("text", algorithm).compactSerializedString();
        const Decrypter opening = decrypter(algorithm, CE::A128CBCHS256);
        for (std::size_t length = 0; length < compact.size(); ++length)
            EXPECT_THROW(static_cast<void>(JWE(compact.substr(0, length)).decrypt(opening)), JOSEError)
                << length;
    }
}

TEST(JWESealing, AHeaderWhoseBytesAreNotItsParametersSealsNothing) {
    const std::string noText = "\xFF";
    for (const KM algorithm : {KM::direct, KM::RSAOAEP256, KM::ECDH_ES, KM::ECDH_ES_A256KW}) {
        JWEHeader header(algorithm, CE::A128CBCHS256);
        header.setKid(noText);
        EXPECT_RAISES(encryptingFailed,
                      JWE(header, Payload(Bytes(1)), encrypter(algorithm, CE::A128CBCHS256)))
            << rawValue(algorithm);
    }
    const ECPrivateKey pair(SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeEC, 256), {{"kid", noText}});
    EXPECT_RAISES(ECErrorCase::encryptingFailed,
                  EC::encryptionContextFor(pair.getPublic(), KM::ECDH_ES, CE::A128CBCHS256,
                                           JWEHeader(KM::ECDH_ES, CE::A128CBCHS256),
                                           {{"ephemeralKeyPair", pair}}))
        << "the header would lose its epk";
}

TEST(JWEOpening, MismatchesAreLoggedByTheDecrypter) {
    const JWE jwe = sealed("text");
    const auto open = [&jwe](const Decrypter& with) {
        return with.decrypt({jwe.header(), jwe.encryptedKey(), jwe.initializationVector(), jwe.ciphertext(),
                             jwe.authenticationTag()});
    };
    const RecordingLogger log;
    EXPECT_RAISES(JWEErrorCase::keyManagementAlgorithmMismatch,
                  open(decrypter(KM::A128KW, CE::A128CBCHS256)));
    EXPECT_RAISES(JWEErrorCase::contentEncryptionAlgorithmMismatch,
                  open(decrypter(KM::direct, CE::A256CBCHS512)));
    EXPECT_THAT(log.lines(), testing::ElementsAre(
                                 "Crypt/Decrypter.cpp decrypt(_:): Key management algorithm mismatch",
                                 "Crypt/Decrypter.cpp decrypt(_:): Content encryption algorithm mismatch"));
}

} // namespace
} // namespace korvane
