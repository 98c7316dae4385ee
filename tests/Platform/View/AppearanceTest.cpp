#include "Platform/View/UINavigationController.h"
#include "tests/Platform/View/ViewSupport.h"

namespace korvane {
namespace {

using Screen = std::shared_ptr<UIViewController>;

/// Tells what happens to it.
class TellingController : public UIViewController {
public:
    TellingController(std::string name, std::function<void(const std::string&)> tell)
        : name_(std::move(name)), tell_(std::move(tell)) {}

    void viewDidLoad() override { tell_(name_ + " loads"); }
    void viewWillAppear(UIAnimated /*animated*/) override { tell_(name_ + " comes"); }
    void viewDidAppear(UIAnimated /*animated*/) override { tell_(name_ + " there"); }
    void viewWillDisappear(UIAnimated /*animated*/) override { tell_(name_ + " goes"); }
    void viewDidDisappear(UIAnimated /*animated*/) override { tell_(name_ + " gone"); }

private:
    std::string name_;
    std::function<void(const std::string&)> tell_;
};

class Appearance : public ViewTest {
protected:
    Screen make(const std::string& name) {
        return std::make_shared<TellingController>(name, [this](const std::string& what) { tell(what); });
    }
    /// A root that is there already.
    Screen show(Screen screen) {
        window->setRootViewController(screen);
        platform.runUntilIdle();
        taken();
        return screen;
    }
    std::shared_ptr<UINavigationController> stackOf(const Screen& screen) {
        auto stack = std::make_shared<UINavigationController>(screen);
        stack->setNavigationBarHidden(true, UIAnimated::no);
        show(stack);
        return stack;
    }
    std::function<void()> note(const std::string& line) {
        return [this, line] { tell(line); };
    }
    std::string takenLater() {
        platform.runUntilIdle();
        return taken();
    }
};

TEST_F(Appearance, AStackTellsWhoLeavesAndWhoComes) {
    const auto a = make("a"), b = make("b");
    const auto stack = stackOf(a);
    stack->pushViewController(b, UIAnimated::no);
    EXPECT_EQ(taken(), "b loads, a goes, b comes, a gone, b there");
    EXPECT_EQ(stack->popViewController(UIAnimated::no), b);
    EXPECT_EQ(taken(), "b goes, a comes, b gone, a there");
    EXPECT_EQ(b->view()->superview(), nullptr);
    EXPECT_EQ(stack->popViewController(UIAnimated::no), nullptr) << "the root stays";
    stack->setViewControllers({b}, UIAnimated::yes, note("done"));
    EXPECT_EQ(a->navigationController(), stack) << "who leaves still finds its container";
    EXPECT_EQ(taken(), "a goes, b comes");
    stack->setViewControllers({a}, UIAnimated::yes);
    EXPECT_EQ(taken(), "a gone, b there, b goes, a comes") << "what began before ends first";
    EXPECT_EQ(takenLater(), "done, b gone, a there");
    EXPECT_EQ(b->navigationController(), nullptr);
}

TEST_F(Appearance, PresentationAndItsEndTellTheOneBelowLast) {
    const auto a = show(make("a")), b = make("b");
    a->present(b, UIAnimated::yes, note("presented"));
    EXPECT_EQ(taken(), "b loads, a goes, b comes");
    EXPECT_EQ(takenLater(), "b there, a gone, presented");
    EXPECT_EQ(a->view()->window(), nullptr);
    b->dismiss(UIAnimated::yes, note("dismissed"));
    EXPECT_EQ(taken(), "b goes, a comes");
    EXPECT_EQ(takenLater(), "a there, b gone, dismissed");

    UIApplication::shared().setPlaysAnimations(true);
    a->present(b, UIAnimated::yes);
    const Seconds start = platform.now();
    platform.runUntilIdle();
    EXPECT_NEAR((platform.now() - start).count(), UIApplication::kTransition.count(), 1e-9);
}

TEST_F(Appearance, EveryCompletionRunsOnceAndFromTheMainQueue) {
    const auto a = show(make("a")), b = make("b");
    a->dismiss(UIAnimated::yes, note("nothing there"));
    a->present(b, UIAnimated::yes, note("presented"));
    b->dismiss(UIAnimated::yes, note("dismissed"));
    a->dismiss(UIAnimated::no, note("again"));
    EXPECT_EQ(taken(), "b loads, a goes, b comes, b there, a gone, b goes, a comes, a there, b gone");
    platform.runUntilIdle();
    const std::string all = "nothing there, presented, dismissed, again";
    for (const char* one : {"nothing there", "presented", "dismissed", "again"})
        EXPECT_THAT(log, testing::HasSubstr(one));
    EXPECT_EQ(log.size(), all.size()) << log;
    EXPECT_EQ(platform.leftAlive(), LeftAlive{});
}

TEST_F(Appearance, OneIsPresentedByEachAndTheLowestTakesThoseAboveWithIt) {
    const auto a = show(make("a"));
    auto b = make("b"), c = make("c");
    const std::weak_ptr<UIViewController> lost = b;
    a->present(b, UIAnimated::no);
    a->present(c, UIAnimated::no);
    EXPECT_FALSE(c->isViewLoaded());
    b->present(c, UIAnimated::no);
    EXPECT_EQ(c->presentingViewController(), b);
    taken();
    a->dismiss(UIAnimated::no);
    EXPECT_EQ(takenLater(), "c goes, a comes, a there, c gone");
    b.reset();
    c.reset();
    EXPECT_TRUE(lost.expired()) << "nobody else held it";
    EXPECT_EQ(window->subviews().size(), 1U);
}

TEST_F(Appearance, AScreenLiesBelowTheBarAndStaysWhereItMovedUntilItsRoomIsAnother) {
    const auto top = make("top");
    const auto stack = stackOf(top);
    stack->setNavigationBarHidden(false, UIAnimated::no);
    window->setSafeAreaInsets({20, 0, 0, 0});
    window->layoutIfNeeded();
    EXPECT_EQ(stack->navigationBar()->frame(), (CGRect{{0, 20}, {320, 44}}));
    EXPECT_EQ(top->view()->frame(), (CGRect{{0, 64}, {320, 416}}));
    top->view()->setFrame({{0, -16}, {320, 416}});
    stack->view()->setNeedsLayout();
    window->layoutIfNeeded();
    EXPECT_EQ(top->view()->frame().origin.y, -16);
    window->setFrame({{0, 0}, {480, 320}});
    window->layoutIfNeeded();
    EXPECT_EQ(top->view()->frame(), (CGRect{{0, 64}, {480, 256}}));
}

TEST_F(Appearance, AWindowThatIsRemovedReleasesWhatItShows) {
    auto a = show(make("a")), b = make("b");
    const std::weak_ptr<UIViewController> below = a, above = b;
    a->present(b, UIAnimated::no);
    platform.runUntilIdle();
    UIApplication::shared().remove(window);
    a.reset();
    b.reset();
    window.reset();
    EXPECT_TRUE(below.expired() && above.expired());
}

} // namespace
} // namespace korvane
