#include "tests/keyboard/ThumbDriver.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using State = CustomKeyboardLayoutState;
using Shift = CustomKeyboardShiftState;

constexpr State kOnce = State::Letters(Shift::Once);
constexpr State kOff = State::Letters(Shift::Off);
constexpr State kOn = State::Letters(Shift::On);

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
    EXPECT_EQ(thumbs.keyboard().keyboardLayoutState(), GetParam().to);
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
        StateRow{"SpaceKeepsOneCapital", kOnce, "Space", kOnce},
        StateRow{"ReturnKeepsOneCapital", kOnce, "Return", kOnce},
        StateRow{"BackspaceKeepsOneCapital", kOnce, "Backspace", kOnce},
        StateRow{"OneCapitalToNumbers", kOnce, "Numbers", State::Numbers()},
        StateRow{"LockedCapitalsToNumbersAndBack", kOn, "Numbers Letters", kOff},
        StateRow{"NumbersToSymbols", kOff, "Numbers Symbols", State::Symbols()},
        StateRow{"SymbolsToNumbers", State::Symbols(), "Numbers", State::Numbers()},
        StateRow{"SymbolsToLetters", State::Symbols(), "Letters", kOff},
        StateRow{"DigitKeepsNumbers", State::Numbers(), "1", State::Numbers()},
        StateRow{"PadKeepsPad", State::NumberPad(), "1 0 Backspace", State::NumberPad()}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(CustomKeyboard, LockedCapitalsStayWhileAWindowIsOpen) {
    ThumbDriver thumbs;
    thumbs.keyboard().switchToLetters(Shift::Off);
    thumbs.tap("ShiftOff");
    thumbs.keyboard().switchToLetters(Shift::On);
    thumbs.tap("ShiftOn");
    EXPECT_EQ(thumbs.keyboard().keyboardLayoutState(), kOn);
    thumbs.play("+0.51 ShiftOn");
    EXPECT_EQ(thumbs.keyboard().keyboardLayoutState(), kOff);
}

TEST(CustomKeyboard, CompactFormsNumberTheStates) {
    const std::array<std::optional<State>, 7> states{
        kOnce, kOff, kOn, State::Numbers(), State::Symbols(), State::NumberPad(), std::nullopt};
    for (std::size_t index = 0; index < states.size(); ++index)
        EXPECT_EQ(State::compactForm(states[index]), static_cast<int>(index));
}

struct HoldRow {
    const char* name;
    double seconds;
    int deletions;
};

TEST(CustomKeyboard, HeldBackspaceDeletesAgainAndAgainAndOnceAtItsRelease) {
    constexpr std::array rows{HoldRow{"a tap", 0, 1},
                              HoldRow{"held, but not long", 0.4, 1},
                              HoldRow{"just before the first repetition", 0.59, 1},
                              HoldRow{"just after it", 0.61, 2},
                              HoldRow{"two repetitions", 0.75, 3},
                              HoldRow{"six repetitions", 1.15, 7}};
    for (const HoldRow& row : rows) {
        SCOPED_TRACE(row.name);
        ThumbDriver thumbs;
        thumbs.field->setText("0123456789");
        thumbs.hold("Backspace", row.seconds);
        thumbs.wait(1);
        EXPECT_EQ(thumbs.text().size(), static_cast<std::size_t>(10 - row.deletions));
        EXPECT_EQ(thumbs.platform.leftAlive().timers, 0U);
    }
}

/// What ends the hold after 0.75 seconds, two repetitions: each row says how much text is left of ten
/// characters.
TEST(CustomKeyboard, WhateverEndsAHoldEndsItsRepetitions) {
    struct Row {
        const char* name;
        void (*end)(ThumbDriver&);
        std::string left;
    };
    const std::array rows{
        Row{"cancelled", [](ThumbDriver& thumbs) { thumbs.cancel(0); }, "01234567"},
        Row{"a second thumb comes down", [](ThumbDriver& thumbs) { thumbs.press(1, "Q"); }, "01234567"},
        Row{"keyboard reloaded", [](ThumbDriver& thumbs) { thumbs.keyboard().reload(kOff); }, "01234567"},
        Row{"pages made anew", [](ThumbDriver& thumbs) { thumbs.keyboard().reload(); }, "01234567"},
        Row{"editing ends", [](ThumbDriver& thumbs) { thumbs.field->resignFirstResponder(); }, "01234567"},
        Row{"page changes and the thumb goes up",
            [](ThumbDriver& thumbs) {
                thumbs.keyboard().switchToLetters(Shift::Off);
                thumbs.lift(0);
            },
            "0123456"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ThumbDriver thumbs;
        thumbs.field->setText("0123456789");
        thumbs.press(0, "Backspace");
        thumbs.wait(0.75);
        row.end(thumbs);
        thumbs.wait(1);
        EXPECT_EQ(thumbs.text(), row.left);
        EXPECT_EQ(thumbs.platform.leftAlive().timers, 0U);
    }
}

TEST(CustomKeyboard, NoTimerOutlivesIt) {
    Device device;
    auto keyboard = CustomKeyboard::make(CGRect{{0, 0}, {375, 216}});
    const auto window = std::make_shared<UIWindow>();
    window->addSubview(keyboard);
    const auto touch = [&](std::uint64_t thumb, UITouchPhase phase, CGPoint at) {
        window->sendTouch({thumb, phase, at});
    };
    touch(1, UITouchPhase::began, {10, 140});
    touch(1, UITouchPhase::ended, {10, 140});  // shift: its window is open
    touch(2, UITouchPhase::began, {365, 140}); // backspace is held
    ASSERT_EQ(device.platform.leftAlive().timers, 2U);
    window->sendTouch({2, UITouchPhase::moved, {364, 140}});
    keyboard->removeFromSuperview();
    keyboard.reset();
    EXPECT_EQ(device.platform.leftAlive().timers, 0U);
}

class RecordingDelegate final : public CustomKeyboardDelegate {
public:
    void customKeyboardKeyboardButtonPressed(CustomKeyboard& /*keyboard*/,
                                             const std::shared_ptr<KeyboardButton>& button) override {
        calls.push_back("any " + nameOf(*button));
    }
    void customKeyboardKeyButtonPressed(CustomKeyboard& /*keyboard*/, const std::string& key) override {
        calls.push_back("key " + key);
    }
    void customKeyboardSpaceButtonPressed(CustomKeyboard& /*keyboard*/) override {
        calls.emplace_back("space");
    }
    void customKeyboardGlobeButtonPressed(CustomKeyboard& /*keyboard*/) override {
        calls.emplace_back("globe");
    }

    std::vector<std::string> calls;
};

/// Keys that no page has.
TEST(CustomKeyboard, IdentifierActsForEveryTypeOfKey) {
    const auto key = [](KeyboardButtonType type, const char* identifier) {
        return std::make_shared<KeyboardButton>(std::move(type), std::nullopt, KeyboardButtonWidth::Dynamic(),
                                                nullptr, identifier);
    };
    struct Row {
        const char* name;
        State state;
        std::shared_ptr<KeyboardButton> key;
        std::vector<std::string> calls;
    };
    ThumbDriver thumbs;
    const auto delegate = std::make_shared<RecordingDelegate>();
    thumbs.keyboard().setDelegate(delegate);
    const std::array rows{
        Row{"globe", kOff, key(KeyboardButtonType::Text("lang"), "Globe"), {"any Globe", "globe"}},
        Row{"unknown identifier", kOff, key(KeyboardButtonType::Text("x"), "space"), {"any space"}},
        Row{"typing key with an effect",
            kOff,
            key(KeyboardButtonType::Key("_"), "Space"),
            {"any Space", "key _", "space"}},
        Row{"typing key with an effect ends one capital only",
            kOnce,
            key(KeyboardButtonType::Key("_"), "Space"),
            {"any Space", "key _"}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        thumbs.keyboard().reload(row.state);
        thumbs.page().addKeyboardButton(row.key, 0, 0);
        delegate->calls.clear();
        thumbs.page().layoutIfNeeded();
        thumbs.pressAt(1, row.key->convertTo(nullptr, CGPoint{1, 1}));
        thumbs.lift(1);
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
    EXPECT_EQ(thumbs.keyboard().keyboardLayoutState(), State::Symbols());
    thumbs.tap("€");
    EXPECT_EQ(thumbs.text(), "€");
}

} // namespace
} // namespace korvane
