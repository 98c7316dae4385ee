#include "tests/keyboard/ThumbDriver.h"

#include "keyboard/KeyPop.h"

namespace korvane {
namespace {

using testing::IsEmpty;
/// What a layout reports, as text.
struct Reports final : KeyboardLayoutDelegate {
    void keyboardLayoutDidKeyPressStart(KeyboardLayout&, const Button& button) override {
        lines.push_back("start " + nameOf(*button));
    }
    void keyboardLayoutDidKeyPressEnd(KeyboardLayout&, const Button& button) override {
        lines.push_back("end " + nameOf(*button));
    }
    void keyboardLayoutDidDraggedIn(KeyboardLayout&, const Button& from, const Button& to) override {
        lines.push_back(nameOf(*from) + " to " + nameOf(*to));
    }
    void keyboardLayoutDidTouchesBegin(KeyboardLayout&, const UITouches& touches) override {
        lines.push_back("began " + std::to_string(touches.size()));
    }
    void keyboardLayoutDidTouchesMove(KeyboardLayout&, const UITouches& touches) override {
        lines.push_back("moved " + std::to_string(touches.size()));
    }
    void keyboardLayoutDidTouchesEnd(KeyboardLayout&, const UITouches& touches) override {
        lines.push_back("ended " + std::to_string(touches.size()));
    }
    void keyboardLayoutDidTouchesCancel(KeyboardLayout&, const UITouches& touches) override {
        lines.push_back("cancelled " + std::to_string(touches.size()));
    }

    std::vector<std::string> lines;
};

/// Each row tells what a page of small letters reports while thumbs play on it.
TEST(KeyboardLayout, ReportsTouchesAndWhatTheyPress) {
    struct Row {
        const char* name;
        const char* steps;
        std::vector<std::string> reports;
        const char* stepsWithoutTyping = "";
    };
    const Row rows[] = {
        {"released in their order",
         "1:q 2:p 1^ 2^",
         {"began 1", "start q", "began 1", "start p", "ended 1", "end q", "ended 1", "end p"}},
        {"counts for the key under the thumb at its end",
         "1:q 1:w 1:above 1^",
         {"began 1", "start q", "moved 1", "q to w", "moved 1", "ended 1", "end w"}},
        {"cancelled: presses nothing", "1:q 1!", {"began 1", "start q", "cancelled 1"}},
        {"typing is off: touches alone",
         "1:q",
         {"began 1", "start q", "began 1", "moved 1", "ended 1", "ended 1"},
         "2:w 1:e 2^ 1^"}};
    for (const bool isAlone : {false, true})
        for (const Row& row : rows) {
            SCOPED_TRACE(testing::Message() << row.name << (isAlone ? ", on a page in no keyboard" : ""));
            ThumbDriver thumbs;
            thumbs.keyboard().switchToLetters(Shift::Off);
            const CustomKeyboardLayout others;
            KeyboardLayout& page = isAlone ? *others.lowercase() : thumbs.page();
            if (isAlone) thumbs.window->addSubview(others.lowercase());
            if (isAlone) page.setFrame(thumbs.keyboard().convertTo(nullptr, thumbs.keyboard().bounds()));
            const auto reports = std::make_shared<Reports>();
            page.setDelegate(reports);
            thumbs.play(row.steps);
            page.setTypingEnabled(false);
            thumbs.play(row.stepsWithoutTyping);
            EXPECT_EQ(reports->lines, row.reports);
            EXPECT_THAT(page.currentTouches(), IsEmpty());
        }
}

TEST(KeyboardLayout, HiddenKeyKeepsItsPlaceAndDoesNotReact) {
    ThumbDriver thumbs(UIKeyboardType::asciiCapableNumberPad);
    EXPECT_EQ(thumbs.key("0")->frame().origin.x, thumbs.key("8")->frame().origin.x);
    thumbs.play("1:-");
    EXPECT_THAT(thumbs.page().currentTouches(), IsEmpty());
    thumbs.play("1:0 1^");
    EXPECT_EQ(thumbs.text(), "");
}

/// Fast typists press a key before they have released the one before: a letter must not be swallowed when the
/// case changes in between. Any other change puts a key under the thumb that nobody aimed at.
TEST(KeyboardLayout, ThumbsStayDownWhenTheCaseChangesUnderThemAndAreDroppedOnOtherPages) {
    struct Row {
        const char* name;
        const char* steps;
        const char* text;
        void (*change)(CustomKeyboard&) = [](CustomKeyboard&) {};
        const char* stepsAfter = "";
    };
    const Row rows[] = {
        {"capital, then the next letter rolls over", "1:H 2:E 1^ 3:l 2^ 3^", "Hel"},
        {"both go up at once", "1:H 2:E 12^", "He"},
        {"slides on in the other case", "1:H 2:E 1^ 2:w 2^", "Hw"},
        {"is cancelled in the other case", "1:H 2:E 1^ 2! l", "Hl"},
        {"numbers", "1:A Numbers 1^ 2", "2"},
        {"numbers, and slides there", "1:A Numbers 1:/ 1^ 2", "2"},
        {"numbers and back", "1:Q Numbers Letters 1^ w", "w"},
        {"numbers, as both go up at once", "1:Numbers 2:E 12^", ""},
        {"same page again", "1:Q", "Q", [](CustomKeyboard& keyboard) { keyboard.capitalize(); }, "1^"},
        {"reloaded", "1:Q", "", [](CustomKeyboard& keyboard) { keyboard.reload(kOnce); }, "1:W 1^"},
        {"pages made anew", "1:Q", "", [](CustomKeyboard& keyboard) { keyboard.reload(); }, "1:W 1^"},
        {"reloaded: ends no other thumb's hold", "A b c d 1:e", "A",
         [](CustomKeyboard& keyboard) { keyboard.reload(kOff); }, "2:Backspace +0.65 1^ +0.1 2^"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ThumbDriver thumbs;
        thumbs.play(row.steps);
        row.change(thumbs.keyboard());
        thumbs.play(row.stepsAfter);
        EXPECT_EQ(thumbs.text(), row.text);
        thumbs.keyboard().enumerateKeyboardLayouts([](KeyboardLayout& layout) {
            EXPECT_THAT(layout.currentTouches(), IsEmpty());
            EXPECT_EQ(layout.viewWithTag(KeyboardButtonPopupViewTag), nullptr);
        });
    }
}

TEST(KeyboardLayout, KeysAreFoundAddedAndRemovedByTheirPlaces) {
    ThumbDriver thumbs;
    KeyboardLayout& page = thumbs.page();
    const auto name = [&](std::size_t row, std::size_t place) {
        const auto key = page.getKeyboardButton(row, place);
        return key ? nameOf(*key) : "none";
    };
    EXPECT_EQ(name(0, 9), "P");
    EXPECT_EQ(name(0, 10), "none");
    EXPECT_EQ(name(4, 0), "none");
    EXPECT_EQ(name(2, 1), "none") << "that is a row";
    EXPECT_EQ(page.getKeyboardButton("Backspace"), page.getKeyboardButton(2, 2));
    EXPECT_EQ(page.getKeyboardButton("Globe"), nullptr);

    const auto extra = std::make_shared<KeyboardButton>(KeyboardButtonType::Key("!"));
    page.addKeyboardButton(extra, 4, 0);
    EXPECT_EQ(extra->superview(), nullptr);
    page.addKeyboardButton(extra, 0, 99);
    EXPECT_EQ(name(0, 10), "!");
    thumbs.play("!");
    EXPECT_EQ(thumbs.text(), "!");
    page.removeKeyboardButton(0, 99);
    page.removeKeyboardButton(0, 10);
    EXPECT_EQ(name(0, 10), "none");
    EXPECT_EQ(extra->superview(), nullptr);
}

/// The pop-ups that a page shows now, by the names of their keys.
std::vector<std::string> popUps(const UIView& view) {
    std::vector<std::string> names;
    for (const auto& child : view.subviews()) {
        if (const auto pop = std::dynamic_pointer_cast<KeyPop>(child))
            names.push_back(nameOf(*pop->keyboardButton()));
        else
            for (auto& name : popUps(*child))
                names.push_back(std::move(name));
    }
    return names;
}

TEST(KeyPop, ShowsWhileAThumbIsOnItsKey) {
    ThumbDriver thumbs;
    const std::pair<const char*, std::vector<std::string>> rows[] = {{"1:Q 2:W", {"Q", "W"}},
                                                                     {"1:A", {"W", "A"}},
                                                                     {"2!", {"A"}},
                                                                     {"1^ 1:Space", {}},
                                                                     {"1:Backspace", {"Backspace"}}};
    for (const auto& [steps, shown] : rows) {
        thumbs.play(steps);
        EXPECT_EQ(popUps(thumbs.page()), shown) << steps;
    }
}

TEST(KeyPop, StaysOnTheScreenAtBothEndsOfEveryRow) {
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
                const CGRect frame = pop->convertTo(nullptr, pop->bounds());
                EXPECT_GE(frame.origin.x, -kShadow) << nameOf(*key);
                EXPECT_LE(CGRectGetMaxX(frame), screen.width + kShadow) << nameOf(*key);
                const CGRect own = key->convertTo(nullptr, key->bounds());
                EXPECT_LE(frame.origin.x, own.origin.x) << nameOf(*key);
                EXPECT_GE(CGRectGetMaxX(frame), CGRectGetMaxX(own)) << nameOf(*key);
                key->showKeyPop(false);
            }
        }
    }
}

/// What assistive technology is told of a tree.
std::vector<std::string> told(const UIView& view) {
    std::vector<std::string> lines;
    const bool isTold =
        view.accessibilityRole() != UIAccessibilityRole::none || !view.accessibilityLabel().empty();
    if (isTold)
        lines.push_back(std::to_string(static_cast<int>(view.accessibilityRole())) +
                        view.accessibilityLabel());
    for (const auto& child : view.subviews())
        for (auto& line : told(*child))
            lines.push_back(std::move(line));
    return lines;
}

TEST(KeyPop, AssistiveTechnologyHearsOfKeysAndNotOfPresses) {
    for (const auto type : {UIKeyboardType::defaultType, UIKeyboardType::asciiCapableNumberPad}) {
        ThumbDriver thumbs(type);
        const auto before = told(*thumbs.window);
        EXPECT_GE(before.size(), keysOf(thumbs.page()).size());
        for (const auto& key : keysOf(thumbs.page())) {
            if (key->isHidden()) continue;
            thumbs.play("1:" + nameOf(*key));
            EXPECT_EQ(told(*thumbs.window), before) << nameOf(*key);
            thumbs.cancel(1);
        }
    }
}

TEST(KeyboardButton, EveryNamedColourAndPictureIsThere) {
    const ThumbDriver thumbs;
    for (const char* name :
         {"velka_sdk_kb_bg", "velka_sdk_kb_button", "velka_sdk_kb_button2", "velka_sdk_kb_keytap"})
        EXPECT_TRUE(keyboardColor(name)) << name;
    for (const char* name :
         {"velka_sdk_kb_press_bg", "velka_sdk_kb_press_bg_left", "velka_sdk_kb_press_bg_right"})
        EXPECT_NE(keyboardImage(name), nullptr) << name;
    EXPECT_NE(thumbs.controller->customToolBar()->buttonClose()->image(ControlState::normal), nullptr);
    thumbs.keyboard().enumerateKeyboardLayouts([](KeyboardLayout& layout) {
        for (const auto& key : keysOf(layout))
            EXPECT_EQ(key->type().kind() == KeyboardButtonType::Kind::Image, key->type().image() != nullptr);
    });
}

TEST(KeyboardButton, LowercaseCaptionsSitHigher) {
    ThumbDriver thumbs;
    EXPECT_EQ(thumbs.key("Q")->textLabel()->frame().origin.y, 0);
    thumbs.keyboard().switchToLetters(Shift::Off);
    thumbs.page().layoutIfNeeded();
    EXPECT_EQ(thumbs.key("q")->textLabel()->frame().origin.y, -2);
    EXPECT_EQ(thumbs.key("q")->textLabel()->bounds().size, thumbs.key("q")->bounds().size);
    const auto shift = thumbs.key("ShiftOff");
    EXPECT_EQ(shift->imageView()->bounds().size, (CGSize{20, 20}));
    EXPECT_EQ(shift->imageView()->center().x, shift->bounds().size.width / 2);
}

} // namespace
} // namespace korvane
