#include "Crypt/AES.h"

namespace korvane {

namespace {

using enum AESErrorCase;

AESError failed(AESErrorCase kind, std::string_view what, int status) {
    return AESError(kind,
                    Description{std::string(what) + " failed with status: " + std::to_string(status) + "."});
}

/// Empty values never reach the platform.
int ccAESCBCCrypt(CCOperation operation, CCAlgorithm algorithm, ByteView data, ByteView key,
                  ByteView initializationVector, Bytes& output) {
    if (data.empty() || key.empty() || initializationVector.empty()) return kCCParamError;
    output.resize(data.size() + kCCBlockSizeAES128);
    std::size_t moved = 0;
    const int status = CCCrypt(operation, algorithm, key, initializationVector, data, output, moved);
    output.resize(moved);
    return status;
}

Bytes crypt(CCOperation operation, ByteView data, ByteView key, ContentEncryptionAlgorithm algorithm,
            ByteView initializationVector, AESErrorCase failure, std::string_view what) {
    if (!checkAESKeyLength(algorithm, key)) throw AESError(keyLengthNotSatisfied);
    Bytes output;
    const int status =
        ccAESCBCCrypt(operation, ccAlgorithm(algorithm), data, key, initializationVector, output);
    if (status != kCCSuccess) throw failed(failure, what, status);
    return output;
}

void requireWrapKey(KeyManagementAlgorithm algorithm, ByteView key) {
    const std::optional<bool> isFit = checkAESKeyLength(algorithm, key);
    if (!isFit) throw AESError(invalidAlgorithm);
    if (!*isFit) throw AESError(keyLengthNotSatisfied);
}

} // namespace

Bytes AES::encrypt(ByteView plaintext, ByteView encryptionKey, ContentEncryptionAlgorithm algorithm,
                   ByteView initializationVector) {
    return crypt(CCOperation::kCCEncrypt, plaintext, encryptionKey, algorithm, initializationVector,
                 encryptingFailed, "Encryption");
}

Bytes AES::decrypt(ByteView cipherText, ByteView decryptionKey, ContentEncryptionAlgorithm algorithm,
                   ByteView initializationVector) {
    return crypt(CCOperation::kCCDecrypt, cipherText, decryptionKey, algorithm, initializationVector,
                 decryptingFailed, "Decryption");
}

Bytes AES::wrap(ByteView rawKey, ByteView keyEncryptionKey, KeyManagementAlgorithm algorithm) {
    requireWrapKey(algorithm, keyEncryptionKey);
    Bytes wrapped(CCSymmetricWrappedSize(rawKey.size()));
    const int status = CCSymmetricKeyWrap(keyEncryptionKey, rawKey, wrapped);
    if (status != kCCSuccess) throw failed(encryptingFailed, "Key wrap", status);
    return wrapped;
}

SecretBytes AES::unwrap(ByteView wrappedKey, ByteView keyEncryptionKey, KeyManagementAlgorithm algorithm) {
    requireWrapKey(algorithm, keyEncryptionKey);
    SecretBytes raw(CCSymmetricUnwrappedSize(wrappedKey.size()));
    const int status = CCSymmetricKeyUnwrap(keyEncryptionKey, wrappedKey, raw);
    if (status != kCCSuccess) throw failed(decryptingFailed, "Key unwrap", status);
    return raw;
}

} // namespace korvane
