#include "Crypt/EC.h"

#include "Crypt/AES.h"
#include "Crypt/ConcatKDF.h"
#include "Crypt/Encrypter.h"
#include "Crypt/JOSEError.h"
#include "Crypt/SecureRandom.h"

namespace korvane {

namespace {

using enum ECErrorCase;

SecretBytes exchange(const SecKey& privateKey, const SecKey& publicKey) {
    try {
        return SecKeyCopyKeyExchangeResult(privateKey, publicKey);
    } catch (const CFError& error) {
        const std::string text = error.localizedDescription();
        throw ECError(deriveKeyFail, Description{text.empty() ? "Derive Key Fail" : text});
    }
}

template <class Value>
const Value* option(const ECOptions& options, std::string_view name) {
    const auto found = options.find(name);
    return found == options.end() ? nullptr : std::get_if<Value>(&found->second);
}

/// A party value as it stands in the header: its text is taken for bytes, without decoding.
Bytes partyInfo(const std::optional<std::string>& text) {
    return text ? toBytes(*text) : Bytes();
}

} // namespace

SecretBytes ecdhDeriveBits(const ECPrivateKey& privateKey, const ECPublicKey& publicKey, std::size_t bitLen) {
    if (privateKey.crv() != publicKey.crv())
        throw ECError(deriveKeyFail, Description{"Private Key curve and Public Key curve are different"});
    const auto publicSecKey = publicKey.converted<SecKey>();
    const auto privateSecKey = privateKey.converted<SecKey>();
    SecretBytes shared = exchange(privateSecKey, publicSecKey);
    return bitLen > 0 ? truncateBitLen(std::move(shared), bitLen) : shared;
}

SecretBytes keyAgreementCompute(KeyManagementAlgorithm algorithm, ContentEncryptionAlgorithm encryption,
                                const ECPrivateKey& privateKey, const ECPublicKey& publicKey, ByteView apu,
                                ByteView apv) {
    const SecretBytes z = ecdhDeriveBits(privateKey, publicKey);
    const bool isDirect = algorithm == KeyManagementAlgorithm::ECDH_ES;
    const std::string_view algorithmID = isDirect ? std::string_view() : rawValue(algorithm);
    const auto wrapping = keyWrapAlgorithm(algorithm);
    const std::size_t wrapLength = wrapping ? keyBitSize(*wrapping).value_or(0) : 0;
    const std::size_t keyDataLen = isDirect ? keyBitSize(encryption) : wrapLength;
    return concatKDF(Hash::SHA256, z, keyDataLen, prefixedBigEndenLen(asBytes(algorithmID)),
                     prefixedBigEndenLen(apu), prefixedBigEndenLen(apv),
                     bigEndianData(static_cast<std::uint32_t>(keyDataLen)));
}

SecretBytes EC::encryptionContextFor(const ECPublicKey& recipientPublicKey, KeyManagementAlgorithm algorithm,
                                     ContentEncryptionAlgorithm encryption, JWEHeader header,
                                     const ECOptions& options) {
    const auto* givenPair = option<ECPrivateKey>(options, "ephemeralKeyPair");
    const ECPrivateKey ephemeral =
        givenPair ? *givenPair : ECPrivateKey::generateWith(recipientPublicKey.crv());
    SecretBytes agreedKey = keyAgreementCompute(algorithm, encryption, ephemeral, recipientPublicKey,
                                                partyInfo(header.apu()), partyInfo(header.apv()));
    Encrypter::ECEncryptionContext context;
    if (const auto wrapAlgorithm = keyWrapAlgorithm(algorithm)) {
        const auto* givenKey = option<SecretBytes>(options, "key");
        context.contentKey =
            givenKey ? *givenKey : randomBytes(static_cast<std::ptrdiff_t>(keyBitSize(encryption) / 8));
        context.encryptedKey = AES::wrap(context.contentKey, agreedKey, *wrapAlgorithm);
    } else {
        context.contentKey = std::move(agreedKey);
    }
    const auto epk = header.epk();
    if (!epk || !ephemeral.isCorrespondWith(*epk)) header.setEpk(ephemeral.getPublic());
    // Parameters that cannot be written leave the bytes without their "epk", and the message closed to all.
    if (!header.isWritten()) throw ECError(encryptingFailed, Description{"The header cannot be written."});
    context.headerData = header.data();
    return context.jsonData();
}

SecretBytes EC::decrypt(ByteView encryptedKey, const ECPrivateKey& privateKey,
                        KeyManagementAlgorithm algorithm, ContentEncryptionAlgorithm encryption,
                        const JWEHeader* header) {
    if (!header) throw ECError(invalidJWK, Description{"Missing header"});
    const auto epk = header->epk();
    if (!epk) throw ECError(invalidJWK, Description{"missing ephemeral public key in header"});
    SecretBytes agreedKey = keyAgreementCompute(algorithm, encryption, privateKey, *epk,
                                                partyInfo(header->apu()), partyInfo(header->apv()));
    const auto wrapAlgorithm = keyWrapAlgorithm(algorithm);
    return wrapAlgorithm ? AES::unwrap(encryptedKey, agreedKey, *wrapAlgorithm) : agreedKey;
}

} // namespace korvane
