#include "Crypt/AES.h"
#include "Crypt/AESCBCEncryption.h"
#include "Crypt/ConcatKDF.h"
#include "Crypt/DataExtensions.h"
#include "Crypt/EC.h"
#include "Crypt/HMAC.h"
#include "Crypt/RSA.h"
#include "tests/support/Failures.h"
#include "tests/support/Vectors.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using Alg = KeyManagementAlgorithm;
using Enc = ContentEncryptionAlgorithm;
using SA = SignatureAlgorithm;

std::string textOf(const JSON& row, const char* name) {
    return row.at(name);
}

Bytes joined(std::initializer_list<ByteView> parts) {
    Bytes all;
    for (const ByteView part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

SecKey publicKeyOfPoint(ByteView point) {
    return representing(std::type_identity<SecKey>{}, ecPublicKeyComponents(point));
}

/// What AES-CBC makes of a message. An empty one cannot be sealed.
void expectCiphertext(const WycheproofTest& test, ByteView key, Enc enc) {
    const auto seal = [&] { return AES::encrypt(test.bytes("msg"), key, enc, test.bytes("iv")); };
    if (test.outcome != VectorOutcome::emptyPlaintext)
        EXPECT_EQ(hexEncodedString(seal()), test.text("ct"));
    else
        EXPECT_RAISES_SAYING(AESErrorCase::encryptingFailed, "Encryption failed with status: -4300.", seal());
}

/// A whole content encryption with the authenticated data as they are.
WycheproofCheck contentEncryption(Enc enc) {
    return [enc](const WycheproofTest& test) {
        const AESCBCEncryption encryption(enc, toSecretBytes(test.bytes("key")));
        const auto open = [&] {
            return encryption.decrypt(test.bytes("ct"), test.bytes("iv"), test.bytes("aad"),
                                      test.bytes("tag"));
        };
        EXPECT_TRUE(test.outcome != VectorOutcome::reject ||
                    raises(JWEErrorCase::hmacNotAuthenticated, open));
        EXPECT_EQ(open(), test.bytes("msg"));
        expectCiphertext(test, retrieveKeys(enc, test.bytes("key")).encryptionKey, enc);
        return true;
    };
}

/// The bare cipher with its padding. AES-192 is of no row.
bool isDecrypted(const WycheproofTest& test) {
    const Bytes key = test.bytes("key");
    const Enc enc = key.size() == 32 ? Enc::A256CBCHS512 : Enc::A128CBCHS256;
    const auto open = [&](Enc row) { return AES::decrypt(test.bytes("ct"), key, row, test.bytes("iv")); };
    const auto refused = [&] { return open(Enc::A256CBCHS512); };
    EXPECT_TRUE(test.why != "aes192cbc" || raises(AESErrorCase::keyLengthNotSatisfied, refused));
    EXPECT_EQ(hexEncodedString(open(enc)), test.text("msg"));
    expectCiphertext(test, key, enc);
    return true;
}

WycheproofCheck authentication(HMACAlgorithm algorithm) {
    return [algorithm](const WycheproofTest& test) {
        const Bytes mac = HMAC::calculate(test.bytes("msg"), test.bytes("key"), algorithm);
        const auto tagLength = test.group.at("tagSize").get<std::size_t>() / 8;
        return hexEncodedString(ByteView(mac).first(tagLength)) == test.text("tag");
    };
}

TEST(AlgorithmVectors, ContentEncryption) {
    runWycheproof("a128cbc_hs256_test.json", contentEncryption(Enc::A128CBCHS256));
    runWycheproof("a256cbc_hs512_test.json", contentEncryption(Enc::A256CBCHS512));
    runWycheproof("aes_cbc_pkcs5_test.json", isDecrypted);
    runWycheproof("hmac_sha256_subset.json", authentication(HMACAlgorithm::SHA256));
    runWycheproof("hmac_sha512_subset.json", authentication(HMACAlgorithm::SHA512));
}

/// The tests without a ciphertext are about sizes that cannot be wrapped, the others about unwrapping.
bool isUnwrapped(const WycheproofTest& test) {
    const Bytes key = test.bytes("key"), message = test.bytes("msg"), wrapped = test.bytes("ct");
    const Alg alg = key.size() == 16 ? Alg::A128KW : key.size() == 24 ? Alg::A192KW : Alg::A256KW;
    const auto wrap = [&] { return AES::wrap(message, key, alg); };
    EXPECT_TRUE(!wrapped.empty() || raises(AESErrorCase::encryptingFailed, wrap));
    EXPECT_EQ(hexEncodedString(AES::unwrap(wrapped, key, alg)), test.text("msg"));
    EXPECT_EQ(hexEncodedString(wrap()), test.text("ct"));
    return true;
}

WycheproofGroup rsaDecryption(Alg alg) {
    return [alg](const JSON& group) -> WycheproofCheck {
        const SecKey key = SecKeyCreateWithPKCS8(hexMember(group, "privateKeyPkcs8"));
        return [key, alg](const WycheproofTest& test) {
            const std::string opened = hexEncodedString(RSA::decrypt(test.bytes("ct"), key, alg));
            if (test.outcome == VectorOutcome::messageHidden) return opened == test.text("msg");
            EXPECT_EQ(opened, test.text("msg"));
            return true;
        };
    };
}

TEST(AlgorithmVectors, KeyManagement) {
    runWycheproof("aes_wrap_test.json", isUnwrapped);
    runWycheproof("rsa_oaep_2048_sha1_mgf1sha1_test.json", rsaDecryption(Alg::RSAOAEP));
    runWycheproof("rsa_oaep_2048_sha256_mgf1sha256_test.json", rsaDecryption(Alg::RSAOAEP256));
    runWycheproof("rsa_pkcs1_2048_subset.json", rsaDecryption(Alg::RSA1_5));
    runWycheproof("ecdh_secp256r1_webcrypto_subset.json", [](const WycheproofTest& test) {
        const ECPrivateKey own = ECPrivateKey::decode(test.test.at("private"));
        const ECPublicKey foreign = ECPublicKey::decode(test.test.at("public"));
        EXPECT_EQ(hexEncodedString(ecdhDeriveBits(own, foreign)), test.text("shared"));
        return true;
    });
}

WycheproofGroup rsaVerification(SignatureAlgorithm algorithm) {
    return [algorithm](const JSON& group) -> WycheproofCheck {
        const SecKey key = SecKeyCreateWithSubjectPublicKeyInfo(hexMember(group, "publicKeyDer"));
        return [key, algorithm](const WycheproofTest& test) {
            return RSA::verify(test.bytes("msg"), test.bytes("sig"), key, algorithm);
        };
    };
}

TEST(AlgorithmVectors, Signatures) {
    runWycheproof("rsa_pss_2048_sha256_mgf1_32_test.json", rsaVerification(SA::PS256));
    runWycheproof("rsa_signature_2048_sha256_subset.json", rsaVerification(SA::RS256));
    runWycheproof("ecdsa_secp256r1_sha256_p1363_test.json", [](const JSON& group) -> WycheproofCheck {
        const SecKey key = publicKeyOfPoint(hexMember(group.at("publicKey"), "uncompressed"));
        return [key](const WycheproofTest& test) {
            return EC::verify(test.bytes("msg"), test.bytes("sig"), key, SA::ES256);
        };
    });
}

TEST(RFC3394, KeysWrapAndUnwrap) {
    runRFC("rfc3394.json", 6, [](const JSON& row) {
        const auto alg = fromRawValue<KeyManagementAlgorithm>(textOf(row, "alg")).value();
        const Bytes kek = hexMember(row, "kek_hex"), key = hexMember(row, "key_data_hex");
        EXPECT_EQ(hexEncodedString(AES::wrap(key, kek, alg)), row.at("wrapped_hex"));
        EXPECT_EQ(AES::unwrap(hexMember(row, "wrapped_hex"), kek, alg), toSecretBytes(key));
    });
}

TEST(RFC4648, Base64AndBase64URLAreThePublishedOnes) {
    runRFC("rfc4648.json", 7, [](const JSON& row) {
        const Bytes bytes = toBytes(textOf(row, "text"));
        EXPECT_EQ(base64EncodedString(bytes), row.at("base64"));
        EXPECT_EQ(base64URLEncodedString(bytes), row.at("base64url_unpadded"));
        EXPECT_EQ(fromBase64(textOf(row, "base64")), bytes);
        EXPECT_EQ(fromBase64URL(textOf(row, "base64url_unpadded")), bytes);
    });
}

TEST(RFC6979, SignaturesOfTheThreeCurvesVerify) {
    runRFC("rfc6979.json", 6, [](const JSON& row) {
        const auto alg = fromRawValue<SA>(textOf(row, "alg")).value();
        const Bytes point = joined({Bytes{4}, hexMember(row, "x_hex"), hexMember(row, "y_hex")});
        const Bytes signature = joined({hexMember(row, "r_hex"), hexMember(row, "s_hex")});
        const Bytes message = toBytes(textOf(row, "message_text"));
        const SecKey key = publicKeyOfPoint(point);
        EXPECT_TRUE(EC::verify(message, signature, key, alg));
        const SecKey own = representing(std::type_identity<SecKey>{},
                                        ecPrivateKeyComponents(joined({point, hexMember(row, "d_hex")})));
        EXPECT_TRUE(EC::verify(message, EC::sign(message, own, alg), key, alg));
    });
}

// Appendix A.2.5: genuine by all but the curve, since the numbers of P-256 fit into a signature of ES512.
TEST(RFC6979, SignatureOfASmallerCurveThanItsAlgorithmsIsRefused) {
    const JSON row{{"r", "8496a60b5e9b47c825488827e0495b0e3fa109ec4568fd3f8d1097678eb97f00"},
                   {"s", "2362ab1adbe2b8adf9cb9edab740ea6049c028114f2460f96554f61fae3302fe"}};
    const JSON key = readVectors("rfc/rfc6979.json").at("vectors").at(0);
    const Bytes point = joined({Bytes{4}, hexMember(key, "x_hex"), hexMember(key, "y_hex")});
    const Bytes signature = joined({Bytes(34), hexMember(row, "r"), Bytes(34), hexMember(row, "s")});
    EXPECT_RAISES(ECErrorCase::invalidKeySize,
                  EC::verify(toBytes("sample"), signature, publicKeyOfPoint(point), SA::ES512));
}

/// Appendix B.
void expectContentEncryption(const JSON& row) {
    const auto enc = fromRawValue<ContentEncryptionAlgorithm>(textOf(row, "enc")).value();
    const Bytes key = hexMember(row, "K_hex"), iv = hexMember(row, "IV_hex"), aad = hexMember(row, "A_hex");
    const Bytes ciphertext = hexMember(row, "E_hex"), tag = hexMember(row, "T_hex");
    EXPECT_EQ(AES::encrypt(hexMember(row, "P_hex"), retrieveKeys(enc, key).encryptionKey, enc, iv),
              ciphertext);
    const AESCBCEncryption encryption(enc, toSecretBytes(key));
    EXPECT_EQ(hexEncodedString(encryption.decrypt({ciphertext, iv, aad, tag})), row.at("P_hex"));
}

/// Appendix C.
void expectKeyAgreement(const JSON& row) {
    const ECPrivateKey alice = ECPrivateKey::decode(row.at("ephemeral_jwk_alice"));
    const ECPrivateKey bob = ECPrivateKey::decode(row.at("static_jwk_bob"));
    const SecretBytes z = ecdhDeriveBits(alice, bob.getPublic());
    EXPECT_EQ(hexEncodedString(z), row.at("z_hex"));
    const SecretBytes key =
        concatKDF(Hash::SHA256, z, row.at("keydatalen_bits"), asBytes(textOf(row, "algorithm_id_text")),
                  *fromBase64URL(textOf(row, "apu")), *fromBase64URL(textOf(row, "apv")),
                  hexMember(row, "supp_pub_info_hex"));
    EXPECT_EQ(hexEncodedString(key), row.at("derived_key_hex"));
}

TEST(RFC7518, ContentEncryptionAndKeyAgreementAreThePublishedOnes) {
    runRFC("rfc7518.json", 3, [](const JSON& row) {
        return row.contains("K_hex") ? expectContentEncryption(row) : expectKeyAgreement(row);
    });
}

} // namespace
} // namespace korvane
