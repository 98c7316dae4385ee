#pragma once

#include "tools/screen/Stage.h"

namespace korvane::screen {

/// One screen in both orientations, light and dark, on three devices, each with a caption.
/// @param setting  of which text scale and keyboard count.
/// @throws as `Stage::draw`.
[[nodiscard]] QImage sheetOf(Stage& stage, const Script& script, const Setting& setting);

} // namespace korvane::screen
