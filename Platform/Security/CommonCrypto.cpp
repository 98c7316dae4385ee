#include "Platform/Security/CommonCrypto.h"

#include "Platform/Security/OpenSSLHandles.h"
#include "Platform/Security/Secret.h"

#include <openssl/crypto.h>
#include <openssl/rand.h>

#include <algorithm>
#include <limits>

namespace korvane {

namespace {

using namespace openssl;

constexpr std::array<std::uint8_t, kMaxDigestLength> kZeros{};

/// Of a digest.
constexpr std::size_t kMaxBlockLength = 128;

/// RFC 3394 section 2.2.3.1. Given anew for each use: a context would keep the one of its last.
constexpr std::array<std::uint8_t, 8> kWrapInitialValue{0xA6, 0xA6, 0xA6, 0xA6, 0xA6, 0xA6, 0xA6, 0xA6};

/// One reusable context per thread and cipher. Between uses it holds the schedule of a key of zeros and a
/// block of zeros, never a key or a text of ours.
class ReusableCipher {
public:
    explicit ReusableCipher(const char* name)
        : cipher_(required(Cipher(EVP_CIPHER_fetch(nullptr, name, nullptr)), name)),
          context_(required(CipherContext(EVP_CIPHER_CTX_new()), name)) {
        EVP_CIPHER_CTX_set_flags(context_.get(), EVP_CIPHER_CTX_FLAG_WRAP_ALLOW);
        EVP_CipherInit_ex2(context_.get(), cipher_.get(), nullptr, nullptr, 1, nullptr);
    }

    [[nodiscard]] std::size_t keyLength() const {
        return static_cast<std::size_t>(EVP_CIPHER_get_key_length(cipher_.get()));
    }

    /// @return false when OpenSSL refuses the input; `moved` is the number of bytes written.
    bool run(CCOperation operation, ByteView key, const std::uint8_t* initializationVector, ByteView input,
             std::uint8_t* output, std::size_t& moved) {
        const ErrorMark errors;
        const int direction = operation == CCOperation::kCCEncrypt ? 1 : 0;
        int body = 0;
        int tail = 0;
        const bool isDone = EVP_CipherInit_ex2(context_.get(), nullptr, key.data(), initializationVector,
                                               direction, nullptr) == 1 &&
                            EVP_CipherUpdate(context_.get(), output, &body, input.data(),
                                             static_cast<int>(input.size())) == 1 &&
                            EVP_CipherFinal_ex(context_.get(), output + body, &tail) == 1;
        forget();
        moved = isDone ? static_cast<std::size_t>(body + tail) : 0;
        return isDone;
    }

private:
    /// The vector may stay: it is no secret, and what follows it in its place are blocks of ciphertext.
    void forget() {
        constexpr int kDecrypt = 0;
        EVP_CipherInit_ex2(context_.get(), nullptr, kZeros.data(), nullptr, kDecrypt, nullptr);
        if (EVP_CIPHER_get_mode(cipher_.get()) != EVP_CIPH_CBC_MODE) return;
        // What is decrypted is held back a block long, since it may be padding: this block takes the place of
        // the last one.
        std::array<std::uint8_t, 2 * kCCBlockSizeAES128> sink{};
        int moved = 0;
        EVP_CipherUpdate(context_.get(), sink.data(), &moved, kZeros.data(), kCCBlockSizeAES128);
    }

    Cipher cipher_;
    CipherContext context_;
};

ReusableCipher* blockCipher(CCAlgorithm algorithm, std::size_t keyLength) {
    if (algorithm != CCAlgorithm::kCCAlgorithmAES) return nullptr;
    thread_local ReusableCipher aes128("AES-128-CBC");
    thread_local ReusableCipher aes256("AES-256-CBC");
    if (keyLength == aes128.keyLength()) return &aes128;
    return keyLength == aes256.keyLength() ? &aes256 : nullptr;
}

ReusableCipher* wrapCipher(std::size_t keyLength) {
    thread_local std::array<ReusableCipher, 3> ciphers{
        ReusableCipher("AES-128-WRAP"), ReusableCipher("AES-192-WRAP"), ReusableCipher("AES-256-WRAP")};
    const auto found =
        std::find_if(ciphers.begin(), ciphers.end(),
                     [keyLength](const ReusableCipher& cipher) { return cipher.keyLength() == keyLength; });
    return found == ciphers.end() ? nullptr : &*found;
}

/// OpenSSL counts in int.
bool isTooLong(ByteView input) {
    return input.size() > std::numeric_limits<int>::max() - kCCBlockSizeAES128;
}

/// One reusable digest per thread and algorithm. Between uses its context is empty: it holds neither a digest,
/// which may be a key, nor the last block of what was digested.
class ReusableDigest {
public:
    explicit ReusableDigest(const char* name)
        : digest_(required(Digest(EVP_MD_fetch(nullptr, name, nullptr)), name)),
          context_(required(DigestContext(EVP_MD_CTX_new()), name)) {}

    [[nodiscard]] std::size_t length() const {
        return static_cast<std::size_t>(EVP_MD_get_size(digest_.get()));
    }
    [[nodiscard]] std::size_t blockLength() const {
        return static_cast<std::size_t>(EVP_MD_get_block_size(digest_.get()));
    }

    /// To be followed by another one or by `forget`.
    void run(std::initializer_list<ByteView> first, std::initializer_list<ByteView> rest,
             std::uint8_t* output) {
        bool isDone = EVP_DigestInit_ex2(context_.get(), digest_.get(), nullptr) == 1;
        for (const auto& pieces : {first, rest})
            for (const ByteView piece : pieces)
                isDone = isDone && EVP_DigestUpdate(context_.get(), piece.data(), piece.size()) == 1;
        if (!isDone || EVP_DigestFinal_ex(context_.get(), output, nullptr) != 1)
            fatalError("OpenSSL could not compute a digest.");
    }

    void forget() { EVP_MD_CTX_reset(context_.get()); }

private:
    Digest digest_;
    DigestContext context_;
};

void digestOnce(ReusableDigest& digest, ByteView input, std::uint8_t* output) {
    digest.run({input}, {}, output);
    digest.forget();
}

ReusableDigest& sha256() {
    thread_local ReusableDigest algorithm("SHA256");
    return algorithm;
}

ReusableDigest& sha384() {
    thread_local ReusableDigest algorithm("SHA384");
    return algorithm;
}

ReusableDigest& sha512() {
    thread_local ReusableDigest algorithm("SHA512");
    return algorithm;
}

ReusableDigest& digestOf(CCHmacAlgorithm algorithm) {
    switch (algorithm) {
    case CCHmacAlgorithm::kCCHmacAlgSHA256: return sha256();
    case CCHmacAlgorithm::kCCHmacAlgSHA384: return sha384();
    case CCHmacAlgorithm::kCCHmacAlgSHA512: return sha512();
    }
    fatalError("Unknown HMAC algorithm.");
}

/// The key, filled up to a block of the digest and combined with a pad octet (RFC 2104 section 2); cleansed
/// at its end.
class PaddedKey {
public:
    PaddedKey(ReusableDigest& digest, ByteView key) : length_(digest.blockLength()) {
        if (key.size() > length_)
            digest.run({key}, {}, block_.data());
        else
            std::copy(key.begin(), key.end(), block_.begin());
    }
    PaddedKey(const PaddedKey&) = delete;
    PaddedKey& operator=(const PaddedKey&) = delete;
    ~PaddedKey() { cleanse(block_.data(), block_.size()); }

    void combine(std::uint8_t pad) {
        for (std::uint8_t& octet : block_)
            octet = static_cast<std::uint8_t>(octet ^ pad);
    }

    [[nodiscard]] ByteView view() const { return ByteView(block_).first(length_); }

private:
    std::array<std::uint8_t, kMaxBlockLength> block_{};
    std::size_t length_;
};

} // namespace

int CCCrypt(CCOperation operation, CCAlgorithm algorithm, ByteView key, ByteView initializationVector,
            ByteView input, std::span<std::uint8_t> output, std::size_t& moved) {
    moved = 0;
    ReusableCipher* cipher = blockCipher(algorithm, key.size());
    if (!cipher || initializationVector.size() != kCCBlockSizeAES128 || isTooLong(input))
        return kCCParamError;
    const bool isDecrypting = operation == CCOperation::kCCDecrypt;
    if (output.size() < input.size() + (isDecrypting ? 0 : kCCBlockSizeAES128)) return kCCBufferTooSmall;
    if (isDecrypting && input.size() % kCCBlockSizeAES128 != 0) return kCCAlignmentError;
    if (cipher->run(operation, key, initializationVector.data(), input, output.data(), moved))
        return kCCSuccess;
    cleanse(output.data(), output.size());
    return isDecrypting ? kCCDecodeError : kCCUnspecifiedError;
}

// Made of two digests, not of OpenSSL's HMAC: that one keeps the key in its context until its next use, and
// allocates more often than the whole opening of a message does otherwise.
std::size_t CCHmac(CCHmacAlgorithm algorithm, ByteView key, std::initializer_list<ByteView> pieces,
                   std::span<std::uint8_t, kMaxDigestLength> output) {
    constexpr std::uint8_t kInnerPad = 0x36;
    constexpr std::uint8_t kOuterPad = 0x5C;
    ReusableDigest& digest = digestOf(algorithm);
    PaddedKey padded(digest, key);
    padded.combine(kInnerPad);
    digest.run({padded.view()}, pieces, output.data());
    padded.combine(kInnerPad ^ kOuterPad);
    digest.run({padded.view()}, {ByteView(output).first(digest.length())}, output.data());
    digest.forget();
    return digest.length();
}

void CC_SHA256(ByteView input, std::span<std::uint8_t, 32> digest) {
    digestOnce(sha256(), input, digest.data());
}

void CC_SHA384(ByteView input, std::span<std::uint8_t, 48> digest) {
    digestOnce(sha384(), input, digest.data());
}

void CC_SHA512(ByteView input, std::span<std::uint8_t, 64> digest) {
    digestOnce(sha512(), input, digest.data());
}

int CCSymmetricKeyWrap(ByteView keyEncryptionKey, ByteView rawKey, std::span<std::uint8_t> wrapped) {
    ReusableCipher* cipher = wrapCipher(keyEncryptionKey.size());
    const bool isFit = rawKey.size() % 8 == 0 && rawKey.size() >= 16 && !isTooLong(rawKey) &&
                       wrapped.size() == CCSymmetricWrappedSize(rawKey.size());
    if (!cipher || !isFit) return kCCParamError;
    std::size_t moved = 0;
    const bool isDone = cipher->run(CCOperation::kCCEncrypt, keyEncryptionKey, kWrapInitialValue.data(),
                                    rawKey, wrapped.data(), moved);
    return isDone && moved == wrapped.size() ? kCCSuccess : kCCUnspecifiedError;
}

int CCSymmetricKeyUnwrap(ByteView keyEncryptionKey, ByteView wrapped, std::span<std::uint8_t> raw) {
    ReusableCipher* cipher = wrapCipher(keyEncryptionKey.size());
    const bool isFit = wrapped.size() % 8 == 0 && wrapped.size() >= 24 && !isTooLong(wrapped) &&
                       raw.size() == CCSymmetricUnwrappedSize(wrapped.size());
    if (!cipher || !isFit) return kCCParamError;
    // OpenSSL needs the whole wrapped length as working space.
    SecretBytes work(wrapped.size());
    std::size_t moved = 0;
    const bool isDone = cipher->run(CCOperation::kCCDecrypt, keyEncryptionKey, kWrapInitialValue.data(),
                                    wrapped, work.data(), moved);
    std::fill(raw.begin(), raw.end(), std::uint8_t{0});
    if (!isDone || moved != raw.size()) return kCCDecodeError;
    std::copy_n(work.begin(), moved, raw.begin());
    return kCCSuccess;
}

std::int32_t SecRandomCopyBytes(std::span<std::uint8_t> output) {
    const ErrorMark errors;
    constexpr std::int32_t kErrSecAllocate = -108;
    if (output.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) return kErrSecAllocate;
    return RAND_bytes(output.data(), static_cast<int>(output.size())) == 1 ? 0 : kErrSecAllocate;
}

bool isEqualInConstantTime(ByteView left, ByteView right) {
    return left.size() == right.size() && CRYPTO_memcmp(left.data(), right.data(), left.size()) == 0;
}

} // namespace korvane
