#include "Ui/Screens/ChallengeOobNativeViewController.h"
#include "tests/Ui/ScreenSupport.h"

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Screen = ChallengeOobNativeViewController;

class OobScreen : public ScreenTest {
protected:
    OobScreen() {
        cRes = screenCRes(UiType::OOB);
        cRes.challengeInfoTextIndicator = "Y";
    }
    static void leave() { UIApplication::shared().willResignActive(); }
    static void comeBack() { UIApplication::shared().didBecomeActive(); }

    CRes cRes;
};

TEST_F(OobScreen, AReturnShowsTheFurtherTextInPlaceOfTextAndWarning) {
    const auto container = factory().getViewControllerContainer(cRes);
    const auto screen = show<Screen>(container);
    EXPECT_GT(screen->warningWidthConstraint->constant(), 0);
    screen->replaceText({UIApplication::didBecomeActiveNotification});
    EXPECT_EQ(screen->challengeInfoText->text(), *cRes.challengeInfoText) << "nobody has been away";
    leave();
    EXPECT_EQ(screen->challengeInfoText->text(), *cRes.challengeInfoText);
    comeBack();
    EXPECT_EQ(screen->challengeInfoText->text(), "You may go on now.");
    EXPECT_EQ(screen->warningWidthConstraint->constant(), 0);
    const auto twin =
        std::dynamic_pointer_cast<Screen>(container.controllersMap().at(Orientation::LANDSCAPE));
    EXPECT_EQ(twin->challengeInfoText->text(), *cRes.challengeInfoText) << "it is not on the screen";
}

TEST_F(OobScreen, TheFurtherTextHasTheRoomThatItNeeds) {
    for (const std::string& further : {std::string("You may go on now."), std::string(900, 'n')}) {
        cRes.challengeInfoText = "A text of some lines. " + std::string(300, 'm');
        cRes.challengeAddInfo = further;
        const auto screen = show<Screen>(cRes);
        leave();
        comeBack();
        settle();
        const UITextView& text = *screen->challengeInfoText.get();
        EXPECT_EQ(text.frame().size.height, text.contentSize().height + 20);
        EXPECT_EQ(screen->scrollView->contentSize().height, CGRectGetMaxY(screen->extInfo->frame()));
    }
}

TEST_F(OobScreen, WithoutAFurtherTextAReturnChangesNothing) {
    cRes.challengeAddInfo.reset();
    const auto screen = show<Screen>(cRes);
    leave();
    comeBack();
    EXPECT_EQ(screen->challengeInfoText->text(), *cRes.challengeInfoText);
    EXPECT_GT(screen->warningWidthConstraint->constant(), 0);
}

TEST_F(OobScreen, AScreenThatAppearsAgainNoticesNoReturnAnyMore) {
    const auto screen = show<Screen>(cRes);
    stack->pushViewController(std::make_shared<UIViewController>(), UIAnimated::no);
    stack->popViewController(UIAnimated::no);
    settle();
    leave();
    comeBack();
    EXPECT_TRUE(screen->addedListeners);
    EXPECT_FALSE(screen->externalAppWasPresented);
}

TEST_F(OobScreen, ContinueIsSentFromTheGlobalQueueAlsoByOneWhoNeverLeft) {
    cRes.whitelistingInfoText = "Trust this shop?";
    const auto screen = show<Screen>(cRes);
    tap(*screen->continueButton.get());
    EXPECT_NE(screen->spinner, nullptr);
    platform.runFor(Seconds(0.99));
    EXPECT_THAT(actions->calls, IsEmpty());
    settle();
    EXPECT_THAT(actions->calls, ElementsAre("oobContinue(/N) on global"));
}

} // namespace
} // namespace korvane
