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
    const auto stack = std::make_shared<UINavigationController>(a);
    show(stack);
    stack->pushViewController(b, UIAnimated::no);
    EXPECT_EQ(taken(), "b loads, a goes, b comes, a gone, b there");
    EXPECT_EQ(stack->popViewController(UIAnimated::no), b);
    EXPECT_EQ(taken(), "b goes, a comes, b gone, a there");
    stack->setViewControllers({b}, UIAnimated::yes, note("done"));
    EXPECT_EQ(taken(), "a goes, b comes");
    stack->setViewControllers({a}, UIAnimated::yes);
    EXPECT_EQ(taken(), "a gone, b there, b goes, a comes") << "what began before ends first";
    EXPECT_EQ(takenLater(), "done, b gone, a there");
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
}

} // namespace
} // namespace korvane
