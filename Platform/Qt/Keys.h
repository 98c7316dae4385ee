#pragma once

#include "Platform/View/UIWindow.h"

class QKeyEvent;

namespace korvane {

/// Carries a hardware keyboard's keys into the tree: those that move the focus or act on it, what is typed,
/// and what is pasted. A key that is held down presses once. Main queue only.
/// @return whether the key means something to a screen; it has been carried out then.
bool carryKeyPress(UIWindow& window, const QKeyEvent& event);

/// Pastes what somebody copied elsewhere into the field that is typed into.
/// @return false if there is none.
bool pasteClipboard(UIWindow& window);

/// Whether a key is for the screens, before shortcuts of the application behind them may have it.
[[nodiscard]] bool isForScreens(UIWindow& window, const QKeyEvent& event);

} // namespace korvane
