#include "Crypt/SecureRandom.h"

#include "Platform/Security/CommonCrypto.h"

namespace korvane {

SecretBytes SecureRandom::generate(std::ptrdiff_t count) {
    if (count < 1) throw SecureRandomError(SecureRandomErrorCase::countMustBeGreaterThanZero);
    SecretBytes bytes(static_cast<std::size_t>(count));
    fill(bytes);
    return bytes;
}

void SecureRandom::fill(std::span<std::uint8_t> buffer) {
    if (buffer.empty()) throw SecureRandomError(SecureRandomErrorCase::countMustBeGreaterThanZero);
    const std::int32_t status = SecRandomCopyBytes(buffer);
    if (status != 0) throw SecureRandomError(SecureRandomErrorCase::failed, std::int64_t{status});
}

SecretBytes randomBytes(std::ptrdiff_t size) {
    return SecureRandom::generate(size);
}

} // namespace korvane
