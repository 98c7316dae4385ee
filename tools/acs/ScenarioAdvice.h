#pragma once

#include "Platform/CheckedText.h"
#include "tools/acs/Scenario.h"
#include "tools/common/CResCheck.h"

namespace korvane::acs {

/// Gathers warnings about a step that can be played and surely is not what was meant: a screen that the
/// library refuses, an answer that the screen cannot give, members without effect.
/// @param value  the step in its file.
void adviseOnStep(CheckedText& text, const CheckedValue& value, const Step& step, tools::MessagePlace place);

/// The same for the status of an ending.
void adviseOnStatus(const CheckedValue& status);

} // namespace korvane::acs
