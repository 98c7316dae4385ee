#pragma once

#include "Crypt/Algorithms.h"
#include "Platform/Failure.h"
#include "Platform/Security/SecKey.h"
#include "Platform/Security/Secret.h"

namespace korvane {

enum class RSAErrorCase {
    signingFailed,    // Description
    verifyingFailed,  // Description
    encryptingFailed, // Description
    decryptingFailed, // Description
    algorithmNotSupported,
    plainTextLengthNotSatisfied,
    cipherTextLenghtNotSatisfied,
};

[[nodiscard]] constexpr std::string_view rawValue(RSAErrorCase value) {
    using enum RSAErrorCase;
    switch (value) {
    case signingFailed: return "signingFailed";
    case verifyingFailed: return "verifyingFailed";
    case encryptingFailed: return "encryptingFailed";
    case decryptingFailed: return "decryptingFailed";
    case algorithmNotSupported: return "algorithmNotSupported";
    case plainTextLengthNotSatisfied: return "plainTextLengthNotSatisfied";
    case cipherTextLenghtNotSatisfied: return "cipherTextLenghtNotSatisfied";
    }
    return kNoRawValue;
}

template <>
struct FailureTraits<RSAErrorCase> {
    static constexpr std::string_view domain = "RSAError";
    using Value = FailureValue;
};

using RSAError = TypedFailure<RSAErrorCase>;

/// RSA over platform keys (RFC 8017).
struct RSA {
    /// @return one block.
    /// @throws RSAError algorithmNotSupported, plainTextLengthNotSatisfied, encryptingFailed
    [[nodiscard]] static Bytes encrypt(ByteView plaintext, const SecKey& publicKey,
                                       KeyManagementAlgorithm algorithm);

    /// @throws RSAError algorithmNotSupported, cipherTextLenghtNotSatisfied, decryptingFailed
    [[nodiscard]] static SecretBytes decrypt(ByteView ciphertext, const SecKey& privateKey,
                                             KeyManagementAlgorithm algorithm);

    /// Decrypts a text of known length into `text`, which keeps what it holds where that fails; good and bad
    /// padding take the same steps.
    /// @throws RSAError algorithmNotSupported, cipherTextLenghtNotSatisfied, decryptingFailed where the
    /// platform could not begin.
    static void decryptInto(ByteView ciphertext, const SecKey& privateKey, KeyManagementAlgorithm algorithm,
                            std::span<std::uint8_t> text);

    /// @throws RSAError algorithmNotSupported, signingFailed
    [[nodiscard]] static Bytes sign(ByteView signingInput, const SecKey& privateKey,
                                    SignatureAlgorithm algorithm);

    /// @return whether the signature is the key's; PS rows take a salt of the digest's length only.
    /// @throws RSAError algorithmNotSupported, verifyingFailed
    [[nodiscard]] static bool verify(ByteView verifyingInput, ByteView signature, const SecKey& publicKey,
                                     SignatureAlgorithm algorithm);
};

} // namespace korvane
