#include "Ui/Screens/ChallengeOobNativeViewController.h"
#include "tests/Ui/Gallery.h"

namespace korvane {
namespace {

using testing::ElementsAre;

using Native = ChallengeNativeViewController;

CRes bareCRes(UiType kind) {
    CRes cRes = screenCRes(kind);
    for (auto part : {&CRes::challengeInfoHeader, &CRes::challengeInfoLabel, &CRes::whyInfoLabel,
                      &CRes::expandInfoLabel, &CRes::resendInformationLabel})
        (cRes.*part).reset();
    return cRes;
}

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

TEST_F(NativeScreen, EveryAppearanceBeginsClosedAndUncheckedToTheEye) {
    const auto screen = show(fullCRes(UiType::OOB));
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
}

TEST_F(NativeScreen, APressBeforeTheScreenHasAppearedSendsTheAnswerThatStandsWhenItIsSent) {
    UIApplication::shared().setPlaysAnimations(true);
    for (const bool isAsked : {false, true}) {
        present(std::make_shared<UIViewController>());
        const CRes cRes = (isAsked ? fullCRes : screenCRes)(UiType::OOB);
        const auto screen = std::dynamic_pointer_cast<ChallengeOobNativeViewController>(
            factory().getViewControllerContainer(cRes).controllersMap().at(Orientation::PORTRAIT));
        stack->setViewControllers({screen}, UIAnimated::yes);
        ASSERT_FALSE(screen->hasAppeared());
        tap(*screen->continueButton.get());
        platform.runFor(Seconds(0.9));
        tap(*screen->whitelistingInfo.get());
        settle();
        EXPECT_THAT(std::exchange(actions->calls, {}),
                    ElementsAre(isAsked ? "oobContinue(/Y) on global" : "oobContinue() on global"));
    }
}

TEST_F(NativeScreen, WhatFollowsAnotherWidthOrSizeOfTextCanBeReadToItsEnd) {
    struct Row {
        const char* name;
        CGSize size;
        double textScale = 1, leading = 45;
    };
    const Row rows[] = {{"narrowed by the application", {390, 844}, 1, 150},
                        {"narrower", {320, 844}},
                        {"larger text", {390, 844}, 2},
                        {"both", {320, 568}, 1.5}};
    for (const auto make : {longCRes, bareCRes})
        for (const Row& row : rows) {
            SCOPED_TRACE(row.name);
            resize({390, 844});
            UIApplication::shared().setTextScale(1);
            places = std::make_shared<UiCustomizationConstraints>();
            places->setConstraints(UiObject::challengeInfoText, {.leading = row.leading});
            const auto container = factory().getViewControllerContainer(make(UiType::OOB));
            const auto screen = show(container);
            screen->inverseWhyInfoDisplaying();
            const auto expectFitting = [&](Native& one) {
                settle();
                const auto& text = *one.challengeInfoText.get();
                EXPECT_EQ(text.frame().size.height, text.contentSize().height + (make == bareCRes ? 40 : 20));
                const auto& question = *one.whitelistingInfo.get();
                const CGSize asked = question.frame().size;
                EXPECT_TRUE(make == bareCRes || asked.height >= question.fittingSize(asked.width).height);
                EXPECT_EQ(one.scrollView->contentSize().height, CGRectGetMaxY(one.extInfo->frame()));
            };
            expectFitting(*screen);
            UIApplication::shared().setTextScale(row.textScale);
            resize(row.size);
            expectFitting(*screen);
            EXPECT_EQ(screen->whyInfo->frame().size.height, screen->whyInfo->contentSize().height);
            stack->pushViewController(container.controllersMap().at(Orientation::LANDSCAPE), UIAnimated::no);
            expectFitting(dynamic_cast<Native&>(*stack->topViewController()));
        }
}

TEST_F(NativeScreen, ConstantsOfTheApplicationReachTheControlsAtEveryLayout) {
    struct Row {
        UiObject object;
        const char* view;
        std::optional<double> UiConstraints::*side;
        double value;
        const char* neighbour = nullptr; // null for the screen's edge
    };
    const auto top = &UiConstraints::top, height = &UiConstraints::height, leading = &UiConstraints::leading;
    const Row rows[] = {{UiObject::psLogo, "psLogo", &UiConstraints::trailing, -40},
                        {UiObject::challengeInfoHeader, "challengeInfoHeader", top, 33, "bankLogo"},
                        {UiObject::challengeInfoText, "challengeInfoText", leading, 12, "warningImage"},
                        {UiObject::challengeInfoText, "challengeInfoText", height, 70},
                        {UiObject::challengeInfoLabel, "challengeInfoLabel", top, 31, "challengeInfoText"},
                        {UiObject::submitButton, "submitButton", top, 29, "otp"},
                        {UiObject::whitelistingInfo, "whitelistingInfo", height, 15},
                        {UiObject::extInfo, "extInfo", height, 88}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.view);
        UiConstraints constraints;
        constraints.*row.side = row.value;
        places = std::make_shared<UiCustomizationConstraints>();
        places->setConstraints(row.object, constraints);
        const auto screen = show(longCRes(UiType::TEXT));
        const CGRect frame = viewNamed(*screen->view(), row.view).frame();
        const CGRect other = row.neighbour ? viewNamed(*screen->view(), row.neighbour).frame() : CGRect{};
        const double measured = row.side == height    ? frame.size.height
                                : row.side == top     ? frame.origin.y - CGRectGetMaxY(other)
                                : row.side == leading ? frame.origin.x - CGRectGetMaxX(other)
                                                      : CGRectGetMaxX(frame) - 390;
        EXPECT_EQ(measured, row.value);
    }
}

TEST_F(NativeScreen, WithoutATransactionButtonsShowASpinnerAndNothingElse) {
    const std::pair<UiType, const char*> rows[] = {{UiType::TEXT, "submitButton"},
                                                   {UiType::TEXT, "resendButton"},
                                                   {UiType::MULTI_SELECT, "nextButton"},
                                                   {UiType::OOB, "continueButton"}};
    for (const auto& [kind, button] : rows) {
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
