#pragma once

#include "Platform/UIDevice.h"
#include "tests/challenge/simulation/Chance.h"
#include "tests/challenge/simulation/Reply.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace korvane::simulation {

/// What is wrong with the values that the challenge starts with, and what must come of it.
struct StartFault {
    void (*spoil)(ChallengeParameters& parameters);
    /// What the application hears; empty where nothing is wrong.
    std::string text;
    bool isToldToAcs;
    /// The same of another start with good values: an agreement that was reached before has used the key up.
    std::string nextText = {};
};

/// How the cardholder goes about it: acts when nothing runs; touches all the time, and twice; acts by
/// assistive means, which a spinner does not stop; goes away for minutes; or gives up soon.
enum class Temper { patient, hasty, assisted, absent, cancelling };

/// The device is turned.
struct Turn {
    Time at;
    UIDeviceOrientation to;
};

/// Everything about one story that is decided before it begins.
struct Plan {
    std::uint64_t seed = 0;
    std::string messageVersion;
    std::int64_t minutes = 0;
    bool hasRequestorURL = false;
    /// Whether changes of the screen take their time.
    bool playsAnimations = false;
    /// Whether the application keeps the transaction to the end.
    bool keepsTransaction = false;
    const StartFault* startFault;
    /// Whether the application starts the challenge anew, with good values, when it hears of the fault.
    bool triesAgain = false;
    /// To the requests in the order in which they come; the last one to all further ones.
    std::vector<Reply> replies;
    /// Of an image's answer.
    Time imageDelay{0};
    /// Of the answer to an Erro; absent for none.
    std::optional<Time> erroDelay;
    UIDeviceOrientation heldAtFirst = UIDeviceOrientation::portrait;
    std::vector<Turn> turns;
    /// When the application takes the screens away.
    std::optional<Time> dismissal;
    Temper temper = Temper::patient;

    explicit Plan(std::uint64_t itsSeed);

    [[nodiscard]] const Reply& reply(std::size_t request) const {
        return replies[std::min(request, replies.size() - 1)];
    }
};

} // namespace korvane::simulation
