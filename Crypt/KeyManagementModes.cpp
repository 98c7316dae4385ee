#include "Crypt/KeyManagementModes.h"

#include "Crypt/AES.h"
#include "Crypt/EC.h"
#include "Crypt/JOSEError.h"
#include "Crypt/RSA.h"
#include "Crypt/SecureRandom.h"
#include "Platform/Logger.h"

namespace korvane {

namespace {

std::size_t contentKeyLength(ContentEncryptionAlgorithm algorithm) {
    return outputLength(hmacAlgorithm(algorithm));
}

SecretBytes randomContentKey(ContentEncryptionAlgorithm algorithm) {
    return SecureRandom::generate(static_cast<std::ptrdiff_t>(contentKeyLength(algorithm)));
}

} // namespace

EncryptionKeyManagementMode::Result RSAKeyEncryption::EncryptionMode::determineContentEncryptionKey() const {
    SecretBytes contentKey = randomContentKey(contentEncryptionAlgorithm_);
    Bytes encryptedKey = RSA::encrypt(contentKey, recipientPublicKey_, keyManagementAlgorithm_);
    return {std::move(contentKey), std::move(encryptedKey)};
}

SecretBytes RSAKeyEncryption::DecryptionMode::determineContentEncryptionKey(ByteView encryptedKey) const {
    // A random key first: it stays where nothing is decrypted over it, and the tag fails later
    // (RFC 7516 section 11.5).
    SecretBytes contentKey = randomContentKey(contentEncryptionAlgorithm_);
    try {
        RSA::decryptInto(encryptedKey, recipientPrivateKey_, keyManagementAlgorithm_, contentKey);
    } catch (const std::exception&) {
        return contentKey;
    }
    return contentKey;
}

EncryptionKeyManagementMode::Result AESKeyWrappingMode::determineContentEncryptionKey() const {
    SecretBytes contentKey = randomContentKey(contentEncryptionAlgorithm_);
    Bytes encryptedKey = AES::wrap(contentKey, sharedSymmetricKey_, keyManagementAlgorithm_);
    return {std::move(contentKey), std::move(encryptedKey)};
}

SecretBytes AESKeyWrappingMode::determineContentEncryptionKey(ByteView encryptedKey) const {
    SecretBytes contentKey = AES::unwrap(encryptedKey, sharedSymmetricKey_, keyManagementAlgorithm_);
    if (contentKey.size() != contentKeyLength(contentEncryptionAlgorithm_))
        throw AESError(AESErrorCase::keyLengthNotSatisfied);
    return contentKey;
}

SecretBytes DirectEncryptionMode::determineContentEncryptionKey(ByteView encryptedKey) const {
    if (!encryptedKey.empty()) {
        const std::string text = "Direct encryption does not expect an encrypted key.";
        KORVANE_LOG("determineContentEncryptionKey(from:)", text);
        throw JOSEError(JOSEErrorCase::decryptingFailed, Description{text});
    }
    return sharedSymmetricKey_;
}

ECKeyEncryption::EncryptionMode::EncryptionMode(KeyManagementAlgorithm keyManagementAlgorithm,
                                                ContentEncryptionAlgorithm contentEncryptionAlgorithm,
                                                ECPublicKey recipientPublicKey,
                                                std::optional<Bytes> agreementPartyUInfo,
                                                std::optional<Bytes> agreementPartyVInfo, ECOptions options)
    : keyManagementAlgorithm_(keyManagementAlgorithm),
      contentEncryptionAlgorithm_(contentEncryptionAlgorithm),
      recipientPublicKey_(std::move(recipientPublicKey)),
      agreementPartyUInfo_(std::move(agreementPartyUInfo)),
      agreementPartyVInfo_(std::move(agreementPartyVInfo)), options_(std::move(options)) {}

SecretBytes ECKeyEncryption::EncryptionMode::determineContentEncryptionKey(const JWEHeader& header) const {
    return EC::encryptionContextFor(recipientPublicKey_, keyManagementAlgorithm_, contentEncryptionAlgorithm_,
                                    header, options_);
}

SecretBytes ECKeyEncryption::DecryptionMode::determineContentEncryptionKey(ByteView encryptedKey,
                                                                           const JWEHeader& header) const {
    SecretBytes randomKey = randomContentKey(contentEncryptionAlgorithm_);
    SecretBytes contentKey = EC::decrypt(encryptedKey, recipientPrivateKey_, keyManagementAlgorithm_,
                                         contentEncryptionAlgorithm_, &header);
    return contentKey.size() == randomKey.size() ? contentKey : randomKey;
}

std::shared_ptr<const EncryptionKeyManagementMode>
makeEncryptionKeyManagementMode(KeyManagementAlgorithm algorithm,
                                ContentEncryptionAlgorithm contentEncryptionAlgorithm,
                                const AnyKey& encryptionKey, std::optional<Bytes> agreementPartyUInfo,
                                std::optional<Bytes> agreementPartyVInfo) {
    switch (family(algorithm)) {
    case KeyManagementFamily::RSA:
        if (const auto* key = encryptionKey.cast<SecKey>())
            return std::make_shared<RSAKeyEncryption::EncryptionMode>(algorithm, contentEncryptionAlgorithm,
                                                                      *key);
        return nullptr;
    case KeyManagementFamily::AES:
        if (const auto* key = encryptionKey.castToBytes())
            return std::make_shared<AESKeyWrappingMode>(algorithm, contentEncryptionAlgorithm,
                                                        toSecretBytes(*key));
        return nullptr;
    case KeyManagementFamily::direct:
        if (const auto* key = encryptionKey.castToBytes())
            return std::make_shared<DirectEncryptionMode>(toSecretBytes(*key));
        return nullptr;
    case KeyManagementFamily::EC:
        if (const auto* key = encryptionKey.cast<ECPublicKey>())
            return std::make_shared<ECKeyEncryption::EncryptionMode>(algorithm, contentEncryptionAlgorithm,
                                                                     *key, std::move(agreementPartyUInfo),
                                                                     std::move(agreementPartyVInfo));
        return nullptr;
    }
    return nullptr;
}

std::shared_ptr<const DecryptionKeyManagementMode>
makeDecryptionKeyManagementMode(KeyManagementAlgorithm algorithm,
                                ContentEncryptionAlgorithm contentEncryptionAlgorithm,
                                const AnyKey& decryptionKey) {
    switch (family(algorithm)) {
    case KeyManagementFamily::RSA:
        if (const auto* key = decryptionKey.cast<SecKey>())
            return std::make_shared<RSAKeyEncryption::DecryptionMode>(algorithm, contentEncryptionAlgorithm,
                                                                      *key);
        return nullptr;
    case KeyManagementFamily::AES:
        if (const auto* key = decryptionKey.castToBytes())
            return std::make_shared<AESKeyWrappingMode>(algorithm, contentEncryptionAlgorithm,
                                                        toSecretBytes(*key));
        return nullptr;
    case KeyManagementFamily::direct:
        if (const auto* key = decryptionKey.castToBytes())
            return std::make_shared<DirectEncryptionMode>(toSecretBytes(*key));
        return nullptr;
    case KeyManagementFamily::EC:
        if (const auto* key = decryptionKey.cast<ECPrivateKey>())
            return std::make_shared<ECKeyEncryption::DecryptionMode>(algorithm, contentEncryptionAlgorithm,
                                                                     *key);
        return nullptr;
    }
    return nullptr;
}

} // namespace korvane
