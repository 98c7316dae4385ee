#include "keyboard/KeyPop.h"
#include "keyboard/KeyMenu.h"
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

TEST(KeyMenu, OpensAboveItsKeyAndHighlightsWhatIsUnderTheFinger) {
    const Device device;
    for (const KeyMenuType type : {KeyMenuType::Horizontal, KeyMenuType::Vertical}) {
        const auto page = std::make_shared<UIView>(CGRect{{0, 0}, {375, 216}});
        std::vector<std::shared_ptr<KeyMenuItem>> items;
        for (const char* title : {"a", "b", "c"})
            items.push_back(std::make_shared<KeyMenuItem>(title, KeyMenuItemStyle{}));
        const auto menu = std::make_shared<KeyMenu>(items, KeyMenuStyle{}, type);
        const auto key = std::make_shared<KeyboardButton>(KeyboardButtonType::Key("a"), KeyboardButtonStyle{},
                                                          KeyboardButtonWidth::Dynamic(), menu);
        key->setFrame({{340, 160}, {32, 42}});
        page->addSubview(key);
        key->showKeyMenu(true);
        EXPECT_TRUE(CGRectGetMaxX(menu->frame()) <= 375 && CGRectGetMaxY(menu->frame()) <= 160);
        for (const int index : {1, 0, 2, -1}) {
            const CGPoint finger =
                index < 0 ? CGPoint{1, 1} : items[static_cast<std::size_t>(index)]->middleInWindow();
            menu->updateSelection(finger, *page);
            EXPECT_EQ(menu->selectedIndex(), index);
            for (int each = 0; each < 3; ++each)
                EXPECT_EQ(items[static_cast<std::size_t>(each)]->highlighted(), each == index);
        }
        key->showKeyMenu(false);
        EXPECT_EQ(menu->superview(), nullptr);
    }
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
