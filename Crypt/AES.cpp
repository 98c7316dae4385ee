#include "Crypt/AES.h"

namespace korvane {

namespace {

using enum AESErrorCase;

AESError failed(AESErrorCase kind, std::string_view what, int status) {
    return AESError(kind,
                    Description{std::string(what) + " failed with status: " + std::to_string(status) + "."});
}

/// Empty values never reach the platform.
/// @param output  becomes as long as what is written to it.
int ccAESCBCCrypt(CCOperation operation, CCAlgorithm algorithm, ByteView data, ByteView key,
                  ByteView initializationVector, Bytes& output) {
    if (data.empty() || key.empty() || initializationVector.empty()) return kCCParamError;
    std::size_t moved = 0;
    const int status = CCCrypt(operation, algorithm, key, initializationVector, data, output, moved);
    output.resize(moved);
    return status;
}

void requireWrapKey(KeyManagementAlgorithm algorithm, ByteView key) {
    const std::optional<bool> isFit = checkAESKeyLength(algorithm, key);
    if (!isFit) throw AESError(invalidAlgorithm);
    if (!*isFit) throw AESError(keyLengthNotSatisfied);
}

} // namespace

Bytes AES::encrypt(ByteView plaintext, ByteView encryptionKey, ContentEncryptionAlgorithm algorithm,
                   ByteView initializationVector) {
    if (!checkAESKeyLength(algorithm, encryptionKey)) throw AESError(keyLengthNotSatisfied);
    Bytes output(plaintext.size() + kCCBlockSizeAES128);
    const int status = ccAESCBCCrypt(CCOperation::kCCEncrypt, ccAlgorithm(algorithm), plaintext,
                                     encryptionKey, initializationVector, output);
    if (status != kCCSuccess) throw failed(encryptingFailed, "Encryption", status);
    return output;
}

Bytes AES::decrypt(Bytes cipherText, ByteView decryptionKey, ContentEncryptionAlgorithm algorithm,
                   ByteView initializationVector) {
    if (!checkAESKeyLength(algorithm, decryptionKey)) throw AESError(keyLengthNotSatisfied);
    const int status = ccAESCBCCrypt(CCOperation::kCCDecrypt, ccAlgorithm(algorithm), cipherText,
                                     decryptionKey, initializationVector, cipherText);
    if (status != kCCSuccess) throw failed(decryptingFailed, "Decryption", status);
    return cipherText;
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
