#pragma once

#include "Platform/EnumTable.h"

namespace korvane {

/// Why a challenge is cancelled. There is no "02".
enum class ChallengeCancelationInd {
    CARDHOLDER_SELECTED_CANCEL,
    TRANSACTION_TIMED_OUT_DECOUPLED_AUTHENTICATION,
    TRANSACTION_TIMED_OUT_AT_ACS_OTHER_TIMEOUTS,
    TRANSACTION_TIMED_OUT_AT_ACS_FIRST_CREQ_NOT_RECEIVED_BY_ACS,
    TRANSACTION_ERROR,
    UNKNOWN,
    TRANSACTION_TIMED_OUT_AT_SDK,
};

[[nodiscard]] constexpr std::string_view rawValue(ChallengeCancelationInd value) {
    using enum ChallengeCancelationInd;
    switch (value) {
    case CARDHOLDER_SELECTED_CANCEL: return "01";
    case TRANSACTION_TIMED_OUT_DECOUPLED_AUTHENTICATION: return "03";
    case TRANSACTION_TIMED_OUT_AT_ACS_OTHER_TIMEOUTS: return "04";
    case TRANSACTION_TIMED_OUT_AT_ACS_FIRST_CREQ_NOT_RECEIVED_BY_ACS: return "05";
    case TRANSACTION_ERROR: return "06";
    case UNKNOWN: return "07";
    case TRANSACTION_TIMED_OUT_AT_SDK: return "08";
    }
    return kNoRawValue;
}

enum class YesNoSelector { Y, N };

[[nodiscard]] constexpr std::string_view rawValue(YesNoSelector value) {
    switch (value) {
    case YesNoSelector::Y: return "Y";
    case YesNoSelector::N: return "N";
    }
    return kNoRawValue;
}

enum class ChallengeWindowSize { XS, S, M, L, FULL_SCREEN };

[[nodiscard]] constexpr std::string_view rawValue(ChallengeWindowSize value) {
    using enum ChallengeWindowSize;
    switch (value) {
    case XS: return "01";
    case S: return "02";
    case M: return "03";
    case L: return "04";
    case FULL_SCREEN: return "05";
    }
    return kNoRawValue;
}

/// The five kinds of challenge.
enum class UiType { TEXT, SINGLE_SELECT, MULTI_SELECT, OOB, HTML_OTHER };

[[nodiscard]] constexpr std::string_view rawValue(UiType value) {
    using enum UiType;
    switch (value) {
    case TEXT: return "01";
    case SINGLE_SELECT: return "02";
    case MULTI_SELECT: return "03";
    case OOB: return "04";
    case HTML_OTHER: return "05";
    }
    return kNoRawValue;
}

} // namespace korvane
