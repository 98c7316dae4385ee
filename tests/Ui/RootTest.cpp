#include "Ui/Screens/ProgressView.h"
#include "Ui/Screens/TopController.h"
#include "tests/Ui/ScreenSupport.h"

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A spinner of the application's, which keeps what happened to it.
class OwnSpinner final : public ExternalProgressDialog, public SpinnerProducerProtocol {
public:
    [[nodiscard]] std::shared_ptr<UIViewController> hudedController() const override {
        return covered.lock();
    }
    [[nodiscard]] std::shared_ptr<UIView> view() override { return cover; }
    void internalStartAnimating() override { calls.push_back("start"); }
    void internalStopAnimating() override { calls.push_back("stop"); }
    [[nodiscard]] std::shared_ptr<ExternalProgressDialog>
    getSpinner(std::shared_ptr<UIViewController> hudedController) override {
        covered = hudedController;
        return self.lock();
    }

    std::shared_ptr<UIView> cover = std::make_shared<UIView>();
    std::weak_ptr<UIViewController> covered;
    std::weak_ptr<OwnSpinner> self;
    std::vector<std::string> calls;
};

class Root : public ScreenTest {
protected:
    static std::shared_ptr<UIView> cover(UIViewController& screen) {
        return screen.view()->viewWithTag(ExternalProgressDialog::kTag);
    }
};

TEST_F(Root, TheStackCoversTheScreenWithoutABar) {
    const auto screen = show(screenCRes(UiType::OOB));
    EXPECT_EQ(stack->modalPresentationStyle(), UIModalPresentationStyle::fullScreen);
    EXPECT_TRUE(stack->isNavigationBarHidden());
    EXPECT_EQ(screen->view()->frame(), (CGRect{{0, 0}, {390, 844}}));
}

TEST_F(Root, TheLibrarysSpinnerCoversTheScreenUntilItIsHidden) {
    const auto screen = show(screenCRes(UiType::OOB));
    screen->hideSpinner(); // without one nothing happens
    screen->showSpinner();
    settle();
    const auto shown = std::dynamic_pointer_cast<ProgressView>(cover(*screen));
    ASSERT_TRUE(shown);
    EXPECT_TRUE(shown->isAnimating());
    EXPECT_EQ(shown->frame().size, (CGSize{390, 844}));
    EXPECT_EQ(shown->backgroundColor(), UIColor::white().withAlphaComponent(0.8));
    screen->showSpinner();
    settle();
    screen->hideSpinner();
    settle();
    EXPECT_EQ(cover(*screen), nullptr) << "a second one does not stay behind";
    EXPECT_FALSE(shown->isAnimating());
}

TEST_F(Root, TheApplicationsSpinnerTakesItsPlaceOnEveryScreen) {
    for (const UiType kind : {UiType::TEXT, UiType::MULTI_SELECT, UiType::OOB, UiType::HTML_OTHER}) {
        SCOPED_TRACE(rawValue(kind));
        const auto own = std::make_shared<OwnSpinner>();
        own->self = own;
        actions->producer = own;
        const auto screen = show<ChallengeViewController>(screenCRes(kind));
        screen->showSpinner();
        settle();
        EXPECT_EQ(own->covered.lock(), screen);
        EXPECT_EQ(cover(*screen), own->cover);
        screen->hideSpinner();
        screen->hideSpinner();
        settle();
        EXPECT_EQ(cover(*screen), nullptr);
        EXPECT_THAT(own->calls, ElementsAre("start", "stop"));
    }
}

TEST_F(Root, UnderASpinnerNothingButCancelCanBeTouched) {
    for (const UiType kind : {UiType::SINGLE_SELECT, UiType::HTML_OTHER}) {
        for (const bool isOwn : {false, true}) {
            SCOPED_TRACE(testing::Message() << rawValue(kind) << (isOwn ? ", the application's" : ""));
            const auto own = std::make_shared<OwnSpinner>();
            own->self = own;
            actions->producer = isOwn ? own : nullptr;
            const auto screen = show<ChallengeViewController>(screenCRes(kind));
            own->cover->setFrame(screen->view()->bounds());
            screen->showSpinner();
            settle();
            const auto above = window->hitTest({195, 22});
            ASSERT_TRUE(above);
            EXPECT_TRUE(above->isDescendant(*screen->toolBar.get())) << "the bar is not dimmed";
            EXPECT_EQ(window->hitTest({195, 400}), cover(*screen));
            const auto& cancel = *screen->toolBar->topItem()->rightBarButtonItem()->customView();
            for (const auto phase : {UITouchPhase::began, UITouchPhase::ended})
                window->sendTouch({1, phase, cancel.middleInWindow()});
            EXPECT_THAT(std::exchange(actions->calls, {}), ElementsAre("cancel() on main"));
        }
    }
}

TEST_F(Root, AProducerWithoutASpinnerLeavesTheLibrarysOwn) {
    actions->producer = std::make_shared<OwnSpinner>();
    const auto screen = show(screenCRes(UiType::OOB));
    screen->showSpinner();
    settle();
    EXPECT_TRUE(std::dynamic_pointer_cast<ProgressView>(cover(*screen)));
}

TEST_F(Root, ASpinnerWithoutAControllerCoversTheTopOne) {
    const auto screen = show(screenCRes(UiType::OOB));
    const auto spinner = ProgressView::make(0.5, nullptr);
    spinner->start();
    settle();
    EXPECT_EQ(cover(*screen), spinner);
    spinner->stop();
    settle();
    EXPECT_EQ(spinner->hudedController(), nullptr);
    EXPECT_EQ(cover(*screen), nullptr);
}

TEST_F(Root, TheTopControllerIsFoundThroughStacksTabsAndPresentations) {
    EXPECT_EQ(getTopController(), host);
    const auto screen = show(screenCRes(UiType::OOB));
    EXPECT_EQ(getTopController(), screen);
    const auto dialog = std::make_shared<UIViewController>();
    screen->present(dialog, UIAnimated::no);
    settle();
    EXPECT_EQ(getTopController(), dialog);
    EXPECT_EQ(getTopController(nullptr), nullptr);
    std::shared_ptr<UIViewController> elsewhere;
    platform.dispatch().globalQueue().async([&elsewhere] { elsewhere = getTopController(); });
    settle();
    EXPECT_EQ(elsewhere, dialog) << "from another queue";
}

TEST_F(Root, TheOrientationFollowsTheDeviceAsFarAsTheApplicationDoes) {
    using enum UIDeviceOrientation;
    using List = std::optional<std::vector<std::string>>;
    struct Row {
        const char* name;
        UIDeviceOrientation device;
        List setting;
        std::optional<Orientation> orientation;
    };
    const std::string upright = "UIInterfaceOrientationPortrait";
    const std::string left = "UIInterfaceOrientationLandscapeLeft";
    const std::string right = "UIInterfaceOrientationLandscapeRight";
    const Row rows[] = {
        {"upright", portrait, {}, Orientation::PORTRAIT},
        {"left", landscapeLeft, {}, Orientation::LANDSCAPE},
        {"right", landscapeRight, {}, Orientation::LANDSCAPE},
        {"upside down", portraitUpsideDown, {}, std::nullopt},
        {"flat", faceUp, {}, std::nullopt},
        {"flat, all allowed", faceDown, List{{upright, left, right}}, std::nullopt},
        {"unknown", unknown, {}, std::nullopt},
        {"upright, allowed", portrait, List{{upright}}, Orientation::PORTRAIT},
        {"upright, forbidden", portrait, List{{left, right}}, std::nullopt},
        {"left, allowed", landscapeLeft, List{{left}}, Orientation::LANDSCAPE},
        {"left, right alone allowed", landscapeLeft, List{{right}}, std::nullopt},
        {"right, allowed", landscapeRight, List{{upright, right}}, Orientation::LANDSCAPE},
        {"nothing allowed", portrait, List{std::vector<std::string>{}}, std::nullopt},
    };
    for (const Row& row : rows) {
        platform.script().orientation = row.device;
        platform.script().infoDictionary.clear();
        if (row.setting) platform.script().infoDictionary["UISupportedInterfaceOrientations"] = *row.setting;
        EXPECT_EQ(getOrientation(), row.orientation) << row.name;
    }
}

} // namespace
} // namespace korvane
