#include "tests/keyboard/ThumbDriver.h"

namespace korvane {
namespace {

struct StateRow {
    const char* name;
    State from;
    const char* steps;
    State to;
};

class StateTable : public testing::TestWithParam<StateRow> {};

TEST_P(StateTable, KeysLeadToTheState) {
    ThumbDriver thumbs;
    thumbs.keyboard().setKeyboardLayoutState(GetParam().from);
    thumbs.play(GetParam().steps);
    EXPECT_EQ(thumbs.state(), GetParam().to);
    EXPECT_EQ(thumbs.keyboard().subviews().size(), 1U);
    EXPECT_EQ(thumbs.keyboard().subviews().front().get(), &thumbs.page());
}

INSTANTIATE_TEST_SUITE_P(
    CustomKeyboard, StateTable,
    testing::Values(
        StateRow{"OneTapGivesOneCapital", kOff, "ShiftOff", kOnce},
        StateRow{"SecondTapJustInTimeLocks", kOff, "ShiftOff +0.49 ShiftOnce", kOn},
        StateRow{"SecondTapTooLateGoesBack", kOff, "ShiftOff +0.51 ShiftOnce", kOff},
        StateRow{"TapThatGoesBackOpensAWindow", kOff, "ShiftOff +0.51 ShiftOnce +0.4 ShiftOff", kOn},
        StateRow{"WindowOfTheTapThatGoesBackEnds", kOff, "ShiftOff +0.51 ShiftOnce +0.51 ShiftOff", kOnce},
        StateRow{"LockLeavesNoWindow", kOff, "ShiftOff ShiftOnce ShiftOn", kOff},
        StateRow{"TapOnLockedCapitalsOpensNoWindow", kOn, "ShiftOn ShiftOff", kOnce},
        StateRow{"FirstPageHasNoWindow", kOnce, "ShiftOnce", kOff},
        StateRow{"LetterEndsOneCapital", kOnce, "Q", kOff},
        StateRow{"LetterKeepsTheWindowOpen", kOff, "ShiftOff Q +0.4 ShiftOff", kOn},
        StateRow{"LetterKeepsLockedCapitals", kOn, "Q W", kOn},
        StateRow{"SpaceReturnAndBackspaceKeepOneCapital", kOnce, "Space Return Backspace", kOnce},
        StateRow{"LockedCapitalsToNumbersAndBack", kOn, "Numbers Letters", kOff},
        StateRow{"OneCapitalToSymbolsAndLetters", kOnce, "Numbers 1 Symbols Letters", kOff},
        StateRow{"SymbolsToNumbers", State::Symbols(), "Numbers", State::Numbers()},
        StateRow{"NumbersToSymbols", State::Numbers(), "1 Symbols", State::Symbols()},
        StateRow{"PadKeepsPad", State::NumberPad(), "1 0 Backspace", State::NumberPad()}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(CustomKeyboard, LockedCapitalsStayWhileAWindowIsOpen) {
    ThumbDriver thumbs;
    thumbs.keyboard().switchToLetters(Shift::Off);
    thumbs.play("ShiftOff");
    thumbs.keyboard().switchToLetters(Shift::On);
    thumbs.play("ShiftOn");
    EXPECT_EQ(thumbs.state(), kOn);
    thumbs.play("+0.51 ShiftOn");
    EXPECT_EQ(thumbs.state(), kOff);
}

TEST(CustomKeyboard, CompactFormsNumberTheStates) {
    const std::optional<State> states[] = {
        kOnce, kOff, kOn, State::Numbers(), State::Symbols(), State::NumberPad(), std::nullopt};
    for (int number = 0; number < 7; ++number)
        EXPECT_EQ(State::compactForm(states[number]), number);
}

/// It deletes once at its release, and repeats after 0.6 seconds: each row says how it is held and what ends
/// that, and how many of ten characters are left.
TEST(CustomKeyboard, HeldBackspaceDeletesAgainAndAgainUntilItsHoldEnds) {
    struct Row {
        const char* name;
        const char* steps;
        std::size_t left;
        void (*end)(ThumbDriver&) = [](ThumbDriver&) {};
    };
    const Row rows[] = {
        {"a tap", "Backspace", 9},
        {"held, but not long", "1:Backspace +0.4 1^", 9},
        {"just before the first repetition", "1:Backspace +0.59 1^", 9},
        {"just after it", "1:Backspace +0.61 1^", 8},
        {"two repetitions", "1:Backspace +0.75 1^", 7},
        {"six repetitions", "1:Backspace +1.15 1^", 3},
        {"cancelled", "1:Backspace +0.75 1!", 8},
        {"a second thumb comes down", "1:Backspace +0.75 2:Q", 8},
        {"another page", "1:Backspace +0.75", 8, [](ThumbDriver& who) { who.keyboard().reload(kOff); }},
        {"pages made anew", "1:Backspace +0.75", 8, [](ThumbDriver& who) { who.keyboard().reload(); }},
        {"numbers", "1:Backspace +0.75", 8,
         [](ThumbDriver& who) { who.keyboard().setKeyboardLayoutState(State::Numbers()); }},
        {"editing ends", "1:Backspace +0.75", 8, [](ThumbDriver& who) { who.field->resignFirstResponder(); }},
        {"page changes and the thumb goes up", "1:Backspace +0.75", 7, [](ThumbDriver& who) {
             who.keyboard().switchToLetters(Shift::Off);
             who.lift(1);
         }}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ThumbDriver thumbs;
        thumbs.field->setText("0123456789");
        thumbs.play(row.steps);
        row.end(thumbs);
        thumbs.wait(1);
        EXPECT_EQ(thumbs.text(), std::string("0123456789").substr(0, row.left));
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
    window->sendTouch({2, UITouchPhase::moved, {364, 140}});
    keyboard->removeFromSuperview();
    keyboard.reset();
    EXPECT_EQ(device.platform.leftAlive().timers, 0U);
}

struct RecordingDelegate final : CustomKeyboardDelegate {
    void customKeyboardKeyboardButtonPressed(CustomKeyboard&, const Button& button) override {
        calls.push_back("any " + nameOf(*button));
    }
    void customKeyboardKeyButtonPressed(CustomKeyboard&, const std::string& key) override {
        calls.push_back("key " + key);
    }
    void customKeyboardSpaceButtonPressed(CustomKeyboard&) override { calls.emplace_back("space"); }
    void customKeyboardGlobeButtonPressed(CustomKeyboard&) override { calls.emplace_back("globe"); }

    std::vector<std::string> calls;
};

/// Keys that no page has.
TEST(CustomKeyboard, IdentifierActsForEveryTypeOfKey) {
    struct Row {
        const char* name;
        State state;
        KeyboardButtonType type;
        const char* identifier;
        std::vector<std::string> calls;
    };
    const auto text = KeyboardButtonType::Text, typing = KeyboardButtonType::Key;
    const Row rows[] = {
        {"globe", kOff, text("lang"), "Globe", {"any Globe", "globe"}},
        {"unknown identifier", kOff, text("x"), "space", {"any space"}},
        {"typing key with an effect", kOff, typing("_"), "Space", {"any Space", "key _", "space"}},
        {"the same ends one capital only", kOnce, typing("_"), "Space", {"any Space", "key _"}}};
    ThumbDriver thumbs;
    const auto delegate = std::make_shared<RecordingDelegate>();
    thumbs.keyboard().setDelegate(delegate);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const auto key = std::make_shared<KeyboardButton>(
            row.type, std::nullopt, KeyboardButtonWidth::Dynamic(), nullptr, row.identifier);
        thumbs.keyboard().reload(row.state);
        thumbs.page().addKeyboardButton(key, 0, 0);
        thumbs.page().layoutIfNeeded();
        delegate->calls.clear();
        thumbs.tap(key->middleInWindow());
        EXPECT_EQ(delegate->calls, row.calls);
        thumbs.keyboard().getKeyboardLayout(row.state)->removeKeyboardButton(0, 0);
    }
}

TEST(CustomKeyboard, ReloadMakesNewPagesInTheSameState) {
    ThumbDriver thumbs;
    thumbs.keyboard().setKeyboardLayoutState(State::Symbols());
    const std::weak_ptr<KeyboardLayout> old = thumbs.keyboard().getCurrentKeyboardLayout();
    thumbs.keyboard().reload();
    EXPECT_TRUE(old.expired());
    EXPECT_EQ(thumbs.state(), State::Symbols());
    thumbs.play("€");
    EXPECT_EQ(thumbs.text(), "€");
}

} // namespace
} // namespace korvane
