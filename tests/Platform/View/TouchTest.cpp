#include "Platform/View/UIButton.h"
#include "Platform/View/UIGestureRecognizer.h"
#include "tests/Platform/View/ViewSupport.h"

#include <sstream>

namespace korvane {
namespace {

/// A finger as a test writes it: "+1@9,8" comes down, "~1@9,8" moves, "-1@9,8" goes up, "x1@9,8" is lost.
UIWindow::TouchPoint finger(std::istream& script) {
    constexpr std::string_view kPhases = "+~-x"; // in the order of the enumeration
    UIWindow::TouchPoint point;
    char phase = 0, sign = 0;
    script >> phase >> point.identifier >> sign >> point.location.x >> sign >> point.location.y >> std::ws;
    point.phase = static_cast<UITouchPhase>(kPhases.find(phase));
    return point;
}

/// Tells what its touches do, and how many at once.
class TouchedView : public UIView {
public:
    void touchesBegan(const UITouches& touches) override { told("began", touches); }
    void touchesMoved(const UITouches& touches) override { told("moved", touches); }
    void touchesEnded(const UITouches& touches) override { told("ended", touches); }
    void touchesCancelled(const UITouches& touches) override { told("cancelled", touches); }

    std::function<void(const std::string&)> tell = [](const std::string&) {};

private:
    void told(std::string what, const UITouches& touches) {
        for (const auto& touch : touches)
            what += " " + std::to_string(touch->identifier());
        tell(what);
    }
};

class Touches : public ViewTest {
protected:
    /// A view that takes one finger, another that takes several, and a button.
    Touches() {
        one = add<TouchedView>(rootView(), {{0, 0}, {100, 100}});
        several = add<TouchedView>(rootView(), {{100, 0}, {100, 100}});
        several->setMultipleTouchEnabled(true);
        one->tell = several->tell = [this](const std::string& what) { tell(what); };
        button = add<UIButton>(rootView(), {{100, 100}, {50, 50}});
        button->addTarget(ControlEvent::touchUpInside, [this] { tell("up"); });
    }

    /// What is heard of fingers one after another.
    std::string heard(const std::string& script) {
        for (std::istringstream left(script); !left.eof();)
            window->sendTouch(finger(left));
        return taken();
    }
    std::string heardAtOnce(const std::string& script) {
        std::vector<UIWindow::TouchPoint> points;
        for (std::istringstream left(script); !left.eof();)
            points.push_back(finger(left));
        window->sendTouches(points);
        return taken();
    }

    std::shared_ptr<TouchedView> one, several;
    std::shared_ptr<UIButton> button;
};

TEST_F(Touches, GoToTheViewTheyBeganOn) {
    const std::pair<const char*, const char*> rows[] = {
        {"+1@9,9 ~1@300,9 -1@300,9", "began 1, moved 1, ended 1"},
        {"+1@9,9 +2@8,8 ~2@8,8 -1@9,9", "began 1, ended 1"},                    // a second one is too many
        {"+1@-5,9 -1@9,9", ""},                                                 // from beside the window
        {"+1@9,9 +1@109,9 -1@109,9", "began 1, cancelled 1, began 1, ended 1"}, // its end was not seen
        {"+1@110,110 -1@110,110", "up"},
        {"+1@110,110 ~1@0,0 -1@80,110", "up"}, // comes back, beside the button by a little
        {"+1@110,110 ~1@79,110 -1@79,110", ""},
        {"+1@110,110 x1@110,110", ""},
        {"+1@210,10 ~1@110,110 -1@110,110", ""}, // slips onto a button
    };
    for (const auto& [script, expected] : rows) {
        EXPECT_EQ(heard(script), expected) << script;
        window->cancelTouches();
        taken();
    }
    EXPECT_EQ(heardAtOnce("+1@110,10 +2@120,20"), "began 1 2");
    EXPECT_EQ(heardAtOnce("-1@110,10 ~2@300,300 +3@105,5"), "began 3, moved 2, ended 1");
    EXPECT_EQ(heardAtOnce("x2@300,300 -3@105,5"), "ended 3, cancelled 2");
    button->setEnabled(false);
    EXPECT_EQ(heard("+1@110,110 -1@110,110"), "");
}

TEST_F(Touches, TheTopmostViewThatTakesTouchesIsHit) {
    const auto below = add(rootView(), {{0, 0}, {100, 100}});
    const auto above = add(rootView(), {{50, 50}, {100, 100}});
    const auto hit = [this] { return window->hitTest({60, 60}); };
    EXPECT_EQ(hit(), above) << "the later one";
    above->setAlpha(0.009);
    EXPECT_EQ(hit(), below) << "transparent";
    above->setAlpha(1);
    above->setUserInteractionEnabled(false);
    add(*above, {{0, 0}, {100, 100}});
    EXPECT_EQ(hit(), below) << "with all in it";
    below->setHidden(true);
    EXPECT_EQ(hit(), one);
}

TEST_F(Touches, AreTakenFromWhatLeavesTheScreen) {
    const auto screen = std::make_shared<UIViewController>();
    root->present(screen, UIAnimated::no);
    screen->view()->addSubview(one);
    screen->view()->addSubview(button);
    EXPECT_EQ(heard("+1@10,10 +2@120,120"), "began 1");
    EXPECT_TRUE(button->isHighlighted());
    screen->dismiss(UIAnimated::no);
    EXPECT_EQ(heard("-1@10,10 -2@120,120"), "cancelled 1");
    EXPECT_FALSE(button->isHighlighted());
}

TEST_F(Touches, AnActionMayRemoveItsOwnControl) {
    const std::weak_ptr<UIButton> weak = button;
    button->addTarget(ControlEvent::touchUpInside, [](UIControl& sender) {
        sender.removeTargets(ControlEvent::touchUpInside);
        sender.removeFromSuperview();
    });
    button->addTarget(ControlEvent::touchUpInside, [this] { tell("after"); });
    button.reset();
    EXPECT_EQ(heard("+1@120,120 -1@120,120"), "up, after");
    EXPECT_TRUE(weak.expired());
}

TEST_F(Touches, ATapIsRecognisedAboveWhatItHitsAndActsAfterIt) {
    const auto tap = std::make_shared<UITapGestureRecognizer>([this] { tell("tap"); });
    rootView().addGestureRecognizer(tap);
    tap->setCancelsTouchesInView(false);
    EXPECT_EQ(heard("+1@9,9 -1@9,9"), "began 1, ended 1, tap");
    EXPECT_EQ(heard("+1@110,110 -1@110,110"), "up, tap");
    tap->setCancelsTouchesInView(true);
    EXPECT_EQ(heard("+1@9,9 -1@9,9"), "began 1, cancelled 1, tap");
    EXPECT_EQ(heard("+1@9,9 ~1@20,9 ~1@9,9 -1@9,9"), "began 1, moved 1, moved 1, ended 1") << "a drag";
}

} // namespace
} // namespace korvane
