#pragma once

#include "Crypt/Algorithms.h"
#include "Platform/Failure.h"

namespace korvane {

enum class HMACErrorCase { inputMustBeGreaterThanZero };

[[nodiscard]] constexpr std::string_view rawValue(HMACErrorCase value) {
    switch (value) {
    case HMACErrorCase::inputMustBeGreaterThanZero: return "inputMustBeGreaterThanZero";
    }
    return kNoRawValue;
}

template <>
struct FailureTraits<HMACErrorCase> {
    static constexpr std::string_view domain = "HMACError";
    using Value = FailureValue;
};

using HMACError = TypedFailure<HMACErrorCase>;

struct HMAC {
    /// The whole HMAC (RFC 2104), 32 or 64 bytes. The key may be empty.
    /// @throws HMACError inputMustBeGreaterThanZero
    [[nodiscard]] static Bytes calculate(ByteView input, ByteView key, HMACAlgorithm algorithm);
};

} // namespace korvane
