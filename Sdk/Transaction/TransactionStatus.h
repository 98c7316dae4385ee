#pragma once

#include "Platform/EnumTable.h"

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

[[nodiscard]] constexpr std::string_view rawValue(TransactionStatus value) {
    using enum TransactionStatus;
    switch (value) {
    case AUTHENTICATION_SUCCESSFUL: return "Y";
    case NOT_AUTHENTICATED: return "N";
    case AUTHENTICATION_COULD_NOT_BE_PERFORMED: return "U";
    case ATTEMPTS_PROCESSING_PERFORMED: return "A";
    case CHALLENGE_REQUIRED: return "C";
    case DECOUPLED_CHALLENGE_REQUIRED: return "D";
    case ACCOUNT_VERIFICATION_REJECTED: return "R";
    case INFORMATIONAL_ONLY: return "I";
    }
    return kNoRawValue;
}

} // namespace korvane
