#pragma once

#include "Platform/JSON.h"
#include "Ui/Screens/ChallengeViewController.h"

#include <string_view>

namespace korvane::challenge {

/// What a screen shows, read from its views: the `screen` event. Members that the screen does
/// not show are left out.
[[nodiscard]] JSON screenEvent(ChallengeViewController& screen);

/// How a screen is meant to be held: "PORTRAIT" or "LANDSCAPE"; a page is shown in either.
[[nodiscard]] std::string_view orientationOf(const ChallengeViewController& screen);

} // namespace korvane::challenge
