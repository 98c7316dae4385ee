#pragma once

#include "Crypt/AnyKey.h"
#include "Crypt/JWEHeader.h"
#include "Crypt/KeyManagementModes.h"

#include <memory>
#include <optional>

namespace korvane {

/// Opens JWEs under one key with one pair of algorithms. A value, immutable.
class Decrypter {
    friend class JWE;

public:
    /// The parts of a received JWE. Views, but the ciphertext, which is decrypted where it stands.
    struct DecryptionContext {
        const JWEHeader& protectedHeader;
        ByteView encryptedKey;
        ByteView initializationVector;
        Bytes ciphertext;
        ByteView authenticationTag;
    };

    /// @return no value when the key's type does not suit the algorithm (see
    /// `makeDecryptionKeyManagementMode`).
    [[nodiscard]] static std::optional<Decrypter> make(KeyManagementAlgorithm keyManagementAlgorithm,
                                                       ContentEncryptionAlgorithm contentEncryptionAlgorithm,
                                                       const AnyKey& decryptionKey);

    /// The same, with the key between the algorithms.
    [[nodiscard]] static std::optional<Decrypter>
    make(KeyManagementAlgorithm keyDecryptionAlgorithm, const AnyKey& decryptionKey,
         ContentEncryptionAlgorithm contentDecryptionAlgorithm) {
        return make(keyDecryptionAlgorithm, contentDecryptionAlgorithm, decryptionKey);
    }

    /// @return the plaintext as it was sealed, still compressed where the header says so.
    /// @throws JWEError keyManagementAlgorithmMismatch, contentEncryptionAlgorithmMismatch,
    ///         keyLengthNotSatisfied, hmacNotAuthenticated; AESError; what the mode throws.
    [[nodiscard]] Bytes decrypt(DecryptionContext context) const;

    [[nodiscard]] KeyManagementAlgorithm keyManagementAlgorithm() const noexcept {
        return keyManagementAlgorithm_;
    }
    [[nodiscard]] ContentEncryptionAlgorithm contentEncryptionAlgorithm() const noexcept {
        return contentEncryptionAlgorithm_;
    }

private:
    Decrypter(std::shared_ptr<const DecryptionKeyManagementMode> mode,
              KeyManagementAlgorithm keyManagementAlgorithm,
              ContentEncryptionAlgorithm contentEncryptionAlgorithm)
        : keyManagementMode_(std::move(mode)), keyManagementAlgorithm_(keyManagementAlgorithm),
          contentEncryptionAlgorithm_(contentEncryptionAlgorithm) {}

    [[nodiscard]] SecretBytes determineContentKey(const DecryptionContext& context) const;

    /// As `decrypt`, of a header that is known to name the algorithms.
    [[nodiscard]] Bytes open(DecryptionContext context) const;

    std::shared_ptr<const DecryptionKeyManagementMode> keyManagementMode_;
    KeyManagementAlgorithm keyManagementAlgorithm_;
    ContentEncryptionAlgorithm contentEncryptionAlgorithm_;
};

} // namespace korvane
