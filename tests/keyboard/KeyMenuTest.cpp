#include "keyboard/KeyMenu.h"
#include "tests/keyboard/ThumbDriver.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using State = CustomKeyboardLayoutState;
using Shift = CustomKeyboardShiftState;

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
    [[nodiscard]] CGPoint item(std::size_t index) const {
        return menu->items()[index]->convertTo(nullptr, CGPoint{20, 20});
    }
    /// Opens the menu and lets it be locked open.
    void lockOpen() {
        press(1, "*");
        wait(1.2);
        lift(1);
    }

    std::shared_ptr<KeyMenu> menu;
    std::shared_ptr<KeyboardButton> button;
    std::vector<std::string> chosen;
};

TEST(KeyMenu, OpensWhenItsKeyIsHeldForASecond) {
    MenuThumbs thumbs;
    thumbs.press(1, "*");
    thumbs.wait(0.99);
    EXPECT_FALSE(thumbs.isOpen());
    EXPECT_NE(thumbs.page().viewWithTag(KeyboardButtonPopupViewTag), nullptr);
    thumbs.wait(0.02);
    EXPECT_TRUE(thumbs.isOpen());
    EXPECT_EQ(thumbs.page().viewWithTag(KeyboardButtonPopupViewTag), nullptr);
    EXPECT_TRUE(thumbs.page().typingEnabled());
    thumbs.wait(0.11);
    EXPECT_FALSE(thumbs.page().typingEnabled());
}

TEST(KeyMenu, OpensAtOnceOnAKeyWithoutAPopUp) {
    MenuThumbs thumbs(Pop::no);
    thumbs.press(1, "*");
    EXPECT_TRUE(thumbs.isOpen());
    EXPECT_EQ(thumbs.keyboard().keyMenuShowingKeyboardButton(), thumbs.button);
}

/// Before a second has passed.
TEST(KeyMenu, DoesNotOpenOnceTheThumbHasLeft) {
    const std::array<std::pair<const char*, void (*)(MenuThumbs&)>, 4> ends{
        {{"lifted", [](MenuThumbs& who) { who.lift(1); }},
         {"cancelled", [](MenuThumbs& who) { who.cancel(1); }},
         {"another thumb came down", [](MenuThumbs& who) { who.press(2, "q"); }},
         {"page changed", [](MenuThumbs& who) { who.keyboard().setKeyboardLayoutState(State::Symbols()); }}}};
    for (const auto& [name, end] : ends) {
        SCOPED_TRACE(name);
        MenuThumbs fresh;
        fresh.press(1, "*");
        fresh.wait(0.9);
        end(fresh);
        fresh.wait(1);
        EXPECT_FALSE(fresh.isOpen());
        EXPECT_EQ(fresh.keyboard().keyMenuShowingKeyboardButton(), nullptr);
    }
}

TEST(KeyMenu, SlidingOntoAnItemAndLiftingChoosesIt) {
    for (const auto type : {KeyMenuType::Horizontal, KeyMenuType::Vertical}) {
        MenuThumbs thumbs(Pop::yes, type);
        thumbs.press(1, "*");
        thumbs.wait(1.2);
        thumbs.slideTo(1, thumbs.item(1));
        EXPECT_EQ(thumbs.menu->selectedIndex(), 1);
        EXPECT_TRUE(thumbs.menu->items()[1]->highlighted());
        EXPECT_EQ(thumbs.menu->items()[1]->titleLabel()->textColor(), UIColor::white());
        thumbs.slideTo(1, thumbs.item(2));
        EXPECT_FALSE(thumbs.menu->items()[1]->highlighted());
        thumbs.lift(1);
        EXPECT_THAT(thumbs.chosen, ElementsAre("c"));
        EXPECT_FALSE(thumbs.isOpen());
        EXPECT_FALSE(thumbs.keyboard().keyMenuLocked());
        EXPECT_EQ(thumbs.text(), "") << "the key itself types nothing then";
        thumbs.wait(0.11);
        thumbs.tap("q");
        EXPECT_EQ(thumbs.text(), "q");
    }
}

TEST(KeyMenu, SlidingOffAllItemsSelectsNone) {
    MenuThumbs thumbs;
    thumbs.press(1, "*");
    thumbs.wait(1.2);
    thumbs.slideTo(1, thumbs.item(0));
    thumbs.slide(1, "p");
    EXPECT_EQ(thumbs.menu->selectedIndex(), -1);
    EXPECT_FALSE(thumbs.menu->items()[0]->highlighted());
}

TEST(KeyMenu, LiftBesideAnOpenMenuLocksItAndTheNextOneClosesIt) {
    MenuThumbs thumbs;
    thumbs.lockOpen();
    EXPECT_TRUE(thumbs.isOpen());
    EXPECT_TRUE(thumbs.keyboard().keyMenuLocked());
    thumbs.press(1, "p");
    thumbs.lift(1);
    EXPECT_FALSE(thumbs.isOpen());
    EXPECT_FALSE(thumbs.keyboard().keyMenuLocked());
    EXPECT_EQ(thumbs.text(), "") << "the tap that closes it types nothing";
    thumbs.tap("p");
    EXPECT_EQ(thumbs.text(), "p") << "typing goes on at once";
    EXPECT_THAT(thumbs.chosen, IsEmpty());
}

/// The menu of a key in the top row stands over the bar above the keys.
TEST(KeyMenu, TapOnALockedMenuChooses) {
    MenuThumbs thumbs;
    thumbs.lockOpen();
    ASSERT_LT(thumbs.item(2).y, thumbs.keyboard().convertTo(nullptr, CGPoint{}).y);
    thumbs.pressAt(1, thumbs.item(2));
    thumbs.lift(1);
    EXPECT_THAT(thumbs.chosen, ElementsAre("c"));
    EXPECT_FALSE(thumbs.isOpen());
    thumbs.wait(0.11);
    EXPECT_TRUE(thumbs.page().typingEnabled());
}

TEST(KeyMenu, GoesWithItsPage) {
    MenuThumbs thumbs;
    thumbs.lockOpen();
    thumbs.keyboard().setKeyboardLayoutState(State::Numbers());
    EXPECT_FALSE(thumbs.isOpen());
    thumbs.tap("1");
    thumbs.tap("Letters");
    thumbs.tap("q");
    EXPECT_EQ(thumbs.text(), "1q");
}

TEST(KeyMenu, ItemsOfAMenuDoNotOverlapAndLieInIt) {
    for (const auto type : {KeyMenuType::Horizontal, KeyMenuType::Vertical}) {
        MenuThumbs thumbs(Pop::no, type);
        thumbs.press(1, "*");
        EXPECT_GE(thumbs.menu->frame().origin.x, 0) << "at the left end of the row";
        double end = 0;
        for (const auto& item : thumbs.menu->items()) {
            const CGRect frame = item->frame();
            EXPECT_EQ(frame.size, (CGSize{40, 40}));
            const bool isRow = type == KeyMenuType::Horizontal;
            EXPECT_GE(isRow ? frame.origin.x : frame.origin.y, end);
            end = isRow ? CGRectGetMaxX(frame) : CGRectGetMaxY(frame);
            EXPECT_LE(CGRectGetMaxX(frame), thumbs.menu->bounds().size.width);
            EXPECT_LE(CGRectGetMaxY(frame), thumbs.menu->bounds().size.height);
            EXPECT_EQ(item->separator() == nullptr, item == thumbs.menu->items().back());
        }
    }
}

} // namespace
} // namespace korvane
