#pragma once

#include "Platform/View/UIStoryboard.h"

namespace korvane {

/// The scene of the ACS's own page.
inline constexpr const char* kHtmlChallengeScene = "htmlChallengeVc";

/// The storyboard of all challenge screens, from the library's resources, with the classes known that it
/// names. Main queue only.
/// @throws UIStoryboardError resourceMissing or resourceBroken.
[[nodiscard]] UIStoryboard challengeStoryboard();

} // namespace korvane
