#include "Crypt/AES.h"
#include "Crypt/AESCBCEncryption.h"
#include "Crypt/ConcatKDF.h"
#include "Crypt/DataExtensions.h"
#include "Crypt/HMAC.h"
#include "Crypt/JWE.h"
#include "Crypt/JWS.h"
#include "tests/Crypt/vectors/VectorKeys.h"
#include "tests/support/Vectors.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

std::string textOf(const JSON& row, const char* name) {
    return row.at(name);
}

Bytes joined(std::initializer_list<ByteView> parts) {
    Bytes all;
    for (const ByteView part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

TEST(RFC3394, KeysWrapAndUnwrap) {
    runRFC("rfc3394.json", 6, [](const JSON& row) {
        const auto alg = fromRawValue<KeyManagementAlgorithm>(textOf(row, "alg")).value();
        const Bytes kek = hexMember(row, "kek_hex");
        EXPECT_EQ(hexEncodedString(AES::wrap(hexMember(row, "key_data_hex"), kek, alg)),
                  row.at("wrapped_hex"));
        EXPECT_EQ(hexEncodedString(AES::unwrap(hexMember(row, "wrapped_hex"), kek, alg)),
                  row.at("key_data_hex"));
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
        const auto alg = fromRawValue<SignatureAlgorithm>(textOf(row, "alg")).value();
        const Bytes point = joined({Bytes{4}, hexMember(row, "x_hex"), hexMember(row, "y_hex")});
        const Bytes signature = joined({hexMember(row, "r_hex"), hexMember(row, "s_hex")});
        const Bytes message = toBytes(textOf(row, "message_text"));
        const SecKey key = publicKeyOfPoint(point);
        EXPECT_TRUE(EC::verify(message, signature, key, alg));
        EXPECT_FALSE(EC::verify(joined({message, message}), signature, key, alg));

        const SecKey own = representing(std::type_identity<SecKey>{},
                                        ecPrivateKeyComponents(joined({point, hexMember(row, "d_hex")})));
        EXPECT_TRUE(EC::verify(message, EC::sign(message, own, alg), key, alg));
    });
}

TEST(RFC7515, SignaturesAreReadVerifiedAndMadeAgain) {
    runRFC("rfc7515.json", 3, [](const JSON& row) {
        const JWS jws(textOf(row, "compact"));
        EXPECT_EQ(asText(jws.header().data()), row.at("header_text"));
        EXPECT_EQ(hexEncodedString(jws.payload().data()), row.at("payload_hex"));
        EXPECT_EQ(hexEncodedString(jws.signature()), row.at("signature_hex"));
        EXPECT_EQ(jws.compactSerializedString(), row.at("compact"));
        const DataConvertible signedParts[]{jws.header(), jws.payload()};
        EXPECT_EQ(asText(asJOSESigningInput(signedParts)), row.at("signing_input"));

        const auto alg = fromRawValue<SignatureAlgorithm>(textOf(row, "alg")).value();
        const Verifier verifier = Verifier::make(alg, publicKey(row.at("jwk"))).value();
        EXPECT_TRUE(jws.isValid(verifier));
        const JWS again(jws.header(), jws.payload(), Signer::make(alg, privateKey(row.at("jwk"))).value());
        EXPECT_TRUE(again.isValid(verifier));
        // RSASSA-PKCS1-v1_5 has one signature for one message, ECDSA many.
        EXPECT_EQ(again.compactSerializedString() == row.at("compact"), alg == SignatureAlgorithm::RS256);
    });
}

TEST(RFC7516, MessagesAreReadAndOpened) {
    runRFC("rfc7516.json", 2, [](const JSON& row) {
        const OwnedKey key = decryptionKey(row.at("jwk"));
        const JWE jwe(textOf(row, "compact"));
        EXPECT_EQ(asText(jwe.header().data()), row.at("header_text"));
        EXPECT_EQ(hexEncodedString(jwe.encryptedKey()), row.at("encrypted_key_hex"));
        EXPECT_EQ(hexEncodedString(jwe.initializationVector()), row.at("iv_hex"));
        EXPECT_EQ(hexEncodedString(jwe.ciphertext()), row.at("ciphertext_hex"));
        EXPECT_EQ(hexEncodedString(jwe.authenticationTag()), row.at("tag_hex"));
        EXPECT_EQ(jwe.compactSerializedString(), row.at("compact"));
        EXPECT_EQ(asText(base64URLEncodedData(jwe.header().data())), row.at("aad_ascii"));

        const auto alg = fromRawValue<KeyManagementAlgorithm>(textOf(row, "alg")).value();
        const auto enc = fromRawValue<ContentEncryptionAlgorithm>(textOf(row, "enc")).value();
        const Payload opened = jwe.decrypt(Decrypter::make(alg, enc, asAnyKey(key)).value());
        EXPECT_EQ(asText(opened.data()), row.at("plaintext_text"));
    });
}

TEST(RFC7516, ContentKeysAreRecovered) {
    const JSON rows = readVectors("rfc/rfc7516.json").at("vectors");
    const JSON &rsa = rows.at(0), &wrap = rows.at(1);
    EXPECT_EQ(hexEncodedString(RSA::decrypt(hexMember(rsa, "encrypted_key_hex"), privateKey(rsa.at("jwk")),
                                            KeyManagementAlgorithm::RSA1_5)),
              rsa.at("cek_hex"));
    const Bytes kek = decoded(wrap.at("jwk").at("k"));
    EXPECT_EQ(hexEncodedString(AES::wrap(hexMember(wrap, "cek_hex"), kek, KeyManagementAlgorithm::A128KW)),
              wrap.at("encrypted_key_hex"));
}

/// Appendix B: every intermediate value, then the whole.
void expectContentEncryption(const JSON& row) {
    const auto enc = fromRawValue<ContentEncryptionAlgorithm>(textOf(row, "enc")).value();
    const Bytes key = hexMember(row, "K_hex"), iv = hexMember(row, "IV_hex"), aad = hexMember(row, "A_hex");
    const Bytes ciphertext = hexMember(row, "E_hex"), tag = hexMember(row, "T_hex");
    const ContentKeys keys = retrieveKeys(enc, key);
    EXPECT_EQ(hexEncodedString(keys.hmacKey), row.at("MAC_KEY_hex"));
    EXPECT_EQ(hexEncodedString(AES::encrypt(hexMember(row, "P_hex"), keys.encryptionKey, enc, iv)),
              row.at("E_hex"));
    EXPECT_EQ(hexEncodedString(getByteLengthAsOctetHexData(aad)), row.at("AL_hex"));
    const Bytes mac = HMAC::calculate(joined({aad, iv, ciphertext, getByteLengthAsOctetHexData(aad)}),
                                      keys.hmacKey, hmacAlgorithm(enc));
    EXPECT_EQ(hexEncodedString(mac), row.at("M_hex"));
    EXPECT_EQ(hexEncodedString(authenticationTag(enc, mac)), row.at("T_hex"));
    const AESCBCEncryption encryption(enc, toSecretBytes(key));
    EXPECT_EQ(hexEncodedString(encryption.decrypt({ciphertext, iv, aad, tag})), row.at("P_hex"));
}

/// Appendix C: the agreement from both sides and its derivation.
void expectKeyAgreement(const JSON& row) {
    const ECPrivateKey alice = ECPrivateKey::decode(row.at("ephemeral_jwk_alice"));
    const ECPrivateKey bob = ECPrivateKey::decode(row.at("static_jwk_bob"));
    const SecretBytes z = ecdhDeriveBits(alice, bob.getPublic());
    EXPECT_EQ(hexEncodedString(z), row.at("z_hex"));
    EXPECT_EQ(hexEncodedString(ecdhDeriveBits(bob, alice.getPublic())), row.at("z_hex"));
    const SecretBytes key =
        concatKDF(Hash::SHA256, z, row.at("keydatalen_bits"), asBytes(textOf(row, "algorithm_id_text")),
                  decoded(row.at("apu")), decoded(row.at("apv")), hexMember(row, "supp_pub_info_hex"));
    EXPECT_EQ(hexEncodedString(key), row.at("derived_key_hex"));
}

TEST(RFC7518, ContentEncryptionAndKeyAgreementAreThePublishedOnes) {
    runRFC("rfc7518.json", 3, [](const JSON& row) {
        if (row.contains("K_hex")) return expectContentEncryption(row);
        expectKeyAgreement(row);
    });
}

} // namespace
} // namespace korvane
