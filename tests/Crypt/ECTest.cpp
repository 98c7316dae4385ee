#include "Crypt/EC.h"
#include "Crypt/AES.h"
#include "Crypt/ConcatKDF.h"
#include "Crypt/Encrypter.h"
#include "Crypt/Signer.h"
#include "tests/support/Failures.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using KM = KeyManagementAlgorithm;
constexpr auto kEnc = ContentEncryptionAlgorithm::A128CBCHS256;

const ECPrivateKey& alice() {
    static const ECPrivateKey key = ECPrivateKey::generateWith(ECCurveType::P256);
    return key;
}

const ECPrivateKey& bob() {
    static const ECPrivateKey key = ECPrivateKey::generateWith(ECCurveType::P256);
    return key;
}

TEST(KeyAgreement, CurvesMustBeOne) {
    const ECPrivateKey other = ECPrivateKey::generateWith(ECCurveType::P521);
    EXPECT_RAISES_SAYING(ECErrorCase::deriveKeyFail, "Private Key curve and Public Key curve are different",
                         ecdhDeriveBits(alice(), other.getPublic()));
}

TEST(KeyAgreement, BitLengthCutsTheSecret) {
    const SecretBytes whole = ecdhDeriveBits(alice(), bob().getPublic());
    EXPECT_EQ(whole.size(), 32U);
    EXPECT_EQ(whole, ecdhDeriveBits(bob(), alice().getPublic(), 256));
    const SecretBytes cut = ecdhDeriveBits(bob(), alice().getPublic(), 12);
    EXPECT_EQ(cut, (SecretBytes{whole[0], static_cast<std::uint8_t>(whole[1] & 0xF0U)}));
}

TEST(ConcatKdf, RoundsAndOddBits) {
    const auto derive = [](std::size_t bits) {
        return concatKDF(Hash::SHA256, Bytes(32, 1), bits, {}, {}, toBytes("v"), Bytes{0, 0, 1, 0});
    };
    EXPECT_TRUE(derive(0).empty());
    const SecretBytes two = derive(512);
    EXPECT_EQ(two.size(), 64U);
    EXPECT_EQ(derive(256), SecretBytes(two.begin(), two.begin() + 32));
    const SecretBytes odd = derive(260);
    ASSERT_EQ(odd.size(), 33U);
    EXPECT_EQ(odd[32], two[32] & 0xF0U);
    EXPECT_EQ(derive(8).size(), 1U);
    EXPECT_NE(concatKDF(Hash::SHA512, Bytes(32, 1), 512, {}, {}, toBytes("v"), Bytes{0, 0, 1, 0}), two);
}

TEST(ConcatKdf, SecureChannelInputIsFramedOnce) {
    Bytes input{0, 0, 0, 1};
    input.resize(36, 7);
    const Bytes framed{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 'r', 'n', 0, 0, 1, 0};
    input.insert(input.end(), framed.begin(), framed.end());
    const SecretBytes expected = digest(Hash::SHA256, input);
    EXPECT_EQ(concatKDF(Hash::SHA256, Bytes(32, 7), 256, {}, {}, toBytes("rn"), Bytes{0, 0, 1, 0}), expected);
}

TEST(ConcatKdf, SmallHelpers) {
    EXPECT_EQ(prefixedBigEndenLen({}), Bytes(4));
    EXPECT_EQ(prefixedBigEndenLen(Bytes(2, 9)), (Bytes{0, 0, 0, 2, 9, 9}));
    EXPECT_EQ(bigEndianData(0x01020304), (Bytes{1, 2, 3, 4}));
    EXPECT_EQ(intToData(std::uint16_t{0}).size(), 2U);
    EXPECT_EQ(truncateBitLen({0xFF, 0xFF}, 9), (SecretBytes{0xFF, 0x80}));
    EXPECT_EQ(truncateBitLen({0xFF, 0xFF}, 8), (SecretBytes{0xFF}));
    EXPECT_EQ(truncateBitLen({0xFF, 0xFF}, 99), (SecretBytes{0xFF, 0xFF}));
}

TEST(KeyAgreement, WrapperFramesItsValuesTwice) {
    const SecretBytes z = ecdhDeriveBits(alice(), bob().getPublic());
    const struct {
        KM algorithm;
        std::string algorithmID;
        std::uint32_t bits;
    } rows[] = {{KM::ECDH_ES, "", 256},
                {KM::ECDH_ES_A128KW, "ECDH-ES+A128KW", 128},
                {KM::ECDH_ES_A192KW, "ECDH-ES+A192KW", 192},
                {KM::ECDH_ES_A256KW, "ECDH-ES+A256KW", 256}};
    for (const auto& row : rows)
        EXPECT_EQ(keyAgreementCompute(row.algorithm, kEnc, bob(), alice().getPublic(), toBytes("u"), {}),
                  concatKDF(Hash::SHA256, z, row.bits, prefixedBigEndenLen(asBytes(row.algorithmID)),
                            Bytes{0, 0, 0, 1, 'u'}, Bytes(4), bigEndianData(row.bits)));
    EXPECT_TRUE(keyAgreementCompute(KM::direct, kEnc, bob(), alice().getPublic(), {}, {}).empty())
        << "a row without a key length";
}

Encrypter::ECEncryptionContext seal(KM algorithm, const JWEHeader& header, const ECOptions& options = {}) {
    return Encrypter::ECEncryptionContext::make(
        EC::encryptionContextFor(bob().getPublic(), algorithm, kEnc, header, options));
}

TEST(ECEncryption, GivenPairAndKeyAreUsed) {
    const JWEHeader header(KM::ECDH_ES_A256KW, kEnc);
    const auto context =
        seal(KM::ECDH_ES_A256KW, header, {{"ephemeralKeyPair", alice()}, {"key", SecretBytes(32, 6)}});
    EXPECT_EQ(context.contentKey, SecretBytes(32, 6));
    const JWEHeader sent = JWEHeader::make(Bytes(context.headerData)).value();
    EXPECT_TRUE(alice().isCorrespondWith(sent.epk().value()));
    EXPECT_EQ(sent.parameters()["epk"]["d"], alice().privateKey())
        << "the whole map of the pair goes into the header";
    EXPECT_EQ(sent.parameters()["epk"]["kid"], alice()["kid"]);
    EXPECT_EQ(EC::decrypt(context.encryptedKey, bob(), KM::ECDH_ES_A256KW, kEnc, &sent), SecretBytes(32, 6));
    EXPECT_EQ(context.encryptedKey.size(), 40U);
}

TEST(ECEncryption, AMatchingEpkIsLeftAlone) {
    const std::string epk =
        R"({"y":")" + alice().y() + R"(","x":")" + alice().x() + R"(","crv":"P-256","kty":"EC"})";
    const std::string json = R"({"alg":"ECDH-ES", "enc":"A128CBC-HS256","epk":)" + epk + "}";
    const auto kept =
        seal(KM::ECDH_ES, JWEHeader::make(toBytes(json)).value(), {{"ephemeralKeyPair", alice()}});
    EXPECT_EQ(asText(kept.headerData), json);
    const auto replaced = seal(KM::ECDH_ES, JWEHeader::make(toBytes(json)).value());
    EXPECT_NE(asText(replaced.headerData), json);
}

TEST(ECEncryption, PartyTextsAreTakenUndecoded) {
    const JWEHeader header(KM::ECDH_ES, kEnc, "abc", "YQ", alice().getPublic());
    const auto context = seal(KM::ECDH_ES, header, {{"ephemeralKeyPair", alice()}});
    EXPECT_TRUE(context.encryptedKey.empty());
    EXPECT_EQ(context.contentKey, keyAgreementCompute(KM::ECDH_ES, kEnc, alice(), bob().getPublic(),
                                                      Bytes{0x61, 0x62, 0x63}, toBytes("YQ")));
    EXPECT_EQ(EC::decrypt(Bytes(99), bob(), KM::ECDH_ES, kEnc, &header), context.contentKey)
        << "a second part is ignored";
}

TEST(ECDecryption, MissingPiecesAreNamed) {
    const JWEHeader header(KM::ECDH_ES, kEnc);
    EXPECT_RAISES_SAYING(ECErrorCase::invalidJWK, "Missing header",
                         EC::decrypt({}, bob(), KM::ECDH_ES, kEnc, nullptr));
    EXPECT_RAISES_SAYING(ECErrorCase::invalidJWK, "missing ephemeral public key in header",
                         EC::decrypt({}, bob(), KM::ECDH_ES, kEnc, &header));
    const JWEHeader wrapped(KM::ECDH_ES_A128KW, kEnc, alice().getPublic());
    EXPECT_RAISES(AESErrorCase::decryptingFailed,
                  EC::decrypt(Bytes(40), bob(), KM::ECDH_ES_A128KW, kEnc, &wrapped));
}

TEST(ECDecryption, ModeReplacesAKeyOfTheWrongLength) {
    const auto mode =
        makeDecryptionKeyManagementMode(KM::ECDH_ES_A128KW, ContentEncryptionAlgorithm::A256CBCHS512, bob());
    const JWEHeader header(KM::ECDH_ES_A128KW, ContentEncryptionAlgorithm::A256CBCHS512);
    const auto context = seal(KM::ECDH_ES_A128KW, header, {{"key", SecretBytes(32, 1)}});
    const JWEHeader sent = JWEHeader::make(Bytes(context.headerData)).value();
    const SecretBytes key = mode->determineContentEncryptionKey(context.encryptedKey, sent);
    EXPECT_EQ(key.size(), 64U);
    EXPECT_NE(key, mode->determineContentEncryptionKey(context.encryptedKey, sent));
}

/// Numbers whose first byte is zero come once in 256 draws; on P-521 the first byte has one bit, so two are
/// looked for.
struct LeadingZeros : testing::TestWithParam<ECCurveType> {
    [[nodiscard]] bool leads(ByteView number) const {
        return number[0] == 0 && (GetParam() != ECCurveType::P521 || number[1] == 0);
    }
};

TEST_P(LeadingZeros, SurviveInKeysHeadersAndAgreement) {
    const ECPrivateKey peer = ECPrivateKey::generateWithoutParametersWith(GetParam());
    std::array<int, 4> seen{};
    for (int draws = 0; draws < 20000 && std::count(seen.begin(), seen.end(), 0) > 0; ++draws) {
        const ECPrivateKey key = ECPrivateKey::generateWithoutParametersWith(GetParam());
        const auto secKey = key.converted<SecKey>();
        const ECPrivateKeyComponents numbers = ecPrivateKeyComponents(secKey);
        const bool isZ =
            seen[3] == 0 &&
            leads(SecKeyCopyKeyExchangeResult(secKey, SecKeyCopyPublicKey(peer.converted<SecKey>())));
        const std::array<bool, 4> found{leads(numbers.x), leads(numbers.y), leads(numbers.d), isZ};
        if (std::count(found.begin(), found.end(), true) == 0) continue;
        for (std::size_t index = 0; index < found.size(); ++index)
            seen[index] += found[index] ? 1 : 0;

        EXPECT_EQ(numbers.x.size(), coordinateOctetLength(GetParam()));
        const ECPrivateKey read = ECPrivateKey::make(key.jsonData().value());
        EXPECT_EQ(read, key);
        EXPECT_EQ(ECPrivateKey(read.converted<SecKey>()), key);
        const JWEHeader header(KM::ECDH_ES, kEnc, key.getPublic());
        EXPECT_TRUE(key.isCorrespondWith(JWEHeader::make(Bytes(header.data()))->epk().value()));
        if (GetParam() != ECCurveType::P384) {
            EXPECT_EQ(ecdhDeriveBits(peer, header.epk().value()), ecdhDeriveBits(key, peer.getPublic()));
        }
    }
    EXPECT_THAT(seen, testing::Each(testing::Gt(0)));
}

TEST_P(LeadingZeros, SurviveInSignatures) {
    const SecKey key = SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeEC, keyBitLength(GetParam()));
    const SignatureAlgorithm algorithms[] = {SignatureAlgorithm::ES256, SignatureAlgorithm::ES384,
                                             SignatureAlgorithm::ES512};
    const SignatureAlgorithm algorithm = algorithms[static_cast<std::size_t>(GetParam())];
    const std::size_t half = coordinateOctetLength(GetParam());
    bool hasR = false;
    bool hasS = false;
    for (int draws = 0; draws < 20000 && !(hasR && hasS); ++draws) {
        const Bytes signature = EC::sign(Bytes(10), key, algorithm);
        ASSERT_EQ(signature.size(), 2 * half);
        const bool isR = leads(ByteView(signature).first(half));
        const bool isS = leads(ByteView(signature).subspan(half));
        if (!isR && !isS) continue;
        hasR = hasR || isR;
        hasS = hasS || isS;
        EXPECT_TRUE(EC::verify(Bytes(10), signature, SecKeyCopyPublicKey(key), algorithm));
    }
    EXPECT_TRUE(hasR && hasS);
}

INSTANTIATE_TEST_SUITE_P(Curves, LeadingZeros,
                         testing::Values(ECCurveType::P256, ECCurveType::P384, ECCurveType::P521),
                         [](const auto& curve) { return "P" + std::to_string(keyBitLength(curve.param)); });

} // namespace
} // namespace korvane
