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

/// A key window of 320 by 480 points with an empty root, and what a test has heard.
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

    template <class View = UIView>
    std::shared_ptr<View> add(UIView& to, const CGRect& frame) {
        auto view = std::make_shared<View>();
        view->setFrame(frame);
        to.addSubview(view);
        return view;
    }

    void tell(const std::string& what) { log += (log.empty() ? "" : ", ") + what; }
    std::string taken() { return std::exchange(log, {}); }

    std::string log;
    SimulatedPlatform platform;
    std::shared_ptr<UIWindow> window;
    std::shared_ptr<UIViewController> root;
};

} // namespace korvane
