#include "Crypt/RSA.h"

namespace korvane {

namespace {

using enum RSAErrorCase;
using enum SecKeyOperationType;

SecKeyAlgorithm requireSupported(std::optional<SecKeyAlgorithm> algorithm, const SecKey& key,
                                 SecKeyOperationType operation) {
    if (!algorithm || !SecKeyIsAlgorithmSupported(key, operation, *algorithm))
        throw RSAError(algorithmNotSupported);
    return *algorithm;
}

/// Calls the platform.
/// @throws RSAError `failure` with the platform's description.
template <class Operation>
auto orFail(RSAErrorCase failure, Operation operation) {
    try {
        return operation();
    } catch (const CFError& error) {
        throw RSAError(failure, Description{error.localizedDescription()});
    }
}

SecKeyAlgorithm requireDecryption(ByteView ciphertext, const SecKey& privateKey,
                                  KeyManagementAlgorithm algorithm) {
    const SecKeyAlgorithm platform =
        requireSupported(secKeyAlgorithm(algorithm), privateKey, kSecKeyOperationTypeDecrypt);
    if (!isCipherTextLenghtSatisfied(algorithm, ciphertext, privateKey).value_or(false))
        throw RSAError(cipherTextLenghtNotSatisfied);
    return platform;
}

} // namespace

Bytes RSA::encrypt(ByteView plaintext, const SecKey& publicKey, KeyManagementAlgorithm algorithm) {
    const SecKeyAlgorithm platform =
        requireSupported(secKeyAlgorithm(algorithm), publicKey, kSecKeyOperationTypeEncrypt);
    if (!isPlainTextLengthSatisfied(algorithm, plaintext, publicKey).value_or(false))
        throw RSAError(plainTextLengthNotSatisfied);
    return orFail(encryptingFailed,
                  [&] { return SecKeyCreateEncryptedData(publicKey, platform, plaintext); });
}

SecretBytes RSA::decrypt(ByteView ciphertext, const SecKey& privateKey, KeyManagementAlgorithm algorithm) {
    const SecKeyAlgorithm platform = requireDecryption(ciphertext, privateKey, algorithm);
    return orFail(decryptingFailed,
                  [&] { return SecKeyCreateDecryptedData(privateKey, platform, ciphertext); });
}

void RSA::decryptInto(ByteView ciphertext, const SecKey& privateKey, KeyManagementAlgorithm algorithm,
                      std::span<std::uint8_t> text) {
    const SecKeyAlgorithm platform = requireDecryption(ciphertext, privateKey, algorithm);
    orFail(decryptingFailed, [&] { SecKeyDecryptInto(privateKey, platform, ciphertext, text); });
}

Bytes RSA::sign(ByteView signingInput, const SecKey& privateKey, SignatureAlgorithm algorithm) {
    const SecKeyAlgorithm platform =
        requireSupported(rsaSecKeyAlgorithm(algorithm), privateKey, kSecKeyOperationTypeSign);
    return orFail(signingFailed, [&] { return SecKeyCreateSignature(privateKey, platform, signingInput); });
}

bool RSA::verify(ByteView verifyingInput, ByteView signature, const SecKey& publicKey,
                 SignatureAlgorithm algorithm) {
    const SecKeyAlgorithm platform =
        requireSupported(rsaSecKeyAlgorithm(algorithm), publicKey, kSecKeyOperationTypeVerify);
    return orFail(verifyingFailed,
                  [&] { return SecKeyVerifySignature(publicKey, platform, verifyingInput, signature); });
}

} // namespace korvane
