#include "Crypt/AES.h"
#include "Crypt/AESCBCEncryption.h"
#include "Crypt/ConcatKDF.h"
#include "Crypt/DataExtensions.h"
#include "Crypt/EC.h"
#include "Crypt/JWE.h"
#include "tests/Crypt/vectors/VectorKeys.h"
#include "tests/support/Vectors.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

Bytes partyInfo(const std::optional<std::string>& base64URL) {
    return base64URL ? decoded(*base64URL) : Bytes();
}

/// The content key of an ECDH-ES JWE under the layout of RFC 7518 section 4.6.2.
SecretBytes standardContentKey(const JWE& jwe, const ECPrivateKey& key, KeyManagementAlgorithm alg,
                               ContentEncryptionAlgorithm enc) {
    const auto wrap = keyWrapAlgorithm(alg);
    const std::size_t bits = wrap ? keyBitSize(*wrap).value() : keyBitSize(enc);
    const std::string_view algorithmID = wrap ? rawValue(alg) : rawValue(enc);
    const SecretBytes agreed =
        concatKDF(Hash::SHA256, ecdhDeriveBits(key, jwe.header().epk().value()), bits, asBytes(algorithmID),
                  partyInfo(jwe.header().apu()), partyInfo(jwe.header().apv()),
                  bigEndianData(static_cast<std::uint32_t>(bits)));
    return wrap ? AES::unwrap(jwe.encryptedKey(), agreed, *wrap) : agreed;
}

/// Only the derivation may stand between an ECDH-ES JWE and its plaintext: with the standard's it opens.
void expectStandardOpening(const WycheproofTest& test, const JWE& jwe, const OwnedKey& key) {
    const auto alg = jwe.header().keyManagementAlgorithm().value();
    const auto enc = jwe.header().contentEncryptionAlgorithm().value();
    const AESCBCEncryption content(enc, standardContentKey(jwe, std::get<ECPrivateKey>(key), alg, enc));
    const Bytes aad = base64URLEncodedData(jwe.header().data());
    const Bytes opened =
        content.decrypt({jwe.ciphertext(), jwe.initializationVector(), aad, jwe.authenticationTag()});
    EXPECT_EQ(hexEncodedString(opened), test.text("pt"));
}

bool isOpened(const WycheproofTest& test, const OwnedKey& key) {
    const JWE jwe(test.text("jwe"));
    EXPECT_EQ(test.why == "enc", !jwe.header().contentEncryptionAlgorithm());
    EXPECT_EQ(test.why == "alg",
              jwe.header().contentEncryptionAlgorithm() && !jwe.header().keyManagementAlgorithm());
    if (test.why == "kdf") expectStandardOpening(test, jwe, key);

    const auto alg =
        fromRawValue<KeyManagementAlgorithm>(test.group.at("private").at("alg").get<std::string>());
    const auto enc = fromRawValue<ContentEncryptionAlgorithm>(test.text("enc"));
    if (!alg || !enc) return !jwe.decrypt(asAnyKey(key)).data().empty();
    const Payload payload = jwe.decrypt(Decrypter::make(*alg, *enc, asAnyKey(key)).value());
    EXPECT_EQ(hexEncodedString(payload.data()), test.text("pt"));
    EXPECT_EQ(jwe.decrypt(asAnyKey(key)), payload);
    return true;
}

TEST(JWEVectors, IntactMessagesOfTheLayersAlgorithmsOpenAndNoOthers) {
    runWycheproof("json_web_encryption_odd.json", [](const JSON& group) -> WycheproofCheck {
        const OwnedKey key = decryptionKey(group.at("private"));
        return [key](const WycheproofTest& test) { return isOpened(test, key); };
    });
}

} // namespace
} // namespace korvane
