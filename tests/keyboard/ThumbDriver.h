#pragma once

#include "Platform/View/UITextField.h"
#include "Platform/View/UIWindow.h"
#include "keyboard/SecKeyboardInputViewController.h"
#include "tests/support/SimulatedPlatform.h"

#include <gmock/gmock.h>

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

using Button = std::shared_ptr<KeyboardButton>;
using State = CustomKeyboardLayoutState;
using Shift = CustomKeyboardShiftState;

inline constexpr State kOnce = State::Letters(Shift::Once);
inline constexpr State kOff = State::Letters(Shift::Off);
inline constexpr State kOn = State::Letters(Shift::On);

/// All keys of a page, those of inner rows too, from top left to bottom right.
[[nodiscard]] std::vector<Button> keysOf(const KeyboardLayout& layout);
/// The caption of a key, or its identifier if it has one.
[[nodiscard]] std::string nameOf(const KeyboardButton& key);
/// Where touches count for a key, in the layout's coordinates, told from its frame and insets alone.
[[nodiscard]] CGRect touchArea(const KeyboardButton& key, const KeyboardLayout& layout);

/// A telephone or a tablet in virtual time.
struct Device {
    explicit Device(CGSize screen = {375, 667}) {
        platform.script().bounds = {{0, 0}, screen};
        platform.script().mainBundlePath = KORVANE_MAIN_BUNDLE;
    }

    SimulatedPlatform platform;
};

/// A screen with one field, the keyboard below it, and the thumbs of whoever types. Keys are
/// told by their names.
class ThumbDriver : public Device {
public:
    using Thumb = std::uint64_t;

    explicit ThumbDriver(UIKeyboardType type = UIKeyboardType::defaultType, CGSize screen = {375, 667});
    ~ThumbDriver();

    /// Ends editing and begins it again.
    void editAgain();
    /// The device is turned.
    void turn();

    [[nodiscard]] CustomKeyboard& keyboard() const { return *controller->customKeyboard(); }
    [[nodiscard]] State state() const { return keyboard().keyboardLayoutState(); }
    [[nodiscard]] KeyboardLayout& page() const { return *keyboard().getCurrentKeyboardLayout(); }
    [[nodiscard]] Button key(std::string_view name) const;
    [[nodiscard]] const std::string& text() const { return field->text(); }

    /// Steps, parted by blanks. "q" is a tap on that key and "+0.6" a wait. "1:q" presses thumb 1 on a key,
    /// or slides it there if it is down, and to "above" beyond all keys; "1^" lifts it, "12^" two at once,
    /// and "1!" cancels it.
    void play(std::string_view steps);
    void wait(double seconds) { platform.runFor(Seconds{seconds}); }

    // Thumbs, by number: down at a place or slid there, and up again.
    void touch(Thumb thumb, CGPoint inWindow);
    void lift(Thumb thumb) { end({thumb}, UITouchPhase::ended); }
    void cancel(Thumb thumb) { end({thumb}, UITouchPhase::cancelled); }
    void tap(CGPoint inWindow);

    std::shared_ptr<UIWindow> window = std::make_shared<UIWindow>();
    std::shared_ptr<UITextField> field = std::make_shared<UITextField>();
    std::shared_ptr<SecKeyboardInputViewController> controller =
        std::make_shared<SecKeyboardInputViewController>();

private:
    void edit();
    void end(const std::vector<Thumb>& thumbs, UITouchPhase phase);
    void playThumbs(const std::string& step);
    [[nodiscard]] CGPoint middle(std::string_view key) const;

    std::map<Thumb, CGPoint> thumbs_; // those that are down
};

} // namespace korvane
