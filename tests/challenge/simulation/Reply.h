#pragma once

#include "tests/challenge/simulation/Chance.h"
#include "tests/support/SimulatedAcs.h"

#include <string>

namespace korvane::simulation {

/// What a screen of a reply has.
struct PlannedScreen {
    /// "01" to "05".
    std::string uiType = "01";
    bool asksForWhitelisting = false;
    /// The page is no Base64URL text.
    bool isUndecodable = false;
    /// How many images go with it, the scheme's first; only those of a first response count.
    int logos = 0;
    /// The address of the first of them is none.
    bool hasBadLogo = false;

    [[nodiscard]] bool isPage() const { return uiType == "05"; }
};

/// The kinds of replies that others speak of; more follow up to `kReplyKinds`.
enum : std::size_t { kScreen, kStatus, kUnknownStatus, kNoConnection, kSilence };
extern const std::size_t kReplyKinds;

/// One reply of the ACS.
struct Reply {
    std::size_t kind = kStatus;
    PlannedScreen screen;
    std::string status = "Y";
    Time delay{0};
};

/// What must come of a body that has arrived: a screen, an ending, an error that the library finds and tells
/// the ACS and the application, one that the ACS sent, or a failure of which only the application hears.
struct Verdict {
    enum class Kind { screen, status, madeErro, receivedErro, failure };
    Kind kind = Kind::failure;
    /// The error's code and details, or what the failure says in `text`.
    std::string code = {};
    std::string text = {};
};

/// The body and the time of an answer.
[[nodiscard]] ScriptedAnswer play(const Reply& reply, SimulatedAcs& acs);

/// @param isCounterRight  whether the reply's counter is the library's when it arrives.
[[nodiscard]] Verdict verdictOn(const Reply& reply, bool isFirst, bool isCounterRight);

/// For people.
[[nodiscard]] std::string describe(const Reply& reply, const SimulatedAcs& acs);

/// What is said of a failure that has no words of its own.
[[nodiscard]] std::string generic(const std::string& failure);

inline constexpr const char* kRequestorURL = "https://shop.example/back";

} // namespace korvane::simulation
