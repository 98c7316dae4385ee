#pragma once

#include "Platform/Failure.h"
#include "Platform/Security/Secret.h"

#include <cstddef>

namespace korvane {

enum class SecureRandomErrorCase {
    failed, // std::int64_t: the platform's status
    countMustBeGreaterThanZero,
};

[[nodiscard]] constexpr std::string_view rawValue(SecureRandomErrorCase value) {
    switch (value) {
    case SecureRandomErrorCase::failed: return "failed";
    case SecureRandomErrorCase::countMustBeGreaterThanZero: return "countMustBeGreaterThanZero";
    }
    return kNoRawValue;
}

template <>
struct FailureTraits<SecureRandomErrorCase> {
    static constexpr std::string_view domain = "SecureRandomError";
    using Value = FailureValue;
};

using SecureRandomError = TypedFailure<SecureRandomErrorCase>;

struct SecureRandom {
    /// Cryptographic random bytes; they may become a key.
    /// @throws SecureRandomError
    [[nodiscard]] static SecretBytes generate(std::ptrdiff_t count);

    /// Fills a buffer in place.
    /// @throws SecureRandomError as `generate`.
    static void fill(std::span<std::uint8_t> buffer);
};

/// As `SecureRandom::generate`.
[[nodiscard]] SecretBytes randomBytes(std::ptrdiff_t size);

} // namespace korvane
