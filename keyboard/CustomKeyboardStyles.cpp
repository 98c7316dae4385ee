#include "keyboard/CustomKeyboardStyles.h"

namespace korvane {

namespace {

constexpr double kLowercaseRise = -2; // small letters look too low in the middle
constexpr double kImageSize = 20;
constexpr double kWordSize = 16;

KeyboardButtonStyle letterStyle(KeyPopType pop, double textOffsetY = 0) {
    KeyboardButtonStyle style;
    style.textOffsetY = textOffsetY;
    style.keyPopType = pop;
    return style;
}

KeyboardButtonStyle darkImageStyle() {
    KeyboardButtonStyle style;
    style.backgroundColor = keyboardColor("velka_sdk_kb_button2");
    style.imageSize = kImageSize;
    return style;
}

KeyboardButtonStyle wordStyle() {
    KeyboardButtonStyle style;
    style.font = UIFont::systemFont(kWordSize, UIFontWeight::light);
    return style;
}

KeyboardButtonStyle darkWordStyle() {
    KeyboardButtonStyle style = wordStyle();
    style.backgroundColor = keyboardColor("velka_sdk_kb_button2");
    return style;
}

KeyboardButtonStyle padDigitStyle() {
    KeyboardButtonStyle style = letterStyle(KeyPopType::Press);
    style.font = UIFont::systemFont(25, UIFontWeight::regular);
    return style;
}

KeyboardButtonStyle backspaceStyle() {
    KeyboardButtonStyle style = darkImageStyle();
    style.keyPopType = KeyPopType::Press;
    return style;
}

KeyboardButtonStyle padBackspaceStyle() {
    KeyboardButtonStyle style = darkImageStyle();
    style.backgroundColor = UIColor::clear();
    style.shadow.color = UIColor::clear();
    return style;
}

KeyboardRowStyle secondRowStyle() {
    KeyboardRowStyle style;
    style.leadingPadding = 22;
    style.leadingPaddingLandscape = 30;
    style.trailingPadding = 22;
    return style;
}

KeyboardRowStyle thirdRowStyle() {
    KeyboardRowStyle style;
    style.bottomPadding = 5;
    style.bottomPaddingLandscape = 4;
    style.buttonsPadding = 15;
    return style;
}

KeyboardRowStyle fourthRowStyle() {
    KeyboardRowStyle style;
    style.topPadding = 5;
    style.topPaddingLandscape = 4;
    style.bottomPadding = 4;
    style.bottomPaddingLandscape = 4;
    return style;
}

KeyboardRowStyle padRowStyle() {
    KeyboardRowStyle style;
    style.leadingPadding = 5;
    style.leadingPaddingLandscape = 30;
    style.trailingPadding = 5;
    style.topPadding = 1;
    return style;
}

KeyboardRowStyle firstRowStyle() {
    KeyboardRowStyle style;
    style.topPadding = 10;
    style.topPaddingLandscape = 6;
    return style;
}

KeyboardRowStyle childRowStyle() {
    KeyboardRowStyle style;
    style.leadingPadding = 0;
    style.trailingPadding = 0;
    return style;
}

} // namespace

const KeyboardLayoutStyle& CustomKeyboardLayoutStyle() {
    static const KeyboardLayoutStyle style;
    return style;
}

const KeyboardRowStyle& CustomKeyboardRowStyle() {
    static const KeyboardRowStyle style;
    return style;
}

const KeyboardRowStyle& CustomKeyboardFirstRowStyle() {
    static const KeyboardRowStyle style = firstRowStyle();
    return style;
}

const KeyboardRowStyle& CustomKeyboardSecondRowStyle() {
    static const KeyboardRowStyle style = secondRowStyle();
    return style;
}

const KeyboardRowStyle& CustomKeyboardThirdRowStyle() {
    static const KeyboardRowStyle style = thirdRowStyle();
    return style;
}

const KeyboardRowStyle& CustomKeyboardChildRowStyle() {
    static const KeyboardRowStyle style = childRowStyle();
    return style;
}

const KeyboardRowStyle& CustomKeyboardFourthRowStyle() {
    static const KeyboardRowStyle style = fourthRowStyle();
    return style;
}

const KeyboardRowStyle& CustomKeyboardPadRowStyle() {
    static const KeyboardRowStyle style = padRowStyle();
    return style;
}

const KeyboardButtonStyle& CustomKeyboardKeyButtonStyle() {
    static const KeyboardButtonStyle style = letterStyle(KeyPopType::Default);
    return style;
}

const KeyboardButtonStyle& CustomKeyboardLeftKeyButtonStyle() {
    static const KeyboardButtonStyle style = letterStyle(KeyPopType::Left);
    return style;
}

const KeyboardButtonStyle& CustomKeyboardRightKeyButtonStyle() {
    static const KeyboardButtonStyle style = letterStyle(KeyPopType::Right);
    return style;
}

const KeyboardButtonStyle& CustomKeyboardLowercaseKeyButtonStyle() {
    static const KeyboardButtonStyle style = letterStyle(KeyPopType::Default, kLowercaseRise);
    return style;
}

const KeyboardButtonStyle& CustomKeyboardLowercaseLeftKeyButtonStyle() {
    static const KeyboardButtonStyle style = letterStyle(KeyPopType::Left, kLowercaseRise);
    return style;
}

const KeyboardButtonStyle& CustomKeyboardLowercaseRightKeyButtonStyle() {
    static const KeyboardButtonStyle style = letterStyle(KeyPopType::Right, kLowercaseRise);
    return style;
}

const KeyboardButtonStyle& CustomKeyboardKeyPadButtonStyle() {
    static const KeyboardButtonStyle style = padDigitStyle();
    return style;
}

const KeyboardButtonStyle& CustomKeyboardSpaceButtonStyle() {
    static const KeyboardButtonStyle style = wordStyle();
    return style;
}

const KeyboardButtonStyle& CustomKeyboardBackspaceButtonStyle() {
    static const KeyboardButtonStyle style = backspaceStyle();
    return style;
}

const KeyboardButtonStyle& CustomKeyboardBackspacePadButtonStyle() {
    static const KeyboardButtonStyle style = padBackspaceStyle();
    return style;
}

const KeyboardButtonStyle& CustomKeyboardShiftButtonStyle() {
    static const KeyboardButtonStyle style = darkImageStyle();
    return style;
}

const KeyboardButtonStyle& CustomKeyboardGlobeButtonStyle() {
    return CustomKeyboardShiftButtonStyle();
}

const KeyboardButtonStyle& CustomKeyboardReturnButtonStyle() {
    static const KeyboardButtonStyle style = darkWordStyle();
    return style;
}

const KeyboardButtonStyle& CustomKeyboardNumbersButtonStyle() {
    return CustomKeyboardReturnButtonStyle();
}

} // namespace korvane
