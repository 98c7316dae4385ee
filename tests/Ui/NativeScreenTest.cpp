#include "Ui/Screens/ChallengeOobNativeViewController.h"
#include "tests/Ui/ScreenSupport.h"

namespace korvane {
namespace {

using Native = ChallengeNativeViewController;
using Oob = ChallengeOobNativeViewController;

class NativeScreen : public ScreenTest {};

TEST_F(NativeScreen, ASectionOpensToItsTextAndClosesToWhatWasBefore) {
    const std::pair<UIOutlet<UITextView> Native::*, UIOutlet<ShowInfoButtonButton> Native::*> sections[] = {
        {&Native::whyInfo, &Native::whyInfoButton}, {&Native::extInfo, &Native::extInfoButton}};
    for (const auto& [text, button] : sections) {
        const auto screen = show(longCRes(UiType::OOB));
        screen->arrowUp.set(UIImage::filled({20, 20}, UIColor::red()));
        const double before = screen->scrollView->contentSize().height;
        for (const bool isOpen : {true, false}) {
            tap(*((*screen).*button).get());
            const double needed = isOpen ? ((*screen).*text)->contentSize().height : 0;
            EXPECT_EQ(needed > 60, isOpen);
            EXPECT_EQ(((*screen).*text)->frame().size.height, needed);
            EXPECT_EQ(((*screen).*button)->image(ControlState::normal),
                      (isOpen ? screen->arrowUp : screen->arrowDown).get());
            EXPECT_EQ(screen->scrollView->contentSize().height, before + needed);
            EXPECT_EQ(CGRectGetMaxY(screen->extInfo->frame()), before + needed) << "all can be reached";
        }
    }
}

TEST_F(NativeScreen, OpeningScrollsOnlyAsFarAsTheScreenIsTooShortAndClosingDoesNot) {
    for (const double height : {844, 300}) {
        resize({390, height});
        const auto screen = show(screenCRes(UiType::OOB));
        tap(*screen->whyInfoButton.get());
        const double over = std::max(screen->scrollView->contentSize().height - height, 0.0);
        EXPECT_EQ(over > 0, height == 300);
        tap(*screen->whyInfoButton.get());
        window->layoutIfNeeded();
        EXPECT_EQ(screen->scrollView->contentOffset().y, over);
        EXPECT_EQ(screen->toolBar->frame().origin.y, over) << "the bar stays in sight";
    }
}

TEST_F(NativeScreen, EveryAppearanceBeginsClosedAndUncheckedToTheEyeAndTheFirstAloneNoticesAReturn) {
    const auto screen = show<Oob>(screenCRes(UiType::OOB));
    const auto box = [&] { return screen->whitelistingInfo->image(ControlState::normal); };
    tap(*screen->whyInfoButton.get());
    tap(*screen->whitelistingInfo.get());
    EXPECT_EQ(box(), screen->checkedWhitelistingCheckBox.get());
    stack->pushViewController(std::make_shared<UIViewController>(), UIAnimated::no);
    stack->popViewController(UIAnimated::no);
    settle();
    EXPECT_EQ(screen->whyInfo->frame().size.height, 0);
    EXPECT_EQ(screen->whyInfoButton->image(ControlState::normal), screen->arrowDown.get());
    EXPECT_EQ(box(), screen->uncheckedWhitelistingCheckBox.get());
    EXPECT_EQ(screen->getWhitelistingDataEntry(), YesNoSelector::Y) << "the answer stays";
    UIApplication::shared().willResignActive();
    EXPECT_FALSE(screen->externalAppWasPresented);
}

TEST_F(NativeScreen, AReturnShowsTheFurtherTextInPlaceOfTextAndWarningWithTheRoomThatItNeeds) {
    CRes cRes = longCRes(UiType::OOB);
    const std::optional<std::string> rows[] = {std::nullopt, "You may go on now.", std::string(900, 'n')};
    for (const auto& further : rows) {
        cRes.challengeAddInfo = further;
        const auto container = factory().getViewControllerContainer(cRes);
        const auto screen = show<Oob>(container);
        const UITextView& text = *screen->challengeInfoText.get();
        UIApplication::shared().didBecomeActive();
        EXPECT_EQ(text.text(), *cRes.challengeInfoText) << "nobody has been away";
        UIApplication::shared().willResignActive();
        UIApplication::shared().didBecomeActive();
        settle();
        EXPECT_EQ(text.text(), further.value_or(*cRes.challengeInfoText));
        EXPECT_EQ(screen->warningWidthConstraint->constant(), further ? 0 : 45);
        EXPECT_EQ(text.frame().size.height, text.contentSize().height + 20);
        EXPECT_EQ(screen->scrollView->contentSize().height, CGRectGetMaxY(screen->extInfo->frame()));
        const auto& twin = dynamic_cast<Oob&>(*container.controllersMap().at(Orientation::LANDSCAPE));
        EXPECT_EQ(twin.challengeInfoText->text(), *cRes.challengeInfoText) << "it is not on the screen";
    }
}

TEST_F(NativeScreen, WhatFollowsAnotherWidthOrSizeOfTextCanBeReadToItsEnd) {
    const auto expectFitting = [this](Native& screen) {
        settle();
        const auto& text = *screen.challengeInfoText.get();
        EXPECT_EQ(text.frame().size.height,
                  text.contentSize().height + (screen.challengeInfoLabel->isHidden() ? 40 : 20));
        const CGSize asked = screen.whitelistingInfo->frame().size;
        EXPECT_GE(asked.height, screen.whitelistingInfo->fittingSize(asked.width).height);
        const double opened = screen.whyInfo->frame().size.height;
        EXPECT_TRUE(opened == 0 || opened == screen.whyInfo->contentSize().height);
        EXPECT_EQ(screen.scrollView->contentSize().height, CGRectGetMaxY(screen.extInfo->frame()));
    };
    for (const bool hasLabel : {true, false}) {
        resize({390, 844});
        UIApplication::shared().setTextScale(1);
        places = std::make_shared<UiCustomizationConstraints>();
        places->setConstraints(UiObject::challengeInfoText, {.leading = 150});
        CRes cRes = longCRes(UiType::OOB);
        if (!hasLabel) cRes.challengeInfoLabel.reset();
        const auto container = factory().getViewControllerContainer(cRes);
        const auto screen = show(container);
        screen->inverseWhyInfoDisplaying();
        expectFitting(*screen);
        UIApplication::shared().setTextScale(1.5);
        resize({320, 844});
        expectFitting(*screen);
        const auto twin = container.controllersMap().at(Orientation::LANDSCAPE);
        stack->pushViewController(twin, UIAnimated::no);
        expectFitting(dynamic_cast<Native&>(*twin));
    }
}

TEST_F(NativeScreen, ConstantsOfTheApplicationReachTheControlsAtEveryLayout) {
    using enum UiObject;
    // the control, what is asked of it, what that comes to, and below or behind which other
    const std::tuple<UiObject, const char*, UiConstraints, double, const char*> rows[] = {
        {challengeInfoHeader, "challengeInfoHeader", {.top = 33}, 33, "bankLogo"},
        {challengeInfoText, "challengeInfoText", {.leading = 12}, 12, "warningImage"},
        {submitButton, "submitButton", {.top = 29}, 29, "otp"},
        {challengeInfoText, "challengeInfoText", {.height = 70}, 70, nullptr},
        {whitelistingInfo, "whitelistingInfo", {.height = 15}, 15, nullptr},
        {extInfo, "extInfo", {.height = 88}, 88, nullptr}};
    for (const auto& [object, view, asked, value, neighbour] : rows) {
        SCOPED_TRACE(view);
        places = std::make_shared<UiCustomizationConstraints>();
        places->setConstraints(object, asked);
        const auto screen = show(longCRes(UiType::TEXT));
        const CGRect frame = viewNamed(*screen->view(), view).frame();
        const CGRect other = neighbour ? viewNamed(*screen->view(), neighbour).frame() : CGRect{};
        EXPECT_EQ(value, asked.height ? frame.size.height
                         : asked.top  ? frame.origin.y - CGRectGetMaxY(other)
                                      : frame.origin.x - CGRectGetMaxX(other));
    }
}

TEST_F(NativeScreen, ArrowsStayAtTheRightEdgeOfAWindowThatIsResized) {
    const auto screen = show(screenCRes(UiType::OOB));
    for (const double width : {390, 600, 320}) {
        window->setFrame({{0, 0}, {width, 844}});
        settle();
        const UIButton& button = *screen->whyInfoButton.get();
        EXPECT_NEAR(CGRectGetMaxX(button.imageView()->frame()), button.bounds().size.width, 1) << width;
    }
}

TEST_F(NativeScreen, WithoutATransactionButtonsShowASpinnerAndNothingElse) {
    for (const auto& [kind, button] : {std::pair(UiType::TEXT, "submitButton"),
                                       {UiType::TEXT, "resendButton"},
                                       {UiType::MULTI_SELECT, "nextButton"},
                                       {UiType::OOB, "continueButton"}}) {
        const auto screen = show(screenCRes(kind));
        if (kind == UiType::TEXT) dynamic_cast<UITextField&>(viewNamed(*screen->view(), "otp")).setText("1");
        stack->transaction = nullptr;
        screen->interruptChallenge();
        tap(dynamic_cast<UIControl&>(viewNamed(*screen->view(), button)));
        settle();
        EXPECT_NE(screen->spinner, nullptr) << button;
    }
}

} // namespace
} // namespace korvane
