#include "Platform/View/UIButton.h"
#include "Platform/View/UIGestureRecognizer.h"
#include "Platform/View/UINavigationController.h"
#include "tests/Platform/View/ViewSupport.h"

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using enum UITouchPhase;

/// Tells what its touches do, and how many at once.
class TouchedView : public UIView {
public:
    void touchesBegan(const UITouches& touches) override { tell("began", touches); }
    void touchesMoved(const UITouches& touches) override { tell("moved", touches); }
    void touchesEnded(const UITouches& touches) override { tell("ended", touches); }
    void touchesCancelled(const UITouches& touches) override { tell("cancelled", touches); }

    Log log;

private:
    void tell(const std::string& what, const UITouches& touches) {
        std::string line = what;
        for (const auto& touch : touches)
            line += " " + std::to_string(touch->identifier());
        log.push_back(line);
    }
};

class Touches : public ViewTest {};

TEST_F(Touches, TheTopmostViewThatTakesTouchesIsHit) {
    const auto below = add<UIView>(rootView(), {{0, 0}, {100, 100}});
    const auto above = add<UIView>(rootView(), {{50, 50}, {100, 100}});
    const auto inner = add<UIView>(*above, {{40, 40}, {100, 10}}); // reaches out of its superview
    struct Row {
        const char* name;
        CGPoint point;
        std::function<void()> change;
        std::shared_ptr<UIView> expected;
    };
    const std::vector<Row> rows{
        {"the later one is on top", {60, 60}, [] {}, above},
        {"inside a subview", {95, 95}, [] {}, inner},
        {"a subview's part outside its superview", {160, 95}, [] {}, root->view()},
        {"right edge does not belong", {100, 10}, [] {}, root->view()},
        {"hidden", {60, 60}, [&] { above->setHidden(true); }, below},
        {"transparent", {60, 60}, [&] { above->setAlpha(0.009); }, below},
        {"barely visible", {60, 60}, [&] { above->setAlpha(0.01); }, above},
        {"without interaction, with all in it",
         {95, 95},
         [&] { above->setUserInteractionEnabled(false); },
         below},
        {"brought to the front", {60, 60}, [&] { rootView().bringSubviewToFront(below); }, below},
        {"scrolled superview",
         {60, 60},
         [&] {
             rootView().setBounds({{0, 40}, rootView().bounds().size});
         },
         above},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        above->setHidden(false);
        above->setAlpha(1);
        above->setUserInteractionEnabled(true);
        rootView().bringSubviewToFront(above);
        rootView().setBounds({{0, 0}, rootView().bounds().size});
        row.change();
        EXPECT_EQ(window->hitTest(row.point), row.expected);
    }
}

TEST_F(Touches, ViewsHearOfAllTheirFingersOfAMomentAtOnce) {
    const auto view = add<TouchedView>(rootView(), {{0, 0}, {100, 100}});
    view->setMultipleTouchEnabled(true);
    window->sendTouches({{1, began, {10, 10}}, {2, began, {20, 20}}});
    window->sendTouches({{1, ended, {10, 10}}, {2, moved, {300, 300}}, {3, began, {5, 5}}});
    window->sendTouches({{2, cancelled, {300, 300}}, {3, ended, {5, 5}}});
    EXPECT_THAT(view->log,
                ElementsAre("began 1 2", "began 3", "moved 2", "ended 1", "ended 3", "cancelled 2"));
    EXPECT_EQ(window->touchCount(), 0U);
}

TEST_F(Touches, FingersThatMeanNothingAreIgnored) {
    const auto view = add<TouchedView>(rootView(), {{0, 0}, {100, 100}});
    touch(moved, {10, 10});
    touch(ended, {10, 10});
    touch(began, {10, 10});
    touch(began, {20, 20}, 2); // a second one, on a view that takes one
    touch(moved, {20, 20}, 2);
    touch(began, {-5, 10}, 3); // beside the window
    EXPECT_THAT(view->log, ElementsAre("began 1"));
    view->removeFromSuperview();
    touch(ended, {10, 10});
    EXPECT_EQ(window->touchCount(), 0U);
}

TEST_F(Touches, AFingerThatComesDownAgainHadGoneUpUnseen) {
    int taps = 0;
    rootView().addGestureRecognizer(std::make_shared<UITapGestureRecognizer>([&] { ++taps; }));
    const auto left = add<TouchedView>(rootView(), {{0, 0}, {100, 100}});
    const auto right = add<TouchedView>(rootView(), {{100, 0}, {100, 100}});
    touch(began, {10, 10});
    touch(began, {110, 10});
    EXPECT_THAT(left->log, ElementsAre("began 1", "cancelled 1"));
    touch(ended, {110, 10});
    EXPECT_EQ(left->log.size(), 2U);
    EXPECT_THAT(right->log, ElementsAre("began 1", "cancelled 1")) << "for the tap, which was recognised";
    EXPECT_EQ(taps, 1);
}

TEST_F(Touches, FingersOnWhatLeavesTheScreenAreTakenAway) {
    using Controller = std::shared_ptr<UIViewController>;
    const auto stack = std::make_shared<UINavigationController>();
    stack->setNavigationBarHidden(true, UIAnimated::no);
    const auto asRoot = [&](const Controller& screen) { window->setRootViewController(screen); };
    const auto presented = [&](const Controller& screen) { root->present(screen, UIAnimated::no); };
    const auto onStack = [&](const Controller& screen) {
        window->setRootViewController(stack);
        stack->setViewControllers({screen}, UIAnimated::no);
    };
    struct Row {
        const char* name;
        std::function<void(const Controller&)> show;
        std::function<void(const Controller&)> leave;
    };
    const std::vector<Row> rows{
        {"dismissed", presented, [](const auto& screen) { screen->dismiss(UIAnimated::no); }},
        {"covered", asRoot, [&](const auto& screen) { screen->present(root, UIAnimated::no); }},
        {"another on the stack", onStack,
         [&](const auto&) { stack->setViewControllers({}, UIAnimated::no); }},
        {"another root", asRoot, [&](const auto&) { window->setRootViewController(root); }},
        {"all fingers", asRoot, [&](const auto&) { window->cancelTouches(); }},
        {"the window itself", asRoot, [&](const auto&) { UIApplication::shared().remove(window); }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        root = std::make_shared<UIViewController>();
        window->setRootViewController(root);
        const auto screen = std::make_shared<UIViewController>();
        row.show(screen);
        const auto view = add<TouchedView>(*screen->view(), {{0, 0}, {100, 100}});
        screen->view()->addGestureRecognizer(
            std::make_shared<UITapGestureRecognizer>([] { ADD_FAILURE() << "no tap"; }));
        touch(began, {10, 10});
        row.leave(screen);
        platform.runUntilIdle();
        touch(ended, {10, 10});
        EXPECT_THAT(view->log, ElementsAre("began 1", "cancelled 1"));
        EXPECT_EQ(window->touchCount(), 0U);
    }
}

TEST_F(Touches, WhatAViewDoesNotTakeGoesUpToItsController) {
    struct Hearing : UIViewController {
        void touchesBegan(const UITouches& touches) override {
            place = touches.front()->location(view().get());
        }
        CGPoint place;
    };
    const auto controller = std::make_shared<Hearing>();
    window->setRootViewController(controller);
    add<UIView>(*controller->view(), {{100, 100}, {50, 50}});
    touch(began, {120, 130});
    EXPECT_EQ(controller->place, (CGPoint{120, 130}));
}

/// As one in a cell that serves another row by the time the finger goes up.
TEST_F(Touches, AControlThatLeavesTheWindowLosesItsFinger) {
    const auto button = add<UIButton>(rootView(), {{100, 100}, {50, 50}});
    int presses = 0;
    button->addTarget(ControlEvent::touchUpInside, [&] { ++presses; });
    touch(began, {120, 120});
    button->removeFromSuperview();
    rootView().addSubview(button);
    EXPECT_FALSE(button->isHighlighted());
    touch(ended, {120, 120});
    EXPECT_EQ(presses, 0);
    tap({120, 120});
    EXPECT_EQ(presses, 1);
}

TEST_F(Touches, ControlsReportWhatIsDoneToThem) {
    const auto button = add<UIButton>(rootView(), {{100, 100}, {50, 50}});
    Log log;
    const std::vector<std::pair<ControlEvent, std::string>> names{
        {ControlEvent::touchDown, "down"},
        {ControlEvent::touchDragInside, "inside"},
        {ControlEvent::touchDragOutside, "outside"},
        {ControlEvent::touchUpInside, "up"},
        {ControlEvent::touchUpOutside, "up outside"},
        {ControlEvent::touchCancel, "cancel"}};
    for (const auto& [event, name] : names)
        button->addTarget(event, [&log, text = name](UIControl& sender) {
            log.push_back(text + (sender.isHighlighted() ? " lit" : ""));
        });
    struct Row {
        const char* name;
        std::vector<UIWindow::TouchPoint> touches;
        Log expected;
    };
    const std::vector<Row> rows{
        {"tap", {{1, began, {110, 110}}, {1, ended, {110, 110}}}, {"down lit", "up"}},
        {"slips off, and back, a little",
         {{1, began, {110, 110}}, {1, moved, {80, 110}}, {1, ended, {80, 110}}},
         {"down lit", "inside lit", "up"}},
        {"slips off too far",
         {{1, began, {110, 110}}, {1, moved, {79, 110}}, {1, ended, {79, 110}}},
         {"down lit", "outside", "up outside"}},
        {"comes back",
         {{1, began, {110, 110}}, {1, moved, {0, 0}}, {1, moved, {110, 110}}, {1, ended, {110, 110}}},
         {"down lit", "outside", "inside lit", "up"}},
        {"is taken away", {{1, began, {110, 110}}, {1, cancelled, {110, 110}}}, {"down lit", "cancel"}},
        {"slips onto it", {{1, began, {10, 10}}, {1, moved, {110, 110}}, {1, ended, {110, 110}}}, {}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        for (const auto& point : row.touches)
            window->sendTouch(point);
        EXPECT_EQ(std::exchange(log, {}), row.expected);
    }
    button->setEnabled(false);
    tap({110, 110});
    EXPECT_THAT(log, IsEmpty());
}

TEST_F(Touches, AnActionMayRemoveItsOwnControl) {
    auto button = add<UIButton>(rootView(), {{0, 0}, {50, 50}});
    const std::weak_ptr<UIButton> weak = button;
    int after = 0;
    button->addTarget(ControlEvent::touchUpInside, [](UIControl& sender) {
        sender.removeTargets(ControlEvent::touchUpInside);
        sender.removeFromSuperview();
    });
    button->addTarget(ControlEvent::touchUpInside, [&] { ++after; });
    button.reset();
    tap({10, 10});
    EXPECT_EQ(after, 1) << "both were there when the finger went up";
    EXPECT_TRUE(weak.expired());
}

TEST_F(Touches, AStoredMethodDoesNotKeepItsObject) {
    struct Counter : NSObject {
        explicit Counter(int& total) : count(total) {}
        void add(int number) { count += number; }
        int& count;
    };
    int count = 0;
    auto counter = std::make_shared<Counter>(count);
    const auto call = weakly(counter.get(), &Counter::add);
    call(2);
    counter.reset();
    call(5);
    EXPECT_EQ(count, 2);
}

TEST_F(Touches, ATapIsRecognisedAboveWhatItHits) {
    int taps = 0;
    const auto recognizer = std::make_shared<UITapGestureRecognizer>([&] { ++taps; });
    rootView().addGestureRecognizer(recognizer);
    const auto view = add<TouchedView>(rootView(), {{0, 0}, {100, 100}});

    recognizer->setCancelsTouchesInView(false);
    tap({10, 10});
    EXPECT_EQ(taps, 1);
    EXPECT_THAT(std::exchange(view->log, {}), ElementsAre("began 1", "ended 1"));

    recognizer->setCancelsTouchesInView(true);
    tap({10, 10});
    EXPECT_EQ(taps, 2);
    EXPECT_THAT(std::exchange(view->log, {}), ElementsAre("began 1", "cancelled 1"));

    touch(began, {10, 10});
    touch(moved, {21, 10}); // more than 10 points: a drag
    touch(moved, {10, 10});
    touch(ended, {10, 10});
    recognizer->setEnabled(false);
    tap({10, 10});
    EXPECT_EQ(taps, 2);
}

TEST_F(Touches, WhatARecogniserDoesComesAfterTheTouchedView) {
    const auto button = add<UIButton>(rootView(), {{0, 0}, {50, 50}});
    const auto recognizer = std::make_shared<UITapGestureRecognizer>([&] { button->setCenter({200, 200}); });
    recognizer->setCancelsTouchesInView(false);
    rootView().addGestureRecognizer(recognizer);
    CGPoint pressedAt;
    button->addTarget(ControlEvent::touchUpInside, [&] { pressedAt = button->center(); });
    tap({10, 10});
    EXPECT_EQ(pressedAt, (CGPoint{25, 25}));
    EXPECT_EQ(button->center(), (CGPoint{200, 200}));
}

} // namespace
} // namespace korvane
