#include "Ui/Screens/ProgressView.h"
#include "Ui/Screens/TopController.h"
#include "tests/Ui/ScreenSupport.h"

namespace korvane {
namespace {

/// A spinner of the application's own, which counts those that run.
struct OwnSpinner final : ExternalProgressDialog, SpinnerProducerProtocol {
    [[nodiscard]] std::shared_ptr<UIViewController> hudedController() const override {
        return covered.lock();
    }
    [[nodiscard]] std::shared_ptr<UIView> view() override { return cover; }
    void internalStartAnimating() override { ++running; }
    void internalStopAnimating() override { --running; }
    [[nodiscard]] std::shared_ptr<ExternalProgressDialog>
    getSpinner(std::shared_ptr<UIViewController> hudedController) override {
        covered = hudedController;
        return self.lock();
    }

    std::shared_ptr<UIView> cover = std::make_shared<UIView>(CGRect{{0, 0}, {390, 844}});
    std::weak_ptr<UIViewController> covered;
    std::weak_ptr<OwnSpinner> self; // without it the producer has none
    int running = 0;
};

class Root : public ScreenTest {
protected:
    static std::shared_ptr<UIView> cover(UIViewController& screen) {
        return screen.view()->viewWithTag(ExternalProgressDialog::kTag);
    }
};

TEST_F(Root, ASpinnerOfTheApplicationsLeavesNothingButCancelToTouchUntilItIsHidden) {
    for (const UiType kind : {UiType::SINGLE_SELECT, UiType::HTML_OTHER}) {
        SCOPED_TRACE(rawValue(kind));
        const auto own = std::make_shared<OwnSpinner>();
        actions->producer = own;
        const auto screen = show<ChallengeViewController>(screenCRes(kind));
        screen->showSpinner();
        settle();
        EXPECT_TRUE(std::dynamic_pointer_cast<ProgressView>(cover(*screen))) << "the producer has none";
        own->self = own;
        screen->showSpinner(); // each takes the last one's place
        screen->showSpinner();
        settle();
        EXPECT_EQ(own->running, 1);
        EXPECT_EQ(cover(*screen), own->cover);
        EXPECT_EQ(window->hitTest({195, 400}), own->cover);
        EXPECT_TRUE(window->hitTest({195, 22})->isDescendant(*screen->toolBar.get())) << "not dimmed";
        screen->hideSpinner();
        screen->hideSpinner();
        settle();
        EXPECT_EQ(cover(*screen), nullptr);
        EXPECT_EQ(own->running, 0);
    }
}

TEST_F(Root, TheTopControllerIsFoundFromAnyQueueForASpinnerWithoutAController) {
    const auto screen = show(screenCRes(UiType::OOB));
    const auto dialog = std::make_shared<UIViewController>();
    screen->present(dialog, UIAnimated::no);
    const auto spinner = ProgressView::make(0.5, nullptr);
    platform.dispatch().globalQueue().async([&dialog] { EXPECT_EQ(getTopController(), dialog); });
    settle();
    EXPECT_EQ(cover(*dialog), spinner);
}

/// Without a list of the application's all but the flat ones count, as whole challenges show.
TEST_F(Root, TheOrientationFollowsTheDeviceAsFarAsTheApplicationDoes) {
    using enum UIDeviceOrientation;
    const std::tuple<UIDeviceOrientation, const char*, std::optional<Orientation>> rows[] = {
        {portrait, "Portrait", Orientation::PORTRAIT},
        {portrait, "LandscapeLeft", std::nullopt},
        {faceDown, "Portrait", std::nullopt},
        {landscapeLeft, "LandscapeLeft", Orientation::LANDSCAPE},
        {landscapeLeft, "LandscapeRight", std::nullopt},
        {landscapeRight, "LandscapeRight", Orientation::LANDSCAPE}};
    for (const auto& [device, allowed, orientation] : rows) {
        platform.script().orientation = device;
        platform.script().infoDictionary["UISupportedInterfaceOrientations"] =
            std::vector{"UIInterfaceOrientation" + std::string(allowed)};
        EXPECT_EQ(getOrientation(), orientation) << allowed;
    }
}

} // namespace
} // namespace korvane
