#include "keyboard/KeyPop.h"
#include "keyboard/KeyboardStyles.h"
#include "tests/keyboard/ThumbDriver.h"

namespace korvane {
namespace {

/// The pop-ups that a page shows now, by the names of their keys.
std::string popUps(const UIView& view) {
    std::string names;
    for (const auto& child : view.subviews()) {
        const auto pop = std::dynamic_pointer_cast<KeyPop>(child);
        names += pop ? nameOf(*pop->keyboardButton()) : popUps(*child);
    }
    return names;
}

TEST(KeyPop, ShowsWhileAThumbIsOnItsKey) {
    ThumbDriver thumbs;
    const std::pair<const char*, const char*> rows[] = {
        {"1:Q 2:W", "QW"}, {"1:A", "WA"}, {"2!", "A"}, {"1^ 1:Space", ""}, {"1:Backspace", "Backspace"}};
    for (const auto& [steps, shown] : rows) {
        thumbs.play(steps);
        EXPECT_EQ(popUps(thumbs.page()), shown) << steps;
    }
}

TEST(KeyPop, StaysOnTheScreenOverItsKey) {
    constexpr double kShadow = 5.4; // at the sides of the pictures
    for (const CGSize screen : {CGSize{320, 568}, CGSize{430, 932}, CGSize{568, 320}, CGSize{932, 430}}) {
        ThumbDriver thumbs(UIKeyboardType::defaultType, screen);
        for (const State state : {kOff, State::Numbers(), State::Symbols()}) {
            thumbs.keyboard().setKeyboardLayoutState(state);
            thumbs.page().layoutIfNeeded();
            for (const auto& key : keysOf(thumbs.page())) {
                key->showKeyPop(true);
                const auto pop = thumbs.page().viewWithTag(KeyboardButtonPopupViewTag);
                if (!pop) continue;
                const double left = pop->convertTo(nullptr, CGPoint{}).x, width = pop->bounds().size.width;
                const double own = key->convertTo(nullptr, CGPoint{}).x;
                EXPECT_TRUE(left >= -kShadow && left + width <= screen.width + kShadow) << nameOf(*key);
                EXPECT_TRUE(left <= own && left + width >= own + key->bounds().size.width) << nameOf(*key);
                key->showKeyPop(false);
            }
        }
    }
}

TEST(KeyPop, EveryNamedColourAndPictureIsThere) {
    const Device device;
    for (const char* name :
         {"velka_sdk_kb_bg", "velka_sdk_kb_button", "velka_sdk_kb_button2", "velka_sdk_kb_keytap"})
        EXPECT_TRUE(keyboardColor(name)) << name;
    for (const char* name : {"velka_sdk_kb_press_bg", "velka_sdk_kb_press_bg_left",
                             "velka_sdk_kb_press_bg_right", "velka_sdk_kb_ShevronDown"})
        EXPECT_NE(keyboardImage(name), nullptr) << name;
}

/// What assistive technology is told of a tree, one line each.
std::string told(const UIView& view) {
    std::string lines;
    if (view.accessibilityRole() != UIAccessibilityRole::none || !view.accessibilityLabel().empty())
        lines = testing::PrintToString(view.accessibilityRole()) + view.accessibilityLabel() + "\n";
    for (const auto& child : view.subviews())
        lines += told(*child);
    return lines;
}

TEST(KeyPop, AssistiveTechnologyHearsOfKeysAndNotOfPresses) {
    ThumbDriver thumbs;
    const auto before = told(*thumbs.window);
    EXPECT_GE(std::ranges::count(before, '\n'), 31);
    for (const auto& key : keysOf(thumbs.page())) {
        thumbs.play("1:" + nameOf(*key));
        EXPECT_EQ(told(*thumbs.window), before) << nameOf(*key);
        thumbs.cancel(1);
    }
}

} // namespace
} // namespace korvane
