#include "keyboard/KeyMenu.h"
#include "keyboard/KeyPop.h"
#include "keyboard/KeyboardStyles.h"
#include "tests/keyboard/ThumbDriver.h"

#include <algorithm>

namespace korvane {
namespace {

using testing::ElementsAre;

enum class Pop { yes, no };

/// A keyboard with a key "*" at the left end of the top row whose menu has three items.
struct MenuThumbs : ThumbDriver {
    explicit MenuThumbs(Pop pop = Pop::yes, KeyMenuType type = KeyMenuType::Horizontal) {
        keyboard().switchToLetters(Shift::Off);
        std::vector<std::shared_ptr<KeyMenuItem>> items;
        for (const char* title : {"a", "b", "c"})
            items.push_back(std::make_shared<KeyMenuItem>(
                title, KeyMenuItemStyle{}, [this](KeyMenuItem& item) { chosen.push_back(*item.title()); }));
        menu = std::make_shared<KeyMenu>(items, KeyMenuStyle{}, type);
        KeyboardButtonStyle style;
        if (pop == Pop::yes) style.keyPopType = KeyPopType::Left;
        button = std::make_shared<KeyboardButton>(KeyboardButtonType::Key("*"), style,
                                                  KeyboardButtonWidth::Dynamic(), menu);
        page().addKeyboardButton(button, 0, 0);
        page().layoutIfNeeded();
    }

    [[nodiscard]] bool isOpen() const { return menu->superview() != nullptr; }
    [[nodiscard]] CGPoint item(std::size_t index) const { return menu->items()[index]->middleInWindow(); }
    /// Opens the menu and lets it be locked open.
    void lockOpen() { play("1:* +1.2 1^"); }

    std::shared_ptr<KeyMenu> menu;
    Button button;
    std::vector<std::string> chosen;
};

TEST(KeyMenu, OpensWhenItsKeyIsHeldForASecondAndStopsTyping) {
    MenuThumbs thumbs;
    thumbs.play("1:* +0.99");
    EXPECT_FALSE(thumbs.isOpen());
    EXPECT_NE(thumbs.page().viewWithTag(KeyboardButtonPopupViewTag), nullptr);
    thumbs.wait(0.02);
    EXPECT_TRUE(thumbs.isOpen());
    EXPECT_EQ(thumbs.page().viewWithTag(KeyboardButtonPopupViewTag), nullptr);
    EXPECT_TRUE(thumbs.page().typingEnabled());
    thumbs.wait(0.11);
    EXPECT_FALSE(thumbs.page().typingEnabled());
}

TEST(KeyMenu, DoesNotOpenOnceTheThumbHasLeft) {
    void (*const ends[])(MenuThumbs&) = {
        [](MenuThumbs& who) { who.lift(1); }, [](MenuThumbs& who) { who.cancel(1); },
        [](MenuThumbs& who) { who.play("2:q"); },
        [](MenuThumbs& who) { who.keyboard().setKeyboardLayoutState(State::Symbols()); }};
    for (const auto& end : ends) {
        MenuThumbs thumbs;
        thumbs.play("1:* +0.9");
        end(thumbs);
        thumbs.wait(1);
        EXPECT_FALSE(thumbs.isOpen()) << &end - ends;
    }
}

TEST(KeyMenu, LiftingOnAnItemChoosesItAndOffAllItemsNoneIsSelected) {
    MenuThumbs thumbs;
    const KeyMenuItem& second = *thumbs.menu->items()[1];
    thumbs.play("1:* +1.2");
    thumbs.touch(1, thumbs.item(1));
    EXPECT_EQ(thumbs.menu->selectedIndex(), 1);
    EXPECT_EQ(second.titleLabel()->textColor(), UIColor::white());
    thumbs.play("1:p");
    EXPECT_EQ(thumbs.menu->selectedIndex(), -1);
    EXPECT_EQ(second.titleLabel()->textColor(), UIColor::black());
    thumbs.touch(1, thumbs.item(2));
    thumbs.lift(1);
    EXPECT_THAT(thumbs.chosen, ElementsAre("c"));
    EXPECT_FALSE(thumbs.isOpen());
    thumbs.play("+0.11 q");
    EXPECT_EQ(thumbs.text(), "q") << "the key itself types nothing";
}

TEST(KeyMenu, LiftBesideAnOpenMenuLocksItUntilTheNextLiftOrAnotherPage) {
    MenuThumbs thumbs;
    thumbs.lockOpen();
    EXPECT_TRUE(thumbs.isOpen());
    // The menu of a key in the top row stands over the bar above the keys.
    EXPECT_LT(thumbs.item(2).y, thumbs.keyboard().convertTo(nullptr, CGPoint{}).y);
    thumbs.tap(thumbs.item(2));
    EXPECT_FALSE(thumbs.isOpen());
    thumbs.wait(0.11);
    thumbs.lockOpen();
    thumbs.play("p");
    EXPECT_FALSE(thumbs.isOpen());
    thumbs.play("p");
    EXPECT_EQ(thumbs.text(), "p") << "the tap that closes it types nothing, and the next one types at once";
    thumbs.lockOpen();
    thumbs.keyboard().setKeyboardLayoutState(State::Numbers());
    EXPECT_FALSE(thumbs.isOpen());
    thumbs.play("1 Letters q");
    EXPECT_EQ(thumbs.text(), "p1q");
    EXPECT_THAT(thumbs.chosen, ElementsAre("c"));
}

TEST(KeyMenu, OpensAtOnceOnAKeyWithoutAPopUpAndItsItemsLieInItApart) {
    for (const bool isRow : {true, false}) {
        MenuThumbs thumbs(Pop::no, isRow ? KeyMenuType::Horizontal : KeyMenuType::Vertical);
        thumbs.play("1:*");
        EXPECT_TRUE(thumbs.isOpen());
        EXPECT_GE(thumbs.menu->frame().origin.x, 0) << "at the left end of the row";
        double end = 0;
        for (const auto& item : thumbs.menu->items()) {
            const CGRect frame = item->frame();
            EXPECT_GE(isRow ? frame.origin.x : frame.origin.y, end);
            end = isRow ? CGRectGetMaxX(frame) : CGRectGetMaxY(frame);
            EXPECT_LE(CGRectGetMaxX(frame), thumbs.menu->bounds().size.width);
            EXPECT_LE(CGRectGetMaxY(frame), thumbs.menu->bounds().size.height);
        }
    }
}

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
