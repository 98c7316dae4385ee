#pragma once

#include "Cardholder/Finger.h"
#include "Platform/JSON.h"
#include "Platform/UIDevice.h"

#include <functional>
#include <memory>
#include <string>

namespace korvane::cardholder {

/// What an action is done to.
struct Stage {
    std::shared_ptr<ChallengeViewController> screen;
    Finger& finger;
    /// Turns the device to a side.
    std::function<void(UIDeviceOrientation)> turn;
};

/// What is to be expected after an action, beside what every screen can do.
enum class Aftermath {
    screen, ///< the screen again, unless its spinner says that something is under way
    turn,   ///< perhaps another screen, for the other orientation
    ending  ///< the challenge's end
};

/// Performs the action that a line asks for.
/// @throws InputError for a line that is none, and for what it says; Refusal where the screen has no such
/// control. Nothing has been done then.
Aftermath performAction(const JSON& line, const Stage& stage);

/// Looks at a line without doing anything.
/// @throws InputError for a line that no screen could serve.
void requireAction(const JSON& line);

/// The actions with their members, optional ones in brackets: one line each.
[[nodiscard]] std::string actionHelp();

} // namespace korvane::cardholder
