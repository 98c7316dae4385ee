#include "Crypt/Decrypter.h"

#include "Crypt/AESCBCEncryption.h"
#include "Crypt/JOSEError.h"
#include "Platform/Logger.h"

namespace korvane {

std::optional<Decrypter> Decrypter::make(KeyManagementAlgorithm keyManagementAlgorithm,
                                         ContentEncryptionAlgorithm contentEncryptionAlgorithm,
                                         const AnyKey& decryptionKey) {
    auto mode =
        makeDecryptionKeyManagementMode(keyManagementAlgorithm, contentEncryptionAlgorithm, decryptionKey);
    if (!mode) return std::nullopt;
    return Decrypter(std::move(mode), keyManagementAlgorithm, contentEncryptionAlgorithm);
}

Bytes Decrypter::decrypt(DecryptionContext context) const {
    if (context.protectedHeader.keyManagementAlgorithm() != keyManagementAlgorithm_) {
        KORVANE_LOG("decrypt(_:)", "Key management algorithm mismatch");
        throw JWEError(JWEErrorCase::keyManagementAlgorithmMismatch);
    }
    if (context.protectedHeader.contentEncryptionAlgorithm() != contentEncryptionAlgorithm_) {
        KORVANE_LOG("decrypt(_:)", "Content encryption algorithm mismatch");
        throw JWEError(JWEErrorCase::contentEncryptionAlgorithmMismatch);
    }
    return open(std::move(context));
}

SecretBytes Decrypter::determineContentKey(const DecryptionContext& context) const {
    if (shouldContainEphemeralPublicKey(keyManagementAlgorithm_))
        return keyManagementMode_->determineContentEncryptionKey(context.encryptedKey,
                                                                 context.protectedHeader);
    return keyManagementMode_->determineContentEncryptionKey(context.encryptedKey);
}

Bytes Decrypter::open(DecryptionContext context) const {
    const SecretBytes* shared =
        context.encryptedKey.empty() ? keyManagementMode_->sharedContentEncryptionKey() : nullptr;
    const SecretBytes determined = shared ? SecretBytes() : determineContentKey(context);
    // Made of the header's bytes as they were received, so that it is the first part of
    // the message as it came.
    const AdditionalAuthenticatedData additionalData(context.protectedHeader);
    return makeContentDecrypter(contentEncryptionAlgorithm_, shared ? *shared : determined)
        .decrypt(ContentDecryptionContext{std::move(context.ciphertext), context.initializationVector,
                                          additionalData.view(), context.authenticationTag});
}

} // namespace korvane
