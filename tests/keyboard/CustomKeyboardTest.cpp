#include "tests/keyboard/ThumbDriver.h"

namespace korvane {
namespace {

TEST(CustomKeyboard, KeysLeadFromStateToState) {
    struct Row {
        State from;
        const char* steps;
        State to;
    };
    const Row rows[] = {{kOff, "ShiftOff", kOnce},
                        {kOff, "ShiftOff +0.49 ShiftOnce", kOn},
                        {kOff, "ShiftOff +0.51 ShiftOnce", kOff},
                        {kOff, "ShiftOff +0.51 ShiftOnce +0.4 ShiftOff", kOn}, // going back opens a window
                        {kOff, "ShiftOff +0.51 ShiftOnce +0.51 ShiftOff", kOnce},
                        {kOff, "ShiftOff ShiftOnce ShiftOn", kOff}, // locking leaves none
                        {kOn, "ShiftOn ShiftOff", kOnce},
                        {kOnce, "ShiftOnce", kOff},
                        {kOff, "ShiftOff Q +0.4 ShiftOff", kOn}, // a letter keeps it open
                        {kOnce, "Space Return Backspace", kOnce},
                        {kOn, "Numbers Letters", kOff},
                        {kOnce, "Numbers 1 Symbols Letters", kOff},
                        {State::NumberPad(), "1 0 Backspace", State::NumberPad()}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.steps);
        ThumbDriver thumbs;
        thumbs.keyboard().setKeyboardLayoutState(row.from);
        thumbs.play(row.steps);
        EXPECT_EQ(thumbs.state(), row.to);
        EXPECT_THAT(thumbs.keyboard().subviews(),
                    testing::ElementsAre(thumbs.keyboard().getCurrentKeyboardLayout()));
    }
}

/// Each row ends a hold that has deleted twice, and says how many of ten characters are left.
TEST(CustomKeyboard, HeldBackspaceDeletesAgainAndAgainUntilItsHoldEnds) {
    struct Row {
        const char* name;
        std::size_t left;
        void (*end)(ThumbDriver&);
    };
    const Row rows[] = {{"lifted: deletes once more", 7, [](ThumbDriver& who) { who.lift(1); }},
                        {"cancelled", 8, [](ThumbDriver& who) { who.cancel(1); }},
                        {"a second thumb comes down", 8, [](ThumbDriver& who) { who.play("2:Q"); }},
                        {"another page", 8, [](ThumbDriver& who) { who.keyboard().reload(kOff); }},
                        {"editing ends", 8, [](ThumbDriver& who) { who.field->resignFirstResponder(); }}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ThumbDriver thumbs;
        thumbs.field->setText("0123456789");
        thumbs.play("1:Backspace +0.75");
        row.end(thumbs);
        thumbs.wait(1);
        EXPECT_EQ(thumbs.text().size(), row.left);
        EXPECT_EQ(thumbs.platform.leftAlive().timers, 0U);
    }
}

TEST(CustomKeyboard, NoTimerOutlivesIt) {
    Device device;
    auto keyboard = CustomKeyboard::make(CGRect{{0, 0}, {375, 216}});
    const auto window = std::make_shared<UIWindow>();
    window->addSubview(keyboard);
    // Shift is tapped, so that its window is open, and backspace is held.
    window->sendTouch({1, UITouchPhase::began, {10, 140}});
    window->sendTouch({1, UITouchPhase::ended, {10, 140}});
    window->sendTouch({2, UITouchPhase::began, {365, 140}});
    ASSERT_EQ(device.platform.leftAlive().timers, 2U);
    keyboard->removeFromSuperview();
    keyboard.reset();
    EXPECT_EQ(device.platform.leftAlive().timers, 0U);
}

/// Fast typists press a key before they have released the one before: a letter must not be swallowed when the
/// case changes in between. Any other change puts a key under the thumb that nobody aimed at.
TEST(CustomKeyboard, ThumbsStayDownWhenTheCaseChangesUnderThemAndAreDroppedOnOtherPages) {
    const std::tuple<const char*, const char*, const char*> rows[] = {
        {"capital, then the next letter rolls over", "1:H 2:E 1^ 3:l 2^ 3^", "Hel"},
        {"both go up at once", "1:H 2:E 12^", "He"},
        {"slides on in the other case", "1:H 2:E 1^ 2:w 2^", "Hw"},
        {"is cancelled in the other case", "1:H 2:E 1^ 2! l", "Hl"},
        {"counts for the key at its end, also one that acts", "A b 1:c 1:Backspace 1^ 1:Space 1:above 1^",
         "A "},
        {"numbers, and slides there", "1:A Numbers 1:/ 1^ 2", "2"},
        {"numbers and back", "1:Q Numbers Letters 1^ w", "w"},
        {"numbers, as both go up at once", "1:Numbers 2:E 12^", ""}};
    for (const auto& [name, steps, text] : rows) {
        SCOPED_TRACE(name);
        ThumbDriver thumbs;
        thumbs.play(steps);
        EXPECT_EQ(thumbs.text(), text);
        thumbs.keyboard().enumerateKeyboardLayouts([](KeyboardLayout& layout) {
            EXPECT_TRUE(layout.currentTouches().empty());
            EXPECT_EQ(layout.viewWithTag(KeyboardButtonPopupViewTag), nullptr);
        });
    }
}

/// As a new editing shows its page.
TEST(CustomKeyboard, AReloadDropsTheThumbsAndEndsNoLaterHold) {
    ThumbDriver thumbs;
    thumbs.play("A b c d 1:e");
    thumbs.keyboard().reload(kOff);
    thumbs.play("1:w 2:Backspace +0.65 1^ +0.1 2^");
    EXPECT_EQ(thumbs.text(), "A");
}

} // namespace
} // namespace korvane
