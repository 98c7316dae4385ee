#include "Ui/Screens/ChallengeOobNativeViewController.h"
#include "tests/Ui/Gallery.h"

namespace korvane {
namespace {

using Screen = ChallengeOobNativeViewController;

class OobScreen : public ScreenTest {
protected:
    void leaveAndComeBack() {
        UIApplication::shared().willResignActive();
        UIApplication::shared().didBecomeActive();
        settle();
    }
};

TEST_F(OobScreen, AReturnShowsTheFurtherTextInPlaceOfTextAndWarningWithTheRoomThatItNeeds) {
    CRes cRes = longCRes(UiType::OOB);
    const std::optional<std::string> rows[] = {std::nullopt, "You may go on now.", std::string(900, 'n')};
    for (const auto& further : rows) {
        cRes.challengeAddInfo = further;
        const auto container = factory().getViewControllerContainer(cRes);
        const auto screen = show<Screen>(container);
        UIApplication::shared().didBecomeActive();
        EXPECT_EQ(screen->challengeInfoText->text(), *cRes.challengeInfoText) << "nobody has been away";
        leaveAndComeBack();
        const UITextView& text = *screen->challengeInfoText.get();
        EXPECT_EQ(text.text(), further.value_or(*cRes.challengeInfoText));
        EXPECT_EQ(screen->warningWidthConstraint->constant(), further ? 0 : 45);
        EXPECT_EQ(text.frame().size.height, text.contentSize().height + 20);
        EXPECT_EQ(screen->scrollView->contentSize().height, CGRectGetMaxY(screen->extInfo->frame()));
        const auto& twin = dynamic_cast<Screen&>(*container.controllersMap().at(Orientation::LANDSCAPE));
        EXPECT_EQ(twin.challengeInfoText->text(), *cRes.challengeInfoText) << "it is not on the screen";
    }
}

TEST_F(OobScreen, AScreenThatAppearsAgainNoticesNoReturnAnyMore) {
    const auto screen = show<Screen>(screenCRes(UiType::OOB));
    stack->pushViewController(std::make_shared<UIViewController>(), UIAnimated::no);
    stack->popViewController(UIAnimated::no);
    settle();
    leaveAndComeBack();
    EXPECT_FALSE(screen->externalAppWasPresented);
}

} // namespace
} // namespace korvane
