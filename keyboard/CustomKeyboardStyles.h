#pragma once

#include "keyboard/KeyboardStyles.h"

namespace korvane {

// The named looks of the six layouts. Each is made once, at its first use, and stays as it was made then.

[[nodiscard]] const KeyboardLayoutStyle& CustomKeyboardLayoutStyle();

[[nodiscard]] const KeyboardRowStyle& CustomKeyboardRowStyle();
[[nodiscard]] const KeyboardRowStyle& CustomKeyboardFirstRowStyle();
[[nodiscard]] const KeyboardRowStyle& CustomKeyboardSecondRowStyle();
[[nodiscard]] const KeyboardRowStyle& CustomKeyboardThirdRowStyle();
[[nodiscard]] const KeyboardRowStyle& CustomKeyboardChildRowStyle();
[[nodiscard]] const KeyboardRowStyle& CustomKeyboardFourthRowStyle();
[[nodiscard]] const KeyboardRowStyle& CustomKeyboardPadRowStyle();

[[nodiscard]] const KeyboardButtonStyle& CustomKeyboardKeyButtonStyle();
[[nodiscard]] const KeyboardButtonStyle& CustomKeyboardLeftKeyButtonStyle();
[[nodiscard]] const KeyboardButtonStyle& CustomKeyboardRightKeyButtonStyle();
[[nodiscard]] const KeyboardButtonStyle& CustomKeyboardLowercaseKeyButtonStyle();
[[nodiscard]] const KeyboardButtonStyle& CustomKeyboardLowercaseLeftKeyButtonStyle();
[[nodiscard]] const KeyboardButtonStyle& CustomKeyboardLowercaseRightKeyButtonStyle();
[[nodiscard]] const KeyboardButtonStyle& CustomKeyboardKeyPadButtonStyle();
[[nodiscard]] const KeyboardButtonStyle& CustomKeyboardSpaceButtonStyle();
[[nodiscard]] const KeyboardButtonStyle& CustomKeyboardBackspaceButtonStyle();
[[nodiscard]] const KeyboardButtonStyle& CustomKeyboardBackspacePadButtonStyle();
[[nodiscard]] const KeyboardButtonStyle& CustomKeyboardShiftButtonStyle();
[[nodiscard]] const KeyboardButtonStyle& CustomKeyboardGlobeButtonStyle();
[[nodiscard]] const KeyboardButtonStyle& CustomKeyboardReturnButtonStyle();
[[nodiscard]] const KeyboardButtonStyle& CustomKeyboardNumbersButtonStyle();

} // namespace korvane
