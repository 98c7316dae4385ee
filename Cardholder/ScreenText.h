#pragma once

#include "Platform/JSON.h"
#include "Ui/Screens/ChallengeViewController.h"

#include <array>
#include <string_view>

namespace korvane::cardholder {

/// The members that a `screen` event can have, beside "event" itself.
inline constexpr std::array<std::string_view, 17> kScreenMembers{
    "uiType",   "orientation", "header",      "label",      "text",         "warning",
    "whyLabel", "whyText",     "expandLabel", "expandText", "whitelisting", "options",
    "typed",    "submit",      "resend",      "continue",   "html"};

/// What a screen shows, read from its views: the `screen` event. Members that the screen does
/// not show are left out.
[[nodiscard]] JSON screenEvent(ChallengeViewController& screen);

/// How a screen is meant to be held: "PORTRAIT" or "LANDSCAPE"; a page is shown in either.
[[nodiscard]] std::string_view orientationOf(const ChallengeViewController& screen);

} // namespace korvane::cardholder
