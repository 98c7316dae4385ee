#pragma once

#include "Platform/RawValue.h"

namespace korvane {

/// How a transaction ended, by the protocol's `transStatus`.
enum class TransactionStatus {
    AUTHENTICATION_SUCCESSFUL,
    NOT_AUTHENTICATED,
    AUTHENTICATION_COULD_NOT_BE_PERFORMED,
    ATTEMPTS_PROCESSING_PERFORMED,
    CHALLENGE_REQUIRED,
    DECOUPLED_CHALLENGE_REQUIRED,
    ACCOUNT_VERIFICATION_REJECTED,
    INFORMATIONAL_ONLY,
};

template <>
struct RawValues<TransactionStatus> {
    static constexpr std::array<std::string_view, 8> texts{"Y", "N", "U", "A", "C", "D", "R", "I"};
};

} // namespace korvane
