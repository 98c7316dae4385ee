#include "tests/Ui/ScreenSupport.h"

namespace korvane {
namespace {

using testing::ElementsAre;

using Screen = ChallengeTextNativeViewController;

class TextScreen : public ScreenTest {
protected:
    void touch(CGPoint at) {
        window->sendTouch({1, UITouchPhase::began, at});
        window->sendTouch({1, UITouchPhase::ended, at});
    }
    void edit(Screen& screen) {
        EXPECT_TRUE(screen.otp->becomeFirstResponder());
        settle();
    }
    /// While it is edited the field is in sight above the keyboard: with room for the bar and what the system
    /// covers, or else that and 5 points away.
    void expectInSight(Screen& screen) const {
        const CGRect field = screen.otp->convertTo(nullptr, screen.otp->bounds());
        const auto [top, left, bottom, right] = window->safeAreaInsets();
        const double limit = window->inputFrame().origin.y + bottom - top - 44;
        const bool hasMoved = screen.view()->frame().origin.y < 0;
        EXPECT_TRUE(hasMoved ? CGRectGetMaxY(field) == limit - 5 : CGRectGetMaxY(field) <= limit);
        EXPECT_TRUE(field.origin.y >= 0 && CGRectGetMaxY(field) < window->inputFrame().origin.y);
    }
};

TEST_F(TextScreen, OneTapBesideTheFieldEndsEditingAndPressesTheButtonUnderIt) {
    for (const double height : {844.0, 480.0}) { // the screen stays, and moves
        SCOPED_TRACE(height);
        resize({390, height});
        const auto screen = show<Screen>(screenCRes(UiType::TEXT));
        screen->otp->setText("12");
        edit(*screen);
        touch(screen->otp->middleInWindow());
        EXPECT_TRUE(screen->otp->isFirstResponder()) << "a tap inside the field is none beside it";
        touch(screen->submitButton->middleInWindow());
        EXPECT_FALSE(screen->otp->isFirstResponder());
        settle();
        screen->hideSpinner();
        settle();
        edit(*screen);
        window->press(*screen->resendButton.get()); // the keys lie over it
        EXPECT_FALSE(screen->otp->isFirstResponder());
        settle();
        window->press(*screen->submitButton.get()); // the spinner lies over it
        settle();
        EXPECT_THAT(std::exchange(actions->calls, {}),
                    ElementsAre("data(12/N) on main", "resendOtp() on main"));
    }
}

TEST_F(TextScreen, TheKeyboardBeginsWithThePageThatTheApplicationOrTheFieldAsksFor) {
    using State = CustomKeyboardLayoutState;
    const State letters = State::Letters(CustomKeyboardShiftState::Once);
    struct Row {
        std::optional<KeyboardPage> chosen;
        UIKeyboardType type;
        State shown;
    };
    const Row rows[] = {{std::nullopt, UIKeyboardType::defaultType, letters},
                        {KeyboardPage::numbers, UIKeyboardType::numberPad, State::Numbers()},
                        {KeyboardPage::letters, UIKeyboardType::defaultType, letters},
                        {KeyboardPage::numberPad, UIKeyboardType::defaultType, State::NumberPad()},
                        {KeyboardPage::letters, UIKeyboardType::asciiCapableNumberPad, State::NumberPad()}};
    for (const Row& row : rows) {
        SCOPED_TRACE(&row - rows);
        look = std::make_shared<UiCustomization>();
        const auto box = std::make_shared<TextBoxCustomization>();
        box->keyboardPage = row.chosen;
        look->setTextBoxCustomization(box);
        const auto screen = show<Screen>(screenCRes(UiType::TEXT));
        screen->otp->setKeyboardType(row.type);
        for (int time = 0; time < 2; ++time) { // an earlier time leaves nothing behind
            edit(*screen);
            const auto keyboard = screen->secureKeyboard->customKeyboard();
            EXPECT_EQ(keyboard->keyboardLayoutState(), row.shown);
            keyboard->setKeyboardLayoutState(State::Symbols());
            screen->otp->resignFirstResponder();
        }
    }
}

TEST_F(TextScreen, TheFieldStaysInSightAboveTheKeyboardOfAnyWindow) {
    struct Row {
        CGSize from, to;
        double keys;
        UIEdgeInsets safeArea = {};
    };
    const Row rows[] = {{{700, 900}, {700, 500}, 162},
                        {{320, 480}, {320, 900}, 216},
                        {{320, 900}, {320, 480}, 216}, // covers the field from now on
                        {{390, 844}, {390, 560}, 216, {47, 0, 34, 0}}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.to.height);
        resize(row.from, row.safeArea);
        const auto screen = show<Screen>(screenCRes(UiType::TEXT));
        edit(*screen);
        expectInSight(*screen);
        resize(row.to, row.safeArea);
        EXPECT_EQ(window->inputFrame().size.height, row.keys + 44 + row.safeArea.bottom);
        expectInSight(*screen);
        screen->secureKeyboard->customToolBarCloseButtonPressed(*screen->secureKeyboard->customToolBar());
        settle();
        EXPECT_EQ(screen->view()->frame(), (CGRect{{0, 0}, row.to}));
        EXPECT_FALSE(screen->otp->isFirstResponder());
        edit(*screen);
        expectInSight(*screen);
    }
}

TEST_F(TextScreen, TheFieldOfAScrolledScreenComesBackIntoSight) {
    resize({320, 480}, {20, 0, 34, 0});
    const auto screen = show<Screen>(longCRes(UiType::TEXT));
    screen->scrollView->scrollTo(CGRectGetMaxY(screen->otp->frame()));
    settle();
    edit(*screen);
    EXPECT_EQ(screen->otp->convertTo(nullptr, screen->otp->bounds()).origin.y, 20 + 5);
}

TEST_F(TextScreen, ATurnWithTheKeyboardShownLeavesBothTwinsInTheirPlace) {
    resize({320, 480});
    const auto container = factory().getViewControllerContainer(screenCRes(UiType::TEXT));
    const auto upright = show<Screen>(container);
    edit(*upright);
    EXPECT_LT(upright->view()->frame().origin.y, 0);
    const auto lying = container.controllersMap().at(Orientation::LANDSCAPE);
    EXPECT_FALSE(dynamic_cast<Screen&>(*lying).keyboardIsShown) << "it is not shown";
    stack->pushViewController(lying, UIAnimated::no);
    settle();
    EXPECT_EQ(lying->view()->frame().origin.y, 0);
    stack->popViewController(UIAnimated::no);
    settle();
    EXPECT_EQ(upright->view()->frame().origin.y, 0);
}

} // namespace
} // namespace korvane
