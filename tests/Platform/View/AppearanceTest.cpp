#include "Platform/View/UINavigationController.h"
#include "tests/Platform/View/ViewSupport.h"

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Appearance : public ViewTest {
protected:
    std::shared_ptr<TellingController> make(const std::string& name) {
        return std::make_shared<TellingController>(name, log);
    }
    std::shared_ptr<UINavigationController> stackOf(std::shared_ptr<UIViewController> controller) {
        auto stack = std::make_shared<UINavigationController>(std::move(controller));
        stack->setNavigationBarHidden(true, UIAnimated::no);
        window->setRootViewController(stack);
        platform.runUntilIdle();
        log.clear();
        return stack;
    }
    /// What happened, without the layout.
    Log taken() {
        std::erase_if(log, [](const std::string& line) { return line.ends_with("Layout"); });
        return std::exchange(log, {});
    }
    UIViewController::Completion note(const std::string& line) {
        return [this, line] { log.push_back(line); };
    }

    Log log;
};

TEST_F(Appearance, AControllerIsLoadedLaidOutAndThenAppears) {
    window->setRootViewController(make("a"));
    EXPECT_THAT(log, ElementsAre("a.didLoad", "a.willAppear", "a.willLayout", "a.didLayout", "a.didAppear"));
}

TEST_F(Appearance, PushAndPopTellBothInThePlatformsOrder) {
    const auto stack = stackOf(make("a"));
    const auto b = make("b");
    stack->pushViewController(b, UIAnimated::no);
    EXPECT_THAT(log, ElementsAre("b.didLoad", "a.willDisappear", "b.willAppear", "b.willLayout",
                                 "b.didLayout", "a.didDisappear", "b.didAppear"));
    EXPECT_EQ(b->view()->frame(), (CGRect{{0, 0}, {320, 480}}));
    log.clear();
    EXPECT_EQ(stack->popViewController(UIAnimated::no), b);
    EXPECT_THAT(taken(), ElementsAre("b.willDisappear", "a.willAppear", "b.didDisappear", "a.didAppear"));
    EXPECT_EQ(b->parent(), nullptr);
    EXPECT_EQ(b->view()->superview(), nullptr);
    EXPECT_EQ(stack->popViewController(UIAnimated::no), nullptr) << "the root stays";
    EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(Appearance, AnAnimatedChangeEndsFromTheMainQueueAndThenCompletes) {
    const auto a = make("a");
    const auto stack = stackOf(a);
    const auto b = make("b");
    stack->setViewControllers({b}, UIAnimated::yes, note("done"));
    EXPECT_EQ(stack->topViewController(), b);
    EXPECT_EQ(a->navigationController(), stack) << "who leaves still finds its container";
    EXPECT_THAT(taken(), ElementsAre("b.didLoad", "a.willDisappear", "b.willAppear"));
    platform.runUntilIdle();
    EXPECT_THAT(taken(), ElementsAre("a.didDisappear", "b.didAppear", "done"));
    EXPECT_EQ(a->navigationController(), nullptr);
}

TEST_F(Appearance, AChangeThatComesBeforeTheEndOfAnotherEndsItFirst) {
    const auto stack = stackOf(make("a"));
    stack->pushViewController(make("b"), UIAnimated::yes, note("first"));
    taken();
    stack->setViewControllers({make("c")}, UIAnimated::yes, note("second"));
    EXPECT_THAT(taken(),
                ElementsAre("a.didDisappear", "b.didAppear", "c.didLoad", "b.willDisappear", "c.willAppear"));
    platform.runUntilIdle();
    EXPECT_THAT(taken(), testing::UnorderedElementsAre("first", "b.didDisappear", "c.didAppear", "second"));
    EXPECT_EQ(platform.leftAlive(), LeftAlive{});
}

TEST_F(Appearance, PresentationAndItsEndTellTheOneBelowLast) {
    const auto a = make("a");
    window->setRootViewController(a);
    taken();
    const auto b = make("b");
    a->present(b, UIAnimated::yes, note("presented"));
    EXPECT_EQ(a->presentedViewController(), b);
    EXPECT_THAT(taken(), ElementsAre("b.didLoad", "a.willDisappear", "b.willAppear"));
    platform.runUntilIdle();
    EXPECT_THAT(taken(), ElementsAre("b.didAppear", "a.didDisappear", "presented"));
    EXPECT_EQ(a->view()->window(), nullptr);

    b->dismiss(UIAnimated::yes, note("dismissed"));
    EXPECT_THAT(taken(), ElementsAre("b.willDisappear", "a.willAppear"));
    platform.runUntilIdle();
    EXPECT_THAT(taken(), ElementsAre("a.didAppear", "b.didDisappear", "dismissed"));
    EXPECT_EQ(a->view()->window(), window);
    EXPECT_EQ(a->presentedViewController(), nullptr);
}

TEST_F(Appearance, ADismissalDuringAPresentationCompletesBothAndEveryCompletionRunsOnce) {
    const auto a = make("a");
    window->setRootViewController(a);
    const auto b = make("b");
    a->dismiss(UIAnimated::yes, note("nothing to dismiss"));
    a->present(b, UIAnimated::yes, note("presented"));
    b->dismiss(UIAnimated::yes, note("dismissed"));
    a->dismiss(UIAnimated::no, note("again"));
    const auto completions = [this] {
        Log lines = taken();
        std::erase_if(lines, [](const std::string& line) { return line.find('.') != std::string::npos; });
        return lines;
    };
    EXPECT_THAT(completions(), IsEmpty()) << "they come from the main queue";
    platform.runUntilIdle();
    EXPECT_THAT(completions(),
                testing::UnorderedElementsAre("nothing to dismiss", "presented", "dismissed", "again"));
    EXPECT_FALSE(b->isAppearing());
    EXPECT_TRUE(a->isAppearing());
    EXPECT_EQ(a->view()->window(), window);
    EXPECT_EQ(b->view()->window(), nullptr);
    EXPECT_EQ(platform.leftAlive(), LeftAlive{});
}

TEST_F(Appearance, DismissingTheLowestTakesThoseAboveWithIt) {
    const auto a = make("a");
    window->setRootViewController(a);
    auto b = make("b");
    auto c = make("c");
    const std::weak_ptr<UIViewController> lost = b;
    a->present(b, UIAnimated::no);
    b->present(c, UIAnimated::no);
    EXPECT_EQ(c->presentingViewController(), b);
    taken();
    a->dismiss(UIAnimated::no);
    EXPECT_THAT(taken(), ElementsAre("c.willDisappear", "a.willAppear", "a.didAppear", "c.didDisappear"));
    platform.runUntilIdle();
    b.reset();
    c.reset();
    EXPECT_TRUE(lost.expired()) << "nobody else held it";
    EXPECT_EQ(window->subviews().size(), 1U);
}

TEST_F(Appearance, WhileOneIsPresentedAnotherIsNot) {
    window->setRootViewController(make("a"));
    const auto b = make("b");
    window->rootViewController()->present(b, UIAnimated::no);
    const auto c = make("c");
    window->rootViewController()->present(c, UIAnimated::no);
    EXPECT_EQ(c->presentingViewController(), nullptr);
    EXPECT_FALSE(c->isViewLoaded());
    b->present(c, UIAnimated::no);
    EXPECT_EQ(c->presentingViewController(), b);
}

TEST_F(Appearance, AStackIsPresentedWithItsTopAndSpeaksForIt) {
    const auto a = make("a");
    window->setRootViewController(a);
    const auto top = make("top");
    const auto stack = std::make_shared<UINavigationController>(top);
    taken();
    a->present(stack, UIAnimated::yes);
    platform.runUntilIdle();
    EXPECT_THAT(taken(), ElementsAre("top.didLoad", "a.willDisappear", "top.willAppear", "top.didAppear",
                                     "a.didDisappear"));
    EXPECT_EQ(top->presentingViewController(), a);
    EXPECT_EQ(stack->visibleViewController(), top);
    const auto over = make("over");
    top->present(over, UIAnimated::no);
    EXPECT_EQ(stack->visibleViewController(), over);
    EXPECT_EQ(over->presentingViewController(), stack) << "the outermost container presents";
}

TEST_F(Appearance, PlayedAnimationsTakeTheirTime) {
    UIApplication::shared().setPlaysAnimations(true);
    const auto a = make("a");
    window->setRootViewController(a);
    bool isDone = false;
    a->present(make("b"), UIAnimated::yes, [&] { isDone = true; });
    const Seconds start = platform.now();
    ASSERT_TRUE(platform.runUntil([&] { return isDone; }));
    EXPECT_NEAR((platform.now() - start).count(), UIApplication::kTransition.count(), 1e-9);
}

TEST_F(Appearance, TheBarOfAStackShowsTheTopsTitleAboveIt) {
    const auto a = make("a");
    a->setTitle("First");
    const auto stack = stackOf(a);
    stack->setNavigationBarHidden(false, UIAnimated::no);
    window->setSafeAreaInsets({20, 0, 0, 0});
    window->layoutIfNeeded();
    EXPECT_EQ(stack->navigationBar()->frame(), (CGRect{{0, 20}, {320, 44}}));
    EXPECT_EQ(a->view()->frame(), (CGRect{{0, 64}, {320, 416}}));
    a->setTitle("Second");
    EXPECT_EQ(stack->navigationBar()->titleLabel()->text(), "Second");
}

TEST_F(Appearance, AScreenThatMovesItselfStaysThereUntilItsRoomIsAnother) {
    const auto top = std::make_shared<UIViewController>();
    const auto stack = std::make_shared<UINavigationController>(top);
    stack->setNavigationBarHidden(true, UIAnimated::no);
    window->setRootViewController(stack);
    window->layoutIfNeeded();
    const CGRect room = top->view()->frame();
    top->view()->setFrame(CGRectOffset(room, 0, -80));
    stack->view()->setNeedsLayout();
    window->layoutIfNeeded();
    EXPECT_EQ(top->view()->frame(), CGRectOffset(room, 0, -80));
    window->setFrame({{0, 0}, {room.size.height, room.size.width}});
    window->layoutIfNeeded();
    EXPECT_EQ(top->view()->frame(), (CGRect{{0, 0}, {room.size.height, room.size.width}}));
}

TEST_F(Appearance, AWindowThatIsRemovedReleasesWhatItShows) {
    auto a = make("a");
    auto b = make("b");
    const std::vector<std::weak_ptr<UIViewController>> shown{a, b};
    window->setRootViewController(a);
    a->present(b, UIAnimated::no);
    platform.runUntilIdle();
    UIApplication::shared().remove(window);
    a.reset();
    b.reset();
    window.reset();
    EXPECT_TRUE(shown[0].expired());
    EXPECT_TRUE(shown[1].expired());
}

TEST(PlatformEnd, ReleasesWhatIsShownWhileItsServicesAreThere) {
    struct AskingController : UIViewController {
        explicit AskingController(bool& asked) : hasAsked(asked) {}
        ~AskingController() override { hasAsked = Platform::current().mainScreen().bounds().size.width > 0; }
        bool& hasAsked;
    };
    bool hasAsked = false;
    {
        const SimulatedPlatform platform;
        const auto window = std::make_shared<UIWindow>();
        window->setRootViewController(std::make_shared<AskingController>(hasAsked));
        window->makeKeyAndVisible();
        window->rootViewController()->present(std::make_shared<UIViewController>(), UIAnimated::yes);
    }
    EXPECT_TRUE(hasAsked);
}

} // namespace
} // namespace korvane
