#include "Ui/Screens/ProgressView.h"
#include "Ui/Screens/TopController.h"
#include "tests/Ui/ScreenSupport.h"

namespace korvane {
namespace {

using testing::ElementsAre;

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

TEST_F(Root, ASpinnerTheApplicationsIfItHasOneLeavesNothingButCancelToTouchUntilItIsHidden) {
    const auto own = std::make_shared<OwnSpinner>();
    for (const UiType kind : {UiType::SINGLE_SELECT, UiType::HTML_OTHER})
        for (const bool isOwn : {false, true}) {
            SCOPED_TRACE(testing::Message() << rawValue(kind) << (isOwn ? ", its own" : ", the library's"));
            actions->producer = own;
            if (isOwn) own->self = own;
            const auto screen = show<ChallengeViewController>(screenCRes(kind));
            screen->hideSpinner(); // without one nothing happens
            screen->showSpinner();
            screen->showSpinner(); // takes the first one's place
            settle();
            const auto library = std::dynamic_pointer_cast<ProgressView>(cover(*screen));
            EXPECT_EQ(library && library->isAnimating(), !isOwn);
            EXPECT_EQ(own->running, isOwn ? 1 : 0);
            EXPECT_EQ(window->hitTest({195, 400}), cover(*screen));
            EXPECT_TRUE(window->hitTest({195, 22})->isDescendant(*screen->toolBar.get())) << "not dimmed";
            const auto& cancel = *screen->toolBar->topItem()->rightBarButtonItem()->customView();
            for (const auto phase : {UITouchPhase::began, UITouchPhase::ended})
                window->sendTouch({1, phase, cancel.middleInWindow()});
            EXPECT_THAT(std::exchange(actions->calls, {}), ElementsAre("cancel() on main"));
            screen->hideSpinner();
            settle();
            EXPECT_EQ(cover(*screen), nullptr);
            EXPECT_EQ(own->running, 0);
            own->self.reset();
        }
}

TEST_F(Root, TheTopControllerIsFoundFromAnyQueueForASpinnerWithoutAController) {
    const auto screen = show(screenCRes(UiType::OOB));
    const auto spinner = ProgressView::make(0.5, nullptr);
    settle();
    EXPECT_EQ(cover(*screen), spinner);
    const auto dialog = std::make_shared<UIViewController>();
    screen->present(dialog, UIAnimated::no);
    platform.dispatch().globalQueue().async([&dialog] { EXPECT_EQ(getTopController(), dialog); });
    settle();
}

TEST_F(Root, TheOrientationFollowsTheDeviceAsFarAsTheApplicationDoes) {
    using enum UIDeviceOrientation;
    struct Row {
        UIDeviceOrientation device;
        const char* allowed; // null for no list
        std::optional<Orientation> orientation;
    };
    const Row rows[] = {{portrait, nullptr, Orientation::PORTRAIT},
                        {landscapeLeft, nullptr, Orientation::LANDSCAPE},
                        {landscapeRight, nullptr, Orientation::LANDSCAPE},
                        {portraitUpsideDown, nullptr, std::nullopt},
                        {faceUp, nullptr, std::nullopt},
                        {unknown, nullptr, std::nullopt},
                        {portrait, "Portrait", Orientation::PORTRAIT},
                        {portrait, "LandscapeLeft", std::nullopt},
                        {faceDown, "Portrait", std::nullopt},
                        {landscapeLeft, "LandscapeLeft", Orientation::LANDSCAPE},
                        {landscapeLeft, "LandscapeRight", std::nullopt},
                        {landscapeRight, "LandscapeRight", Orientation::LANDSCAPE}};
    for (const Row& row : rows) {
        platform.script().orientation = row.device;
        if (row.allowed)
            platform.script().infoDictionary["UISupportedInterfaceOrientations"] =
                std::vector{"UIInterfaceOrientation" + std::string(row.allowed)};
        EXPECT_EQ(getOrientation(), row.orientation) << &row - rows;
    }
}

} // namespace
} // namespace korvane
