#include "Platform/NotificationCenter.h"
#include "tests/Ui/ScreenSupport.h"

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Screen = ChallengeTextNativeViewController;

class TextScreen : public ScreenTest {
protected:
    std::shared_ptr<Screen> shown(Orientation orientation = Orientation::PORTRAIT) {
        return show<Screen>(screenCRes(UiType::TEXT), orientation);
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

TEST_F(TextScreen, TheAnswerAboutWhitelistingGoesWithTheCode) {
    CRes cRes = screenCRes(UiType::TEXT);
    cRes.whitelistingInfoText = "Trust this shop?";
    const auto screen = show<Screen>(cRes);
    tap(*screen->whitelistingInfo.get());
    screen->otp->setText("1234");
    screen->checkOtp();
    settle();
    EXPECT_THAT(actions->calls, ElementsAre("data(1234/Y) on main"));
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

TEST_F(TextScreen, ATapBesideTheFieldEndsEditingAndOneOnAButtonStillPresses) {
    const auto screen = shown();
    screen->otp->setText("12");
    edit(*screen);
    const CGPoint beside = screen->challengeInfoHeader->convertTo(nullptr, CGPoint{2, 2});
    window->sendTouch({1, UITouchPhase::began, beside});
    window->sendTouch({1, UITouchPhase::ended, beside});
    settle();
    EXPECT_FALSE(screen->keyboardIsShown);
    edit(*screen);
    const CGPoint button = screen->submitButton->convertTo(nullptr, CGPoint{9, 9});
    window->sendTouch({1, UITouchPhase::began, button});
    window->sendTouch({1, UITouchPhase::ended, button});
    settle();
    EXPECT_THAT(actions->calls, ElementsAre("data(12) on main"));
    EXPECT_FALSE(screen->keyboardIsShown);
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
