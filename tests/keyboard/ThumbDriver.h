#pragma once

#include "Platform/View/UITextField.h"
#include "Platform/View/UIWindow.h"
#include "keyboard/SecKeyboardInputViewController.h"
#include "tests/support/SimulatedPlatform.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// All keys of a page, those of inner rows too, from top left to bottom right.
[[nodiscard]] std::vector<std::shared_ptr<KeyboardButton>> keysOf(const KeyboardLayout& layout);
/// The caption of a key, or its identifier if it has one.
[[nodiscard]] std::string nameOf(const KeyboardButton& key);
/// Where touches count for a key, in the layout's coordinates, told from its frame and insets alone.
[[nodiscard]] CGRect touchArea(const KeyboardButton& key, const KeyboardLayout& layout);

/// A telephone or a tablet in virtual time.
class Device {
public:
    explicit Device(CGSize screen = {375, 667}) {
        platform.script().bounds = {{0, 0}, screen};
        platform.script().mainBundlePath = KORVANE_MAIN_BUNDLE;
    }

    SimulatedPlatform platform;
};

/// A screen with one field, the keyboard below it, and the thumbs of whoever types. Keys are told by their
/// names.
class ThumbDriver : public Device {
public:
    explicit ThumbDriver(UIKeyboardType type = UIKeyboardType::defaultType, CGSize screen = {375, 667});
    ~ThumbDriver();

    /// Ends editing and begins it again.
    void editAgain();
    /// The device is turned.
    void turn();

    [[nodiscard]] CustomKeyboard& keyboard() const { return *controller->customKeyboard(); }
    [[nodiscard]] KeyboardLayout& page() const { return *keyboard().getCurrentKeyboardLayout(); }
    [[nodiscard]] std::shared_ptr<KeyboardButton> key(std::string_view name) const;
    [[nodiscard]] const std::string& text() const { return field->text(); }

    // Thumbs, by number.
    void press(int thumb, std::string_view key) { pressAt(thumb, middle(key)); }
    void slide(int thumb, std::string_view key) { slideTo(thumb, middle(key)); }
    void pressAt(int thumb, CGPoint inWindow);
    void slideTo(int thumb, CGPoint inWindow);
    void lift(int thumb) { send({{thumb, UITouchPhase::ended}}); }
    void cancel(int thumb) { send({{thumb, UITouchPhase::cancelled}}); }
    void liftTogether(int thumb, int other) {
        send({{thumb, UITouchPhase::ended}, {other, UITouchPhase::ended}});
    }
    void tap(std::string_view key);
    void hold(std::string_view key, double seconds);
    void wait(double seconds) { platform.runFor(Seconds{seconds}); }
    /// Taps and waits: "q", "ShiftOff", and "+0.6" for a wait; parted by blanks.
    void play(std::string_view steps);

    [[nodiscard]] CGPoint middle(std::string_view key) const;

    std::shared_ptr<UIWindow> window;
    std::shared_ptr<UITextField> field;
    std::shared_ptr<SecKeyboardInputViewController> controller;

private:
    class FieldDelegate;

    void send(const std::vector<std::pair<int, UITouchPhase>>& news);

    std::shared_ptr<FieldDelegate> delegate_;
    std::map<int, CGPoint> thumbs_;
};

} // namespace korvane
