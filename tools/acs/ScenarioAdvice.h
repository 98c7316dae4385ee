#pragma once

#include "tools/acs/Scenario.h"
#include "tools/acs/ScreenCheck.h"
#include "tools/common/CheckedText.h"

namespace korvane::acs {

/// Gathers warnings about a step that can be played and surely is not what was meant: a screen that the
/// library refuses, an answer that the screen cannot give, members without effect.
/// @param value  the step in its file.
void adviseOnStep(tools::CheckedText& text, const tools::CheckedValue& value, const Step& step,
                  MessagePlace place);

/// The same for the status of an ending.
void adviseOnStatus(const tools::CheckedValue& status);

} // namespace korvane::acs
