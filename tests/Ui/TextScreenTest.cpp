#include "Platform/NotificationCenter.h"
#include "tests/Ui/ScreenSupport.h"

#include <functional>

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Screen = ChallengeTextNativeViewController;

constexpr std::string_view kLongText =
    "A text of several lines, which is what makes the keyboard come up over the field: the bank has sent a "
    "code to your telephone, which you are to enter here so that the shop can have what it has been "
    "promised, "
    "and nobody else anything at all. Take your time, and do not tell the code to anybody who asks for it.";

class TextScreen : public ScreenTest {
protected:
    std::shared_ptr<Screen> shown(Orientation orientation = Orientation::PORTRAIT) {
        return show<Screen>(screenCRes(UiType::TEXT), orientation);
    }
    void touch(CGPoint at) {
        window->sendTouch({1, UITouchPhase::began, at});
        window->sendTouch({1, UITouchPhase::ended, at});
    }
    void edit(Screen& screen) {
        EXPECT_TRUE(screen.otp->becomeFirstResponder());
        settle();
    }
};

TEST_F(TextScreen, AnEmptyFieldSendsNothingAndShowsNothing) {
    const auto screen = shown();
    tap(*screen->submitButton.get());
    EXPECT_EQ(screen->spinner, nullptr);
    settle();
    EXPECT_THAT(actions->calls, IsEmpty());
}

TEST_F(TextScreen, SubmitAndResendReachTheTransactionOnTheMainQueueAfterOneSecond) {
    const auto screen = shown();
    screen->otp->setText("1234");
    tap(*screen->submitButton.get());
    EXPECT_NE(screen->spinner, nullptr);
    platform.runFor(Seconds(0.99));
    EXPECT_THAT(actions->calls, IsEmpty());
    platform.runFor(Seconds(0.02));
    EXPECT_THAT(actions->calls, ElementsAre("data(1234) on main"));
    tap(*screen->resendButton.get());
    platform.runFor(Seconds(0.99));
    EXPECT_EQ(actions->calls.size(), 1u);
    platform.runFor(Seconds(0.02));
    EXPECT_THAT(actions->calls, ElementsAre("data(1234) on main", "resendOtp() on main"));
}

TEST_F(TextScreen, WithoutATransactionTheSpinnerStaysAndNothingElseHappens) {
    const auto screen = shown();
    stack->transaction = nullptr;
    screen->otp->setText("1234");
    screen->checkOtp();
    screen->resendOtp();
    settle();
    EXPECT_THAT(actions->calls, IsEmpty());
    EXPECT_NE(screen->spinner, nullptr);
}

TEST_F(TextScreen, EditingBringsTheLibrarysKeyboardAndItsButtonTakesItAway) {
    const auto screen = shown();
    edit(*screen);
    EXPECT_EQ(screen->otp->inputView(), screen->secureKeyboard->view());
    EXPECT_TRUE(screen->keyboardIsShown);
    screen->secureKeyboard->customToolBarCloseButtonPressed(*screen->secureKeyboard->customToolBar());
    settle();
    EXPECT_FALSE(screen->keyboardIsShown);
    EXPECT_FALSE(screen->otp->isFirstResponder());
}

TEST_F(TextScreen, OneTapEndsEditingAndPressesTheButtonUnderIt) {
    struct Row {
        CGSize screen;
        Orientation orientation;
        bool moves;
    };
    const Row rows[] = {{{390, 844}, Orientation::PORTRAIT, false},
                        {{375, 667}, Orientation::PORTRAIT, true},
                        {{320, 568}, Orientation::PORTRAIT, true},
                        {{844, 390}, Orientation::LANDSCAPE, true}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.screen.width);
        resize(row.screen);
        CRes cRes = screenCRes(UiType::TEXT);
        cRes.challengeInfoText = std::string(kLongText);
        const auto screen = show<Screen>(cRes, row.orientation);
        screen->otp->setText("12");
        int closings = 0;
        const auto observer = NotificationCenter::defaultCenter().addObserver(
            UIResponder::keyboardWillHideNotification, [&](const Notification&) { ++closings; });

        edit(*screen);
        EXPECT_EQ(screen->viewOffset > 50, row.moves) << screen->viewOffset;
        touch(screen->otp->middleInWindow());
        EXPECT_EQ(closings, 0) << "a tap inside the field is none beside it";
        touch(screen->otp->convertTo(nullptr, CGPoint{-5, 5}));
        EXPECT_EQ(closings, 1);
        EXPECT_FALSE(screen->keyboardIsShown);

        const std::function<void()> ways[] = {
            [&] { touch(screen->submitButton->middleInWindow()); },
            [&] { window->press(*screen->submitButton.get()); },
            [&] { window->press(*screen->resendButton.get()); }, // the keys lie over it
        };
        const char* const calls[] = {"data(12) on main", "data(12) on main", "resendOtp() on main"};
        for (std::size_t way = 0; way < std::size(ways); ++way) {
            edit(*screen);
            ways[way]();
            EXPECT_FALSE(screen->keyboardIsShown);
            settle();
            EXPECT_THAT(std::exchange(actions->calls, {}), ElementsAre(calls[way]));
            window->press(*screen->submitButton.get());
            settle();
            EXPECT_THAT(actions->calls, IsEmpty()) << "the spinner lies over it";
            screen->hideSpinner();
            settle();
        }
        EXPECT_EQ(screen->otp->text(), "12");
    }
}

TEST_F(TextScreen, AnotherWindowFindsKeyboardAndScreenWhereTheyBelong) {
    struct Row {
        const char* name;
        CGSize from;
        CGSize to;
        double keys;
    };
    const Row rows[] = {{"lower", {700, 900}, {700, 500}, 162},
                        {"higher", {320, 480}, {320, 900}, 216},
                        {"wider", {320, 568}, {400, 568}, 216},
                        {"covers from now on", {320, 900}, {320, 480}, 216}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        resize(row.from);
        const auto screen = shown();
        edit(*screen);
        resize(row.to);
        const double bottom = CGRectGetMaxY(screen->otp->frame()) + 44;
        const double visible = row.to.height - row.keys - 44;
        EXPECT_EQ(window->inputFrame().size.height, row.keys + 44);
        EXPECT_EQ(screen->viewOffset, bottom > visible ? bottom - visible + 5 : 0);
        EXPECT_EQ(screen->view()->frame(), (CGRect{{0, -screen->viewOffset}, row.to}));
        screen->keyboardDonePressed();
        EXPECT_EQ(screen->view()->frame(), (CGRect{{0, 0}, row.to}));
        resize(row.from);
        edit(*screen);
        EXPECT_NE(window->inputFrame().size.height, 0);
        screen->keyboardDonePressed();
        resize(row.to);
        edit(*screen);
        EXPECT_EQ(window->inputFrame().size.height, row.keys + 44) << "also when it comes again";
    }
}

TEST_F(TextScreen, TheScreenMovesUpAsFarAsTheKeyboardWouldCoverTheField) {
    struct Row {
        const char* name;
        CGSize screen;
        UIEdgeInsets safeArea;
        double keyboard;
    };
    const Row rows[] = {
        {"no cover", {390, 844}, {}, 260},
        {"covered", {390, 844}, {}, 600},
        {"between the system's own", {390, 844}, {47, 0, 34, 0}, 600},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        resize(row.screen, row.safeArea);
        const auto screen = shown();
        const double bottom = CGRectGetMaxY(screen->otp->frame()) + 44 + row.safeArea.top;
        const double visible = row.screen.height - row.keyboard + row.safeArea.bottom;
        const double offset = bottom > visible ? bottom - visible + 5 : 0;
        Notification shows{UIResponder::keyboardWillShowNotification};
        shows.keyboardFrameEnd = {{0, 0}, {row.screen.width, row.keyboard}};
        for (int time = 0; time < 2; ++time) // the second one moves nothing
            screen->keyboardWillShow(shows);
        settle();
        EXPECT_EQ(screen->viewOffset, offset);
        EXPECT_EQ(screen->view()->frame().origin.y, -offset) << "also after a layout";
        for (int time = 0; time < 2; ++time)
            screen->keyboardWillHide({UIResponder::keyboardWillHideNotification});
        EXPECT_EQ(screen->view()->frame().origin.y, 0);
    }
}

TEST_F(TextScreen, ATurnWithTheKeyboardShownLeavesBothTwinsInTheirPlace) {
    resize({320, 568});
    const auto container = factory().getViewControllerContainer(screenCRes(UiType::TEXT));
    const auto upright = show<Screen>(container);
    const auto lying =
        std::dynamic_pointer_cast<Screen>(container.controllersMap().at(Orientation::LANDSCAPE));
    edit(*upright);
    ASSERT_GT(upright->viewOffset, 0);
    EXPECT_FALSE(lying->keyboardIsShown) << "it is not shown";
    stack->pushViewController(lying, UIAnimated::no);
    settle();
    EXPECT_EQ(lying->view()->frame().origin.y, lying->keyboardIsShown ? -lying->viewOffset : 0);
    stack->popViewController(UIAnimated::no);
    settle();
    EXPECT_EQ(upright->view()->frame().origin.y, upright->keyboardIsShown ? -upright->viewOffset : 0);
}

TEST_F(TextScreen, TheFieldsBorderFollowsTheApplicationAgainWhenTheTraitsChange) {
    look = std::make_shared<UiCustomization>();
    look->setTextBoxCustomization(std::make_shared<TextBoxCustomization>());
    look->getTextBoxCustomization()->borderColor = UIColor::red();
    const auto screen = shown();
    EXPECT_EQ(screen->otp->layer().borderWidth(), 1);
    EXPECT_EQ(screen->otp->layer().cornerRadius(), 4);
    screen->otp->layer().setBorderColor(std::nullopt);
    UITraitCollection dark;
    dark.userInterfaceStyle = UIUserInterfaceStyle::dark;
    window->setTraits(dark);
    EXPECT_EQ(screen->otp->layer().borderColor(), UIColor::red());
}

} // namespace
} // namespace korvane
