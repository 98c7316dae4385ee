#include "keyboard/KeyMenu.h"
#include "tests/keyboard/ThumbDriver.h"

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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

TEST(KeyMenu, OpensWhenItsKeyIsHeldForASecond) {
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

/// Before a second has passed.
TEST(KeyMenu, DoesNotOpenOnceTheThumbHasLeft) {
    const std::pair<const char*, void (*)(MenuThumbs&)> ends[] = {
        {"lifted", [](MenuThumbs& who) { who.lift(1); }},
        {"cancelled", [](MenuThumbs& who) { who.cancel(1); }},
        {"another thumb came down", [](MenuThumbs& who) { who.play("2:q"); }},
        {"page changed", [](MenuThumbs& who) { who.keyboard().setKeyboardLayoutState(State::Symbols()); }}};
    for (const auto& [name, end] : ends) {
        SCOPED_TRACE(name);
        MenuThumbs thumbs;
        thumbs.play("1:* +0.9");
        end(thumbs);
        thumbs.wait(1);
        EXPECT_FALSE(thumbs.isOpen());
        EXPECT_EQ(thumbs.keyboard().keyMenuShowingKeyboardButton(), nullptr);
    }
}

TEST(KeyMenu, LiftingOnAnItemChoosesItAndOffAllItemsNoneIsSelected) {
    for (const auto type : {KeyMenuType::Horizontal, KeyMenuType::Vertical}) {
        MenuThumbs thumbs(Pop::yes, type);
        const KeyMenuItem& second = *thumbs.menu->items()[1];
        thumbs.play("1:* +1.2");
        thumbs.touch(1, thumbs.item(1));
        EXPECT_EQ(thumbs.menu->selectedIndex(), 1);
        EXPECT_TRUE(second.highlighted());
        EXPECT_EQ(second.titleLabel()->textColor(), UIColor::white());
        thumbs.play("1:p");
        EXPECT_EQ(thumbs.menu->selectedIndex(), -1);
        EXPECT_FALSE(second.highlighted());
        thumbs.touch(1, thumbs.item(1));
        thumbs.touch(1, thumbs.item(2));
        EXPECT_FALSE(second.highlighted());
        thumbs.lift(1);
        EXPECT_THAT(thumbs.chosen, ElementsAre("c"));
        EXPECT_FALSE(thumbs.isOpen());
        EXPECT_FALSE(thumbs.keyboard().keyMenuLocked());
        thumbs.play("+0.11 q");
        EXPECT_EQ(thumbs.text(), "q") << "the key itself types nothing";
    }
}

TEST(KeyMenu, LiftBesideAnOpenMenuLocksItAndTheNextOneClosesIt) {
    MenuThumbs thumbs;
    thumbs.lockOpen();
    EXPECT_TRUE(thumbs.isOpen());
    EXPECT_TRUE(thumbs.keyboard().keyMenuLocked());
    thumbs.play("p");
    EXPECT_FALSE(thumbs.isOpen());
    EXPECT_FALSE(thumbs.keyboard().keyMenuLocked());
    EXPECT_EQ(thumbs.text(), "") << "the tap that closes it types nothing";
    thumbs.play("p");
    EXPECT_EQ(thumbs.text(), "p") << "typing goes on at once";
    EXPECT_THAT(thumbs.chosen, IsEmpty());
}

/// The menu of a key in the top row stands over the bar above the keys.
TEST(KeyMenu, TapOnALockedMenuChooses) {
    MenuThumbs thumbs;
    thumbs.lockOpen();
    ASSERT_LT(thumbs.item(2).y, thumbs.keyboard().convertTo(nullptr, CGPoint{}).y);
    thumbs.tap(thumbs.item(2));
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
    thumbs.play("1 Letters q");
    EXPECT_EQ(thumbs.text(), "1q");
}

TEST(KeyMenu, OpensAtOnceOnAKeyWithoutAPopUpAndItsItemsLieInItApart) {
    for (const bool isRow : {true, false}) {
        MenuThumbs thumbs(Pop::no, isRow ? KeyMenuType::Horizontal : KeyMenuType::Vertical);
        thumbs.play("1:*");
        EXPECT_TRUE(thumbs.isOpen());
        EXPECT_EQ(thumbs.keyboard().keyMenuShowingKeyboardButton(), thumbs.button);
        EXPECT_GE(thumbs.menu->frame().origin.x, 0) << "at the left end of the row";
        double end = 0;
        for (const auto& item : thumbs.menu->items()) {
            const CGRect frame = item->frame();
            EXPECT_EQ(frame.size, (CGSize{40, 40}));
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
