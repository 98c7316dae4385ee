#include "tests/keyboard/ThumbDriver.h"

#include "keyboard/KeyPop.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using State = CustomKeyboardLayoutState;
using Shift = CustomKeyboardShiftState;

/// What a layout reports, as text.
class Reports final : public KeyboardLayoutDelegate {
public:
    void keyboardLayoutDidKeyPressStart(KeyboardLayout& /*layout*/,
                                        const std::shared_ptr<KeyboardButton>& button) override {
        lines.push_back("start " + nameOf(*button));
    }
    void keyboardLayoutDidKeyPressEnd(KeyboardLayout& /*layout*/,
                                      const std::shared_ptr<KeyboardButton>& button) override {
        lines.push_back("end " + nameOf(*button));
    }
    void keyboardLayoutDidDraggedIn(KeyboardLayout& /*layout*/, const std::shared_ptr<KeyboardButton>& from,
                                    const std::shared_ptr<KeyboardButton>& to) override {
        lines.push_back(nameOf(*from) + " to " + nameOf(*to));
    }
    void keyboardLayoutDidTouchesBegin(KeyboardLayout& /*layout*/, const UITouches& touches) override {
        lines.push_back("began " + std::to_string(touches.size()));
    }
    void keyboardLayoutDidTouchesMove(KeyboardLayout& /*layout*/, const UITouches& touches) override {
        lines.push_back("moved " + std::to_string(touches.size()));
    }
    void keyboardLayoutDidTouchesEnd(KeyboardLayout& /*layout*/, const UITouches& touches) override {
        lines.push_back("ended " + std::to_string(touches.size()));
    }
    void keyboardLayoutDidTouchesCancel(KeyboardLayout& /*layout*/, const UITouches& touches) override {
        lines.push_back("cancelled " + std::to_string(touches.size()));
    }

    std::vector<std::string> lines;
};

/// A driver whose page reports here in place of the keyboard.
struct ReportingThumbs : ThumbDriver {
    ReportingThumbs() {
        keyboard().switchToLetters(Shift::Off);
        page().setDelegate(reports);
    }

    std::shared_ptr<Reports> reports = std::make_shared<Reports>();
};

TEST(KeyboardLayout, TwoThumbsArePressedAndReleasedInTheirOrder) {
    ReportingThumbs thumbs;
    thumbs.press(1, "q");
    thumbs.press(2, "p");
    thumbs.lift(1);
    thumbs.lift(2);
    EXPECT_THAT(thumbs.reports->lines, ElementsAre("began 1", "start q", "began 1", "start p", "ended 1",
                                                   "end q", "ended 1", "end p"));
    EXPECT_THAT(thumbs.page().currentTouches(), IsEmpty());
}

TEST(KeyboardLayout, PressCountsForTheKeyUnderTheThumbAtItsEnd) {
    ReportingThumbs thumbs;
    thumbs.press(1, "q");
    thumbs.slide(1, "w");
    thumbs.slideTo(1, {100, 100}); // far above all keys
    thumbs.lift(1);
    EXPECT_THAT(thumbs.reports->lines,
                ElementsAre("began 1", "start q", "moved 1", "q to w", "moved 1", "ended 1", "end w"));
}

TEST(KeyboardLayout, CancelledThumbPressesNothing) {
    ReportingThumbs thumbs;
    thumbs.press(1, "q");
    thumbs.cancel(1);
    EXPECT_THAT(thumbs.reports->lines, ElementsAre("began 1", "start q", "cancelled 1"));
    EXPECT_THAT(thumbs.page().currentTouches(), IsEmpty());
}

TEST(KeyboardLayout, TouchesAreReportedWhileTypingIsOff) {
    ReportingThumbs thumbs;
    thumbs.press(1, "q");
    thumbs.page().setTypingEnabled(false);
    thumbs.press(2, "w");
    thumbs.slide(1, "e");
    thumbs.lift(2);
    thumbs.lift(1);
    EXPECT_THAT(thumbs.reports->lines,
                ElementsAre("began 1", "start q", "began 1", "moved 1", "ended 1", "ended 1"));
    EXPECT_THAT(thumbs.page().currentTouches(), IsEmpty());
}

TEST(KeyboardLayout, HiddenKeyKeepsItsPlaceAndDoesNotReact) {
    ThumbDriver thumbs(UIKeyboardType::asciiCapableNumberPad);
    EXPECT_EQ(thumbs.key("0")->frame().origin.x, thumbs.key("8")->frame().origin.x);
    thumbs.press(1, "-");
    EXPECT_THAT(thumbs.page().currentTouches(), IsEmpty());
    thumbs.slide(1, "0");
    thumbs.lift(1);
    EXPECT_EQ(thumbs.text(), "");
}

/// Fast typists press a key before they have released the one before; a page that changes in between must not
/// swallow a letter.
TEST(KeyboardLayout, ThumbsStayDownWhenThePageChangesUnderThem) {
    struct Row {
        const char* name;
        void (*type)(ThumbDriver&);
        const char* text;
    };
    constexpr std::array rows{Row{"capital, then the next letter rolls over",
                                  [](ThumbDriver& thumbs) {
                                      thumbs.press(1, "H");
                                      thumbs.press(2, "E");
                                      thumbs.lift(1);
                                      thumbs.press(3, "l");
                                      thumbs.lift(2);
                                      thumbs.lift(3);
                                  },
                                  "Hel"},
                              Row{"both go up at once",
                                  [](ThumbDriver& thumbs) {
                                      thumbs.press(1, "H");
                                      thumbs.press(2, "E");
                                      thumbs.liftTogether(1, 2);
                                  },
                                  "He"},
                              Row{"slides on over the next page",
                                  [](ThumbDriver& thumbs) {
                                      thumbs.press(1, "Q");
                                      thumbs.tap("Numbers");
                                      thumbs.tap("Symbols");
                                      thumbs.slide(1, "€");
                                      thumbs.lift(1);
                                  },
                                  "€"},
                              Row{"is cancelled on the next page",
                                  [](ThumbDriver& thumbs) {
                                      thumbs.press(1, "Q");
                                      thumbs.tap("Numbers");
                                      thumbs.cancel(1);
                                      thumbs.tap("2");
                                  },
                                  "2"},
                              Row{"same page again",
                                  [](ThumbDriver& thumbs) {
                                      thumbs.press(1, "Q");
                                      thumbs.keyboard().capitalize();
                                      thumbs.lift(1);
                                  },
                                  "Q"},
                              Row{"there and back",
                                  [](ThumbDriver& thumbs) {
                                      thumbs.press(1, "Q");
                                      thumbs.tap("Numbers");
                                      thumbs.tap("Letters");
                                      thumbs.lift(1);
                                      thumbs.tap("w");
                                  },
                                  "qw"},
                              Row{"reloaded: counts for nothing",
                                  [](ThumbDriver& thumbs) {
                                      thumbs.press(1, "Q");
                                      thumbs.keyboard().reload(State::Letters(Shift::Off));
                                      thumbs.slide(1, "w");
                                      thumbs.lift(1);
                                  },
                                  ""}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ThumbDriver thumbs;
        row.type(thumbs);
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
    thumbs.tap("!");
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
    thumbs.press(1, "Q");
    thumbs.press(2, "W");
    EXPECT_THAT(popUps(thumbs.page()), ElementsAre("Q", "W"));
    thumbs.slide(1, "A");
    EXPECT_THAT(popUps(thumbs.page()), ElementsAre("W", "A"));
    thumbs.cancel(2);
    EXPECT_THAT(popUps(thumbs.page()), ElementsAre("A"));
    thumbs.lift(1);
    thumbs.press(1, "Space");
    EXPECT_THAT(popUps(thumbs.page()), IsEmpty());
    thumbs.slide(1, "Backspace");
    EXPECT_THAT(popUps(thumbs.page()), ElementsAre("Backspace"));
}

TEST(KeyPop, StaysOnTheScreenAtBothEndsOfEveryRow) {
    constexpr double kShadow = 5.4; // at the sides of the pictures
    for (const CGSize screen : {CGSize{320, 568}, CGSize{430, 932}, CGSize{568, 320}, CGSize{932, 430}}) {
        ThumbDriver thumbs(UIKeyboardType::defaultType, screen);
        for (const State state : {State::Letters(Shift::Off), State::Numbers(), State::Symbols()}) {
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
            thumbs.press(1, nameOf(*key));
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
