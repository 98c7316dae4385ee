#pragma once

#include "Platform/Bytes.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>

namespace korvane {

/// Status numbers of the symmetric operations. They appear in texts only.
inline constexpr int kCCSuccess = 0;
inline constexpr int kCCParamError = -4300;
inline constexpr int kCCBufferTooSmall = -4301;
inline constexpr int kCCAlignmentError = -4303;
inline constexpr int kCCDecodeError = -4304;
inline constexpr int kCCUnspecifiedError = -4308;

enum class CCOperation { kCCEncrypt = 0, kCCDecrypt = 1 };

/// The numbers of these two are the platform's. AES is the one block cipher.
enum class CCAlgorithm { kCCAlgorithmAES = 0 };

enum class CCHmacAlgorithm { kCCHmacAlgSHA256 = 2, kCCHmacAlgSHA384 = 3, kCCHmacAlgSHA512 = 4 };

inline constexpr std::size_t kCCBlockSizeAES128 = 16;
inline constexpr std::size_t kMaxDigestLength = 64;

/// AES-CBC with PKCS#7 padding, one shot (NIST SP 800-38A, RFC 5652 section 6.3). Any thread.
/// @param key    16 or 32 bytes. @param initializationVector  16 bytes.
/// @param output at least the input's length, and one block more to encrypt. It may not overlap the input, but
///               a ciphertext may be decrypted where it stands.
/// @param moved  the number of bytes written; 0 on any failure.
/// @return kCCSuccess; kCCParamError for a key or vector of another length; kCCBufferTooSmall;
///         kCCAlignmentError for a ciphertext of broken blocks; kCCDecodeError for bad padding.
[[nodiscard]] int CCCrypt(CCOperation operation, CCAlgorithm algorithm, ByteView key,
                          ByteView initializationVector, ByteView input, std::span<std::uint8_t> output,
                          std::size_t& moved);

/// The HMAC (RFC 2104) of the pieces, in order, as if they were one input. Any key, any input,
/// empty ones included.
/// @return the number of bytes written to the front of `output`: 32, 48 or 64.
std::size_t CCHmac(CCHmacAlgorithm algorithm, ByteView key, std::initializer_list<ByteView> pieces,
                   std::span<std::uint8_t, kMaxDigestLength> output);

/// One-shot digests (FIPS 180-4). A digest can be a key: it is written where the caller keeps such things,
/// and no copy of it or of the input's end stays behind.
void CC_SHA256(ByteView input, std::span<std::uint8_t, 32> digest);
void CC_SHA384(ByteView input, std::span<std::uint8_t, 48> digest);
void CC_SHA512(ByteView input, std::span<std::uint8_t, 64> digest);

/// AES key wrap with the default initial value (RFC 3394 section 2.2.1).
/// @param keyEncryptionKey 16, 24 or 32 bytes. @param rawKey a multiple of 8 bytes, 16 at least.
/// @param wrapped exactly `CCSymmetricWrappedSize(rawKey.size())` bytes.
/// @return kCCSuccess or kCCParamError.
[[nodiscard]] int CCSymmetricKeyWrap(ByteView keyEncryptionKey, ByteView rawKey,
                                     std::span<std::uint8_t> wrapped);

/// Undoes `CCSymmetricKeyWrap`.
/// @param raw exactly `CCSymmetricUnwrappedSize(wrapped.size())` bytes; zeros on failure.
/// @return kCCSuccess, kCCParamError, or kCCDecodeError when the integrity check fails.
[[nodiscard]] int CCSymmetricKeyUnwrap(ByteView keyEncryptionKey, ByteView wrapped,
                                       std::span<std::uint8_t> raw);

[[nodiscard]] constexpr std::size_t CCSymmetricWrappedSize(std::size_t rawSize) {
    return rawSize + 8;
}
[[nodiscard]] constexpr std::size_t CCSymmetricUnwrappedSize(std::size_t wrappedSize) {
    return wrappedSize < 8 ? 0 : wrappedSize - 8;
}

/// Fills `output` with cryptographic random bytes.
/// @return 0 on success.
[[nodiscard]] std::int32_t SecRandomCopyBytes(std::span<std::uint8_t> output);

/// Equality in a time that depends on the lengths alone.
[[nodiscard]] bool isEqualInConstantTime(ByteView left, ByteView right);

} // namespace korvane
