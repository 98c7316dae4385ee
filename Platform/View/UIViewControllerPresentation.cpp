#include "Platform/Logger.h"
#include "Platform/Platform.h"
#include "Platform/View/UIApplication.h"
#include "Platform/View/UIViewController.h"
#include "Platform/View/UIWindow.h"

#include <algorithm>

namespace korvane {

namespace {

/// What leaves fades so far: it is not seen, and takes touches until it has gone.
constexpr double kFaded = 0.01;

void runFromMainQueue(UIViewController::Completion completion) {
    if (completion) Platform::current().dispatch().mainQueue().async(std::move(completion));
}

void runOnce(UIViewController::Completion& work) {
    const auto once = std::exchange(work, nullptr);
    if (once) once();
}

/// Whether what lies below a controller leaves the screen once it has appeared.
bool covers(const UIViewController& controller) {
    return controller.modalPresentationStyle() != UIModalPresentationStyle::overFullScreen;
}

/// Puts a controller's view into a window, at an index among what is there.
void show(UIViewController& controller, UIWindow& window, std::size_t atIndex) {
    controller.view()->setFrame({{0, 0}, window.bounds().size});
    window.insertSubview(controller.view(), atIndex);
}

} // namespace

void UIViewController::change(UIAnimated animated, const std::function<void()>& changes) {
    if (animated == UIAnimated::no) return changes();
    UIView::animate(UIApplication::kTransition, changes);
}

/// Runs the second half of a change: now, or when it has been seen. What comes before that finishes it.
void UIViewController::runTransition(UIAnimated animated, Completion secondHalf, Completion completion) {
    if (animated == UIAnimated::no) {
        secondHalf();
        return runFromMainQueue(std::move(completion));
    }
    const auto transition = std::make_shared<Completion>([secondHalf = std::move(secondHalf), completion] {
        secondHalf();
        runFromMainQueue(completion);
    });
    transition_ = transition;
    UIApplication::shared().afterAnimation(UIApplication::kTransition,
                                           [transition] { runOnce(*transition); });
}

void UIViewController::finishTransition() {
    if (const auto transition = transition_.lock()) runOnce(*transition);
}

std::shared_ptr<UIViewController> UIViewController::outermost() const {
    auto controller = self();
    while (const auto around = controller->parent())
        controller = around;
    return controller;
}

std::shared_ptr<UIViewController> UIViewController::presentedViewController() const {
    for (auto controller = self(); controller; controller = controller->parent())
        if (controller->presented_) return controller->presented_;
    return nullptr;
}

std::shared_ptr<UIViewController> UIViewController::presentingViewController() const {
    for (auto controller = self(); controller; controller = controller->parent())
        if (auto presenting = controller->presenting_.lock()) return presenting;
    return nullptr;
}

void UIViewController::present(std::shared_ptr<UIViewController> controller, UIAnimated animated,
                               Completion completion) {
    const auto presenter = outermost();
    presenter->finishTransition();
    if (presenter->presented_ || controller->presenting_.lock() || controller->parent_) {
        KORVANE_LOG("present(_:animated:completion:)", "A controller is presented already.");
        return;
    }
    presenter->presented_ = controller;
    controller->presenting_ = presenter;
    static_cast<void>(controller->view());

    const auto window = presenter->view()->window();
    const bool hides = window && covers(*controller);
    if (hides) presenter->beginAppearanceTransition(false, animated);
    if (window) controller->beginAppearanceTransition(true, animated);
    controller->view()->setAlpha(1);
    if (window) change(animated, [&] { show(*controller, *window, window->subviews().size()); });
    if (window) window->layoutIfNeeded();
    presenter->runTransition(
        animated,
        [presenter, controller, hides] {
            if (hides) presenter->leaveTree();
            controller->endAppearanceTransition();
            presenter->endAppearanceTransition();
        },
        std::move(completion));
}

void UIViewController::dismiss(UIAnimated animated, Completion completion) {
    auto presenter = outermost();
    if (!presenter->presented_) presenter = presentingViewController();
    if (presenter) presenter->finishTransition();
    if (!presenter || !presenter->presented_) return runFromMainQueue(std::move(completion));

    auto top = presenter->presented_;
    while (top->presented_) {
        top->finishTransition();
        if (top->presented_) top = top->presented_;
    }
    top->finishTransition();
    const auto window = top->view()->window();
    top->beginAppearanceTransition(false, animated);
    if (window && !presenter->view()->superview()) {
        presenter->beginAppearanceTransition(true, animated);
        show(*presenter, *window, 0);
        window->layoutIfNeeded();
    }
    change(animated, [&] { top->view()->setAlpha(kFaded); });
    presenter->runTransition(
        animated, [presenter, top] { presenter->endDismissal(top); }, std::move(completion));
}

/// What returns is told before what goes, which stays alive so long.
void UIViewController::endDismissal(const std::shared_ptr<UIViewController>& top) {
    dropPresented();
    endAppearanceTransition();
    top->endAppearanceTransition();
}

/// Takes everything that is presented over this controller off the screen, from the top.
void UIViewController::dropPresented() {
    const auto presented = std::exchange(presented_, nullptr);
    if (!presented) return;
    presented->dropPresented();
    presented->presenting_.reset();
    presented->leaveTree();
}

void UIViewController::leaveTree() {
    const auto view = view_;
    if (!view) return;
    if (const auto window = view->window()) window->cancelTouches(view.get());
    view->removeFromSuperview();
}

} // namespace korvane
