#pragma once

#include "Crypt/Algorithms.h"
#include "Platform/Failure.h"
#include "Platform/Security/Secret.h"

namespace korvane {

enum class AESErrorCase {
    encryptingFailed, // Description
    decryptingFailed, // Description
    keyLengthNotSatisfied,
    cannotPerformOperationOnEmptyDataBuffer,
    invalidAlgorithm,
};

[[nodiscard]] constexpr std::string_view rawValue(AESErrorCase value) {
    using enum AESErrorCase;
    switch (value) {
    case encryptingFailed: return "encryptingFailed";
    case decryptingFailed: return "decryptingFailed";
    case keyLengthNotSatisfied: return "keyLengthNotSatisfied";
    case cannotPerformOperationOnEmptyDataBuffer: return "cannotPerformOperationOnEmptyDataBuffer";
    case invalidAlgorithm: return "invalidAlgorithm";
    }
    return kNoRawValue;
}

template <>
struct FailureTraits<AESErrorCase> {
    static constexpr std::string_view domain = "AESError";
    using Value = FailureValue;
};

using AESError = TypedFailure<AESErrorCase>;

/// The block cipher's two uses: CBC for content (NIST SP 800-38A) and key wrap (RFC 3394).
struct AES {
    /// CBC with PKCS#7 padding. An empty plaintext cannot be encrypted.
    /// @param encryptionKey  16 or 32 bytes, as the algorithm's AES key.
    /// @param initializationVector  16 bytes.
    /// @throws AESError keyLengthNotSatisfied; encryptingFailed with the platform's
    /// status in its description.
    [[nodiscard]] static Bytes encrypt(ByteView plaintext, ByteView encryptionKey,
                                       ContentEncryptionAlgorithm algorithm, ByteView initializationVector);

    /// @param cipherText  is decrypted where it stands.
    /// @throws AESError keyLengthNotSatisfied; decryptingFailed with the platform's
    /// status in its description.
    [[nodiscard]] static Bytes decrypt(Bytes cipherText, ByteView decryptionKey,
                                       ContentEncryptionAlgorithm algorithm, ByteView initializationVector);

    /// @param rawKey  a multiple of 8 bytes, 16 at least.
    /// @param keyEncryptionKey  16, 24 or 32 bytes, as the row says.
    /// @param algorithm  A128KW, A192KW or A256KW.
    /// @throws AESError invalidAlgorithm, keyLengthNotSatisfied; encryptingFailed with the platform's status.
    [[nodiscard]] static Bytes wrap(ByteView rawKey, ByteView keyEncryptionKey,
                                    KeyManagementAlgorithm algorithm);

    /// @throws AESError invalidAlgorithm, keyLengthNotSatisfied; decryptingFailed with the platform's status.
    [[nodiscard]] static SecretBytes unwrap(ByteView wrappedKey, ByteView keyEncryptionKey,
                                            KeyManagementAlgorithm algorithm);
};

} // namespace korvane
