#pragma once

#include "Platform/View/UIApplication.h"
#include "Platform/View/UIViewController.h"
#include "Platform/View/UIWindow.h"
#include "tests/support/SimulatedPlatform.h"

#include <gmock/gmock.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace korvane {

inline void PrintTo(const CGRect& rect, std::ostream* out) {
    *out << '(' << rect.origin.x << ' ' << rect.origin.y << ' ' << rect.size.width << ' ' << rect.size.height
         << ')';
}

using Log = std::vector<std::string>;

/// Tells what happens to it.
class TellingController : public UIViewController {
public:
    TellingController(std::string name, Log& log) : name_(std::move(name)), log_(log) {}

    void viewDidLoad() override { tell("didLoad"); }
    void viewWillAppear(UIAnimated /*animated*/) override { tell("willAppear"); }
    void viewDidAppear(UIAnimated /*animated*/) override { tell("didAppear"); }
    void viewWillDisappear(UIAnimated /*animated*/) override { tell("willDisappear"); }
    void viewDidDisappear(UIAnimated /*animated*/) override { tell("didDisappear"); }
    void viewWillLayoutSubviews() override { tell("willLayout"); }
    void viewDidLayoutSubviews() override { tell("didLayout"); }

private:
    void tell(const std::string& what) { log_.push_back(name_ + "." + what); }

    std::string name_;
    Log& log_;
};

/// A key window of 320 by 480 points with an empty root.
class ViewTest : public testing::Test {
protected:
    ViewTest() {
        platform.script().bounds = {{0, 0}, {320, 480}};
        window = std::make_shared<UIWindow>();
        root = std::make_shared<UIViewController>();
        window->setRootViewController(root);
        window->makeKeyAndVisible();
        platform.runUntilIdle();
    }

    UIView& rootView() { return *root->view(); }

    template <class View>
    std::shared_ptr<View> add(UIView& to, const CGRect& frame) {
        auto view = std::make_shared<View>();
        view->setFrame(frame);
        to.addSubview(view);
        return view;
    }

    void touch(UITouchPhase phase, CGPoint at, std::uint64_t finger = 1) {
        window->sendTouch({finger, phase, at});
    }
    void tap(CGPoint at) {
        touch(UITouchPhase::began, at);
        touch(UITouchPhase::ended, at);
    }

    SimulatedPlatform platform;
    std::shared_ptr<UIWindow> window;
    std::shared_ptr<UIViewController> root;
};

} // namespace korvane
