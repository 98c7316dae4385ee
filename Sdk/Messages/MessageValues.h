#pragma once

#include "Platform/RawValue.h"

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

template <>
struct RawValues<ChallengeCancelationInd> {
    static constexpr std::array<std::string_view, 7> texts{"01", "03", "04", "05", "06", "07", "08"};
};

enum class YesNoSelector { Y, N };

template <>
struct RawValues<YesNoSelector> {
    static constexpr std::array<std::string_view, 2> texts{"Y", "N"};
};

enum class ChallengeWindowSize { XS, S, M, L, FULL_SCREEN };

template <>
struct RawValues<ChallengeWindowSize> {
    static constexpr std::array<std::string_view, 5> texts{"01", "02", "03", "04", "05"};
};

/// The five kinds of challenge.
enum class UiType { TEXT, SINGLE_SELECT, MULTI_SELECT, OOB, HTML_OTHER };

template <>
struct RawValues<UiType> {
    static constexpr std::array<std::string_view, 5> texts{"01", "02", "03", "04", "05"};
};

} // namespace korvane
