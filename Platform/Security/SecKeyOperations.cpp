#include "Platform/Security/CommonCrypto.h"
#include "Platform/Security/SecKeyMaterial.h"

#include <openssl/rsa.h>

#include <array>

namespace korvane {

namespace {

using namespace openssl;
using enum SecKeyAlgorithm;
using enum SecKeyOperationType;
using Context = SecKey::Material::Context;

enum class Purpose { encryption, signature, exchange };

/// One algorithm: what it is for, the type of its keys, its RSA padding (0 for EC) and its
/// digest (null: none).
struct AlgorithmRow {
    Purpose purpose;
    SecKeyType type;
    int padding;
    const char* digest;
};

constexpr auto kRsa = SecKeyType::kSecAttrKeyTypeRSA;
constexpr auto kEc = SecKeyType::kSecAttrKeyTypeEC;

AlgorithmRow rowOf(SecKeyAlgorithm algorithm) {
    switch (algorithm) {
    case kSecKeyAlgorithmRSAEncryptionPKCS1: return {Purpose::encryption, kRsa, RSA_PKCS1_PADDING, nullptr};
    case kSecKeyAlgorithmRSAEncryptionOAEPSHA1:
        return {Purpose::encryption, kRsa, RSA_PKCS1_OAEP_PADDING, "SHA1"};
    case kSecKeyAlgorithmRSAEncryptionOAEPSHA256:
        return {Purpose::encryption, kRsa, RSA_PKCS1_OAEP_PADDING, "SHA256"};
    case kSecKeyAlgorithmRSASignatureMessagePKCS1v15SHA256:
        return {Purpose::signature, kRsa, RSA_PKCS1_PADDING, "SHA256"};
    case kSecKeyAlgorithmRSASignatureMessagePKCS1v15SHA384:
        return {Purpose::signature, kRsa, RSA_PKCS1_PADDING, "SHA384"};
    case kSecKeyAlgorithmRSASignatureMessagePKCS1v15SHA512:
        return {Purpose::signature, kRsa, RSA_PKCS1_PADDING, "SHA512"};
    case kSecKeyAlgorithmRSASignatureMessagePSSSHA256:
        return {Purpose::signature, kRsa, RSA_PKCS1_PSS_PADDING, "SHA256"};
    case kSecKeyAlgorithmRSASignatureMessagePSSSHA384:
        return {Purpose::signature, kRsa, RSA_PKCS1_PSS_PADDING, "SHA384"};
    case kSecKeyAlgorithmRSASignatureMessagePSSSHA512:
        return {Purpose::signature, kRsa, RSA_PKCS1_PSS_PADDING, "SHA512"};
    case kSecKeyAlgorithmECDSASignatureMessageX962SHA256: return {Purpose::signature, kEc, 0, "SHA256"};
    case kSecKeyAlgorithmECDSASignatureMessageX962SHA384: return {Purpose::signature, kEc, 0, "SHA384"};
    case kSecKeyAlgorithmECDSASignatureMessageX962SHA512: return {Purpose::signature, kEc, 0, "SHA512"};
    case kSecKeyAlgorithmECDHKeyExchangeStandard: return {Purpose::exchange, kEc, 0, nullptr};
    }
    fatalError("A number that is no key algorithm.");
}

/// One operation: what it is for, the class of its key, and how OpenSSL is told to begin.
struct OperationRow {
    Purpose purpose;
    SecKeyClass keyClass;
    int (*begin)(EVP_PKEY_CTX*);
};

constexpr auto kPublic = SecKeyClass::kSecAttrKeyClassPublic;
constexpr auto kPrivate = SecKeyClass::kSecAttrKeyClassPrivate;

OperationRow rowOf(SecKeyOperationType operation) {
    switch (operation) {
    case kSecKeyOperationTypeSign: return {Purpose::signature, kPrivate, EVP_PKEY_sign_init};
    case kSecKeyOperationTypeVerify: return {Purpose::signature, kPublic, EVP_PKEY_verify_init};
    case kSecKeyOperationTypeEncrypt: return {Purpose::encryption, kPublic, EVP_PKEY_encrypt_init};
    case kSecKeyOperationTypeDecrypt: return {Purpose::encryption, kPrivate, EVP_PKEY_decrypt_init};
    case kSecKeyOperationTypeKeyExchange: return {Purpose::exchange, kPrivate, EVP_PKEY_derive_init};
    }
    fatalError("A number that is no key operation.");
}

bool setDigest(EVP_PKEY_CTX* context, const AlgorithmRow& row) {
    if (row.purpose == Purpose::encryption)
        return !row.digest || EVP_PKEY_CTX_set_rsa_oaep_md_name(context, row.digest, nullptr) == 1;
    const Digest digest(EVP_MD_fetch(nullptr, row.digest, nullptr));
    return digest && EVP_PKEY_CTX_set_signature_md(context, digest.get()) == 1;
}

/// The salt is as long as the digest, and MGF1 uses the same digest (RFC 7518 section 3.5).
bool setPadding(EVP_PKEY_CTX* context, const AlgorithmRow& row) {
    if (EVP_PKEY_CTX_set_rsa_padding(context, row.padding) != 1) return false;
    return row.padding != RSA_PKCS1_PSS_PADDING ||
           EVP_PKEY_CTX_set_rsa_pss_saltlen(context, RSA_PSS_SALTLEN_DIGEST) == 1;
}

KeyContext makeContext(EVP_PKEY* key, const OperationRow& operation, const AlgorithmRow& row) {
    KeyContext context(EVP_PKEY_CTX_new_from_pkey(nullptr, key, nullptr));
    bool isReady = context && operation.begin(context.get()) == 1;
    if (row.type == kRsa)
        isReady = isReady && setPadding(context.get(), row) && setDigest(context.get(), row);
    if (!isReady) throw platformError(CFError::errSecParam, "The key does not allow this operation.");
    return context;
}

/// A digest of any of the three lengths.
struct MessageDigest {
    std::array<std::uint8_t, kMaxDigestLength> bytes{};
    std::size_t length = 0;

    template <std::size_t Length>
    void set(void (*digest)(ByteView, std::span<std::uint8_t, Length>), ByteView message) {
        digest(message, std::span(bytes).template first<Length>());
        length = Length;
    }
};

MessageDigest digestOf(const AlgorithmRow& row, ByteView message) {
    const std::string_view name = row.digest;
    MessageDigest result;
    if (name == "SHA256") result.set(CC_SHA256, message);
    if (name == "SHA384") result.set(CC_SHA384, message);
    if (name == "SHA512") result.set(CC_SHA512, message);
    return result;
}

void require(const SecKey& key, SecKeyOperationType operation, SecKeyAlgorithm algorithm) {
    if (!SecKeyIsAlgorithmSupported(key, operation, algorithm))
        throw CFError(CFError::errSecParam, "The algorithm is not supported by the key.");
}

using Transform = int (*)(EVP_PKEY_CTX*, unsigned char*, std::size_t*, const unsigned char*, std::size_t);

template <class Result>
Result transform(const SecKey& key, SecKeyOperationType operation, SecKeyAlgorithm algorithm, Transform apply,
                 ByteView input) {
    ErrorScope errors;
    require(key, operation, algorithm);
    const Context context(key.material(), operation, algorithm);
    Result output(static_cast<std::size_t>(EVP_PKEY_get_size(key.material().key.get())));
    std::size_t length = output.size();
    if (apply(context.get(), output.data(), &length, input.data(), input.size()) != 1)
        throw platformError(CFError::errSecParam, "The operation failed.");
    errors.succeed();
    output.resize(length);
    return output;
}

} // namespace

SecKey::Material::~Material() {
    for (const auto& context : idle_)
        EVP_PKEY_CTX_free(context.load());
}

SecKey::Material::Context::Context(Material& material, SecKeyOperationType operation,
                                   SecKeyAlgorithm algorithm)
    : place_(material.idle_[static_cast<std::size_t>(algorithm)]), context_(place_.exchange(nullptr)) {
    if (!context_) context_ = makeContext(material.key.get(), rowOf(operation), rowOf(algorithm));
}

SecKey::Material::Context::~Context() {
    // Another thread may have given one back meanwhile: that one goes.
    context_.reset(place_.exchange(context_.release()));
}

bool SecKeyIsAlgorithmSupported(const SecKey& key, SecKeyOperationType operation, SecKeyAlgorithm algorithm) {
    const SecKeyAttributes& attributes = key.material().attributes;
    const AlgorithmRow row = rowOf(algorithm);
    const OperationRow wanted = rowOf(operation);
    return row.type == attributes.kSecAttrKeyType && row.purpose == wanted.purpose &&
           wanted.keyClass == attributes.kSecAttrKeyClass;
}

Bytes SecKeyCreateSignature(const SecKey& key, SecKeyAlgorithm algorithm, ByteView message) {
    require(key, kSecKeyOperationTypeSign, algorithm);
    const MessageDigest digest = digestOf(rowOf(algorithm), message);
    return transform<Bytes>(key, kSecKeyOperationTypeSign, algorithm, EVP_PKEY_sign,
                            ByteView(digest.bytes).first(digest.length));
}

bool SecKeyVerifySignature(const SecKey& key, SecKeyAlgorithm algorithm, ByteView message,
                           ByteView signature) {
    ErrorScope errors;
    require(key, kSecKeyOperationTypeVerify, algorithm);
    const MessageDigest digest = digestOf(rowOf(algorithm), message);
    const Context context(key.material(), kSecKeyOperationTypeVerify, algorithm);
    if (EVP_PKEY_verify(context.get(), signature.data(), signature.size(), digest.bytes.data(),
                        digest.length) != 1)
        return false;
    errors.succeed();
    return true;
}

Bytes SecKeyCreateEncryptedData(const SecKey& key, SecKeyAlgorithm algorithm, ByteView plaintext) {
    return transform<Bytes>(key, kSecKeyOperationTypeEncrypt, algorithm, EVP_PKEY_encrypt, plaintext);
}

SecretBytes SecKeyCreateDecryptedData(const SecKey& key, SecKeyAlgorithm algorithm, ByteView ciphertext) {
    return transform<SecretBytes>(key, kSecKeyOperationTypeDecrypt, algorithm, EVP_PKEY_decrypt, ciphertext);
}

void SecKeyDecryptInto(const SecKey& key, SecKeyAlgorithm algorithm, ByteView ciphertext,
                       std::span<std::uint8_t> text) {
    const ErrorScope errors;
    require(key, kSecKeyOperationTypeDecrypt, algorithm);
    const Context context(key.material(), kSecKeyOperationTypeDecrypt, algorithm);
    SecretBytes block(static_cast<std::size_t>(EVP_PKEY_get_size(key.material().key.get())));
    if (text.size() > block.size()) throw CFError(CFError::errSecParam, "No block holds so long a text.");
    std::size_t length = block.size();
    const int status =
        EVP_PKEY_decrypt(context.get(), block.data(), &length, ciphertext.data(), ciphertext.size());
    // From here on nothing branches on whether the padding was good: an octet is chosen by its mask.
    const auto isTaken = static_cast<unsigned>(status == 1) & static_cast<unsigned>(length == text.size());
    const auto taken = static_cast<std::uint8_t>(0U - isTaken);
    for (std::size_t index = 0; index < text.size(); ++index)
        text[index] = static_cast<std::uint8_t>((block[index] & taken) | (text[index] & ~taken));
}

SecretBytes SecKeyCopyKeyExchangeResult(const SecKey& privateKey, const SecKey& publicKey) {
    const ErrorScope errors;
    require(privateKey, kSecKeyOperationTypeKeyExchange, kSecKeyAlgorithmECDHKeyExchangeStandard);
    if (publicKey.material().curve != privateKey.material().curve)
        throw CFError(CFError::errSecParam, "The keys are not on one curve.");
    const Context context(privateKey.material(), kSecKeyOperationTypeKeyExchange,
                          kSecKeyAlgorithmECDHKeyExchangeStandard);
    SecretBytes shared(privateKey.material().curve->coordinateLength);
    std::size_t length = shared.size();
    // The peer's point was checked when its key was made; the curves' cofactor is 1, so that is
    // all there is to check.
    constexpr int kNoSecondCheck = 0;
    if (EVP_PKEY_derive_set_peer_ex(context.get(), publicKey.material().key.get(), kNoSecondCheck) != 1 ||
        EVP_PKEY_derive(context.get(), shared.data(), &length) != 1 || length != shared.size())
        throw platformError(CFError::errSecParam, "The keys do not agree.");
    return shared;
}

} // namespace korvane
