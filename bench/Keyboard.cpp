#include "bench/Keyboard.h"

#include "Platform/View/UIWindow.h"
#include "bench/LoopPlatform.h"
#include "bench/Timing.h"
#include "keyboard/SecKeyboardInputViewController.h"

#include <cstdio>

namespace korvane::bench {

namespace {

constexpr int kRepeats = 100;

struct KeyboardGiver final : UITextFieldDelegate {
    bool textFieldShouldBeginEditing(UITextField& field) override {
        controller->set(std::static_pointer_cast<UITextField>(field.shared_from_this()));
        return true;
    }

    std::shared_ptr<SecKeyboardInputViewController> controller =
        std::make_shared<SecKeyboardInputViewController>();
};

/// A field that is typed into, with the keyboard below it.
struct Typing {
    std::shared_ptr<UIWindow> window = std::make_shared<UIWindow>();
    std::shared_ptr<UIViewController> host = std::make_shared<UIViewController>();
    std::shared_ptr<UITextField> field = std::make_shared<UITextField>();
    std::shared_ptr<KeyboardGiver> giver = std::make_shared<KeyboardGiver>();

    Typing() {
        window->setRootViewController(host);
        window->makeKeyAndVisible();
        field->setFrame({{20, 100}, {200, 40}});
        field->setDelegate(giver);
        host->view()->addSubview(field);
        field->becomeFirstResponder();
        keyboard().setKeyboardLayoutState(CustomKeyboardLayoutState::Letters(CustomKeyboardShiftState::Off));
        window->layoutIfNeeded();
    }
    ~Typing() { field->resignFirstResponder(); }

    [[nodiscard]] CustomKeyboard& keyboard() const { return *giver->controller->customKeyboard(); }
};

double pressUntilText(Typing& typing) {
    const auto key = typing.keyboard().getCurrentKeyboardLayout()->getKeyboardButton(1, 3);
    const CGPoint middle = key->middleInWindow();
    typing.field->setText("");
    const double time = microsecondsOf([&] {
        for (int press = 0; press < kRepeats; ++press) {
            typing.window->sendTouch({1, UITouchPhase::began, middle});
            typing.window->sendTouch({1, UITouchPhase::ended, middle});
        }
    });
    if (typing.field->text().size() != kRepeats) fatalError("The keys do not type.");
    return time / kRepeats;
}

double hitTest(Typing& typing) {
    KeyboardLayout& page = *typing.keyboard().getCurrentKeyboardLayout();
    const CGSize size = page.bounds().size;
    int hits = 0;
    const double time = microsecondsOf([&] {
        for (int point = 0; point < kRepeats; ++point) {
            const double share = (point + 0.5) / kRepeats;
            if (page.keyboardButton({size.width * share, size.height * (1 - share)})) ++hits;
        }
    });
    if (hits != kRepeats) fatalError("The keyboard has holes.");
    return time / kRepeats;
}

} // namespace

void printKeyboard() {
    constexpr double kPagesTarget = 5000;
    constexpr double kHitTarget = 2;
    constexpr double kPressTarget = 50;
    LoopPlatform platform;
    platform.script().mainBundlePath = KORVANE_MAIN_BUNDLE;
    platform.script().bounds = {{0, 0}, {390, 844}};
    std::printf("\n%-32s %12s %12s\n", "keyboard", "korvane us", "target us");
    printLine("six pages made",
              medianOf([] { return microsecondsOf([] { static_cast<void>(CustomKeyboard::make()); }); }),
              kPagesTarget);
    Typing typing;
    printLine("hit test", medianOf([&] { return hitTest(typing); }), kHitTarget);
    printLine("key press until the text", medianOf([&] { return pressUntilText(typing); }), kPressTarget);
}

} // namespace korvane::bench
