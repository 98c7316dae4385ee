#include "Platform/Security/CommonCrypto.h"

#include "Platform/Security/OpenSSLHandles.h"
#include "Platform/Security/Secret.h"

#include <openssl/crypto.h>
#include <openssl/rand.h>

#include <algorithm>
#include <limits>
#include <optional>

namespace korvane {

namespace {

using namespace openssl;

constexpr std::array<std::uint8_t, kMaxDigestLength> kZeros{};

/// Of a digest.
constexpr std::size_t kMaxBlockLength = 128;

/// RFC 3394 section 2.2.3.1. Given anew for each use: a context would keep the one of its last.
constexpr std::array<std::uint8_t, 8> kWrapInitialValue{0xA6, 0xA6, 0xA6, 0xA6, 0xA6, 0xA6, 0xA6, 0xA6};

/// One reusable context per thread and cipher. Between uses it holds the schedule of a key of zeros, never a
/// key or a text of ours: it pads nothing and is given whole blocks, so that it holds none back.
class ReusableCipher {
public:
    explicit ReusableCipher(const char* name)
        : cipher_(required(Cipher(EVP_CIPHER_fetch(nullptr, name, nullptr)), name)),
          context_(required(CipherContext(EVP_CIPHER_CTX_new()), name)) {
        EVP_CIPHER_CTX_set_flags(context_.get(), EVP_CIPHER_CTX_FLAG_WRAP_ALLOW);
        EVP_CipherInit_ex2(context_.get(), cipher_.get(), nullptr, nullptr, 1, nullptr);
        // The flag of the same meaning would be told to the cipher again with each key.
        unsigned padding = 0;
        const std::array<OSSL_PARAM, 2> parameters{
            OSSL_PARAM_construct_uint(OSSL_CIPHER_PARAM_PADDING, &padding), OSSL_PARAM_construct_end()};
        EVP_CIPHER_CTX_set_params(context_.get(), parameters.data());
    }

    [[nodiscard]] std::size_t keyLength() const {
        return static_cast<std::size_t>(EVP_CIPHER_get_key_length(cipher_.get()));
    }

    /// Runs over the pieces, in order, each of them whole blocks.
    /// @return the number of octets written, or no value when OpenSSL refuses the input.
    std::optional<std::size_t> run(CCOperation operation, ByteView key,
                                   const std::uint8_t* initializationVector,
                                   std::initializer_list<ByteView> pieces, std::uint8_t* output) {
        ErrorMark errors;
        const int direction = operation == CCOperation::kCCEncrypt ? 1 : 0;
        bool isDone = EVP_CipherInit_ex2(context_.get(), nullptr, key.data(), initializationVector, direction,
                                         nullptr) == 1;
        std::size_t moved = 0;
        for (const ByteView piece : pieces) {
            int written = 0;
            isDone = isDone && EVP_CipherUpdate(context_.get(), output + moved, &written, piece.data(),
                                                static_cast<int>(piece.size())) == 1;
            moved += static_cast<std::size_t>(written);
        }
        forget();
        if (!isDone) return std::nullopt;
        errors.succeed();
        return moved;
    }

private:
    /// The vector may stay: it is no secret, and what follows it in its place are blocks of ciphertext.
    void forget() {
        constexpr int kEncrypt = 1; // which takes the least work to expand a key for
        EVP_CipherInit_ex2(context_.get(), nullptr, kZeros.data(), nullptr, kEncrypt, nullptr);
    }

    Cipher cipher_;
    CipherContext context_;
};

/// The last block of a plaintext, filled up with octets that tell how many they are (RFC 5652 section 6.3).
/// @param tail  less than a block.
std::array<std::uint8_t, kCCBlockSizeAES128> paddedBlock(ByteView tail) {
    std::array<std::uint8_t, kCCBlockSizeAES128> block;
    block.fill(static_cast<std::uint8_t>(block.size() - tail.size()));
    std::copy(tail.begin(), tail.end(), block.begin());
    return block;
}

/// The length of a text without its padding, or no value for bad padding. What is decrypted here has a tag that
/// was found good before: the time that this takes tells nothing to who could have changed it.
std::optional<std::size_t> unpaddedLength(ByteView text) {
    const std::size_t count = text.empty() ? 0 : text.back();
    if (count == 0 || count > kCCBlockSizeAES128 || count > text.size()) return std::nullopt;
    const ByteView padding = text.last(count);
    const bool isGood =
        std::all_of(padding.begin(), padding.end(), [count](std::uint8_t octet) { return octet == count; });
    return isGood ? std::optional(text.size() - count) : std::nullopt;
}

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

/// One reusable digest per thread and algorithm. Between uses its context has begun the next one: it holds
/// neither a digest, which may be a key, nor the last block of what was digested.
class ReusableDigest {
public:
    explicit ReusableDigest(const char* name)
        : digest_(required(Digest(EVP_MD_fetch(nullptr, name, nullptr)), name)),
          context_(required(DigestContext(EVP_MD_CTX_new()), name)) {
        require(begin());
    }

    [[nodiscard]] std::size_t length() const {
        return static_cast<std::size_t>(EVP_MD_get_size(digest_.get()));
    }
    [[nodiscard]] std::size_t blockLength() const {
        return static_cast<std::size_t>(EVP_MD_get_block_size(digest_.get()));
    }

    void run(std::initializer_list<ByteView> first, std::initializer_list<ByteView> rest,
             std::uint8_t* output) {
        bool isDone = true;
        for (const auto& pieces : {first, rest})
            for (const ByteView piece : pieces)
                isDone = isDone && EVP_DigestUpdate(context_.get(), piece.data(), piece.size()) == 1;
        require(isDone && EVP_DigestFinal_ex(context_.get(), output, nullptr) == 1 && begin());
    }

private:
    bool begin() { return EVP_DigestInit_ex2(context_.get(), digest_.get(), nullptr) == 1; }

    static void require(bool isDone) {
        if (!isDone) fatalError("OpenSSL could not compute a digest.");
    }

    Digest digest_;
    DigestContext context_;
};

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
    const std::size_t tail = input.size() % kCCBlockSizeAES128;
    const bool isDecrypting = operation == CCOperation::kCCDecrypt;
    if (output.size() < input.size() + (isDecrypting ? 0 : kCCBlockSizeAES128)) return kCCBufferTooSmall;
    if (isDecrypting && tail != 0) return kCCAlignmentError;
    const ByteView whole = input.first(input.size() - tail);
    std::optional<std::size_t> length;
    if (isDecrypting) {
        length = cipher->run(operation, key, initializationVector.data(), {whole}, output.data());
        length = length == whole.size() ? unpaddedLength(output.first(whole.size())) : std::nullopt;
    } else {
        auto last = paddedBlock(input.last(tail));
        length = cipher->run(operation, key, initializationVector.data(), {whole, last}, output.data());
        if (length != whole.size() + last.size()) length.reset();
        cleanse(last.data(), last.size());
    }
    moved = length.value_or(0);
    if (length) return kCCSuccess;
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
    return digest.length();
}

void CC_SHA256(ByteView input, std::span<std::uint8_t, 32> digest) {
    sha256().run({input}, {}, digest.data());
}

void CC_SHA384(ByteView input, std::span<std::uint8_t, 48> digest) {
    sha384().run({input}, {}, digest.data());
}

void CC_SHA512(ByteView input, std::span<std::uint8_t, 64> digest) {
    sha512().run({input}, {}, digest.data());
}

int CCSymmetricKeyWrap(ByteView keyEncryptionKey, ByteView rawKey, std::span<std::uint8_t> wrapped) {
    ReusableCipher* cipher = wrapCipher(keyEncryptionKey.size());
    const bool isFit = rawKey.size() % 8 == 0 && rawKey.size() >= 16 && !isTooLong(rawKey) &&
                       wrapped.size() == CCSymmetricWrappedSize(rawKey.size());
    if (!cipher || !isFit) return kCCParamError;
    const auto moved = cipher->run(CCOperation::kCCEncrypt, keyEncryptionKey, kWrapInitialValue.data(),
                                   {rawKey}, wrapped.data());
    return moved == wrapped.size() ? kCCSuccess : kCCUnspecifiedError;
}

int CCSymmetricKeyUnwrap(ByteView keyEncryptionKey, ByteView wrapped, std::span<std::uint8_t> raw) {
    ReusableCipher* cipher = wrapCipher(keyEncryptionKey.size());
    const bool isFit = wrapped.size() % 8 == 0 && wrapped.size() >= 24 && !isTooLong(wrapped) &&
                       raw.size() == CCSymmetricUnwrappedSize(wrapped.size());
    if (!cipher || !isFit) return kCCParamError;
    // OpenSSL needs the whole wrapped length as working space.
    SecretBytes work(wrapped.size());
    const auto moved = cipher->run(CCOperation::kCCDecrypt, keyEncryptionKey, kWrapInitialValue.data(),
                                   {wrapped}, work.data());
    std::fill(raw.begin(), raw.end(), std::uint8_t{0});
    if (moved != raw.size()) return kCCDecodeError;
    std::copy_n(work.begin(), raw.size(), raw.begin());
    return kCCSuccess;
}

std::int32_t SecRandomCopyBytes(std::span<std::uint8_t> output) {
    ErrorMark errors;
    constexpr std::int32_t kErrSecAllocate = -108;
    if (output.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) return kErrSecAllocate;
    if (RAND_bytes(output.data(), static_cast<int>(output.size())) != 1) return kErrSecAllocate;
    errors.succeed();
    return 0;
}

bool isEqualInConstantTime(ByteView left, ByteView right) {
    return left.size() == right.size() && CRYPTO_memcmp(left.data(), right.data(), left.size()) == 0;
}

} // namespace korvane
