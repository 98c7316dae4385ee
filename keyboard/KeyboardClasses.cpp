#include "keyboard/KeyboardClasses.h"

#include "Platform/View/UIStoryboard.h"
#include "keyboard/CustomKeyboard.h"

namespace korvane {

namespace {

[[noreturn]] std::shared_ptr<NSObject> unavailable() {
    fatalError("init(coder:) has not been implemented");
}

} // namespace

void registerKeyboardClasses() {
    UIStoryboard::registerClass("CustomKeyboard", [] { return CustomKeyboard::make(); });
    UIStoryboard::registerClass("CustomToolBar", unavailable);
    UIStoryboard::registerClass("SecKeyboardInputViewController", unavailable);
}

} // namespace korvane
