#include "Platform/View/UINavigationController.h"

#include "Platform/View/UIApplication.h"

#include <algorithm>

namespace korvane {

UINavigationController::UINavigationController() : bar_(std::make_shared<UINavigationBar>()) {}

UINavigationController::UINavigationController(std::shared_ptr<UIViewController> rootViewController)
    : UINavigationController() {
    addChild(std::move(rootViewController));
    showItem();
}

std::shared_ptr<UIViewController> UINavigationController::topViewController() const {
    return viewControllers().empty() ? nullptr : viewControllers().back();
}

std::shared_ptr<UIViewController> UINavigationController::visibleViewController() const {
    const auto presented = presentedViewController();
    return presented ? presented : topViewController();
}

void UINavigationController::pushViewController(std::shared_ptr<UIViewController> controller,
                                                UIAnimated animated, Completion completion) {
    auto controllers = viewControllers();
    if (std::ranges::find(controllers, controller) == controllers.end())
        controllers.push_back(std::move(controller));
    setViewControllers(std::move(controllers), animated, std::move(completion));
}

std::shared_ptr<UIViewController> UINavigationController::popViewController(UIAnimated animated,
                                                                            Completion completion) {
    if (viewControllers().size() < 2) return nullptr;
    auto controllers = viewControllers();
    auto popped = controllers.back();
    controllers.pop_back();
    setViewControllers(std::move(controllers), animated, std::move(completion));
    return popped;
}

void UINavigationController::setViewControllers(std::vector<std::shared_ptr<UIViewController>> controllers,
                                                UIAnimated animated, Completion completion) {
    finishTransition();
    const auto old = topViewController();
    setChildren(std::move(controllers));
    showItem();
    exchangeChild(old, topViewController(), animated, std::move(completion));
}

void UINavigationController::setNavigationBarHidden(bool isHidden, UIAnimated animated) {
    const auto change = [&] {
        bar_->setHidden(isHidden);
        if (!isViewLoaded()) return;
        view()->setNeedsLayout();
        view()->layoutIfNeeded();
    };
    if (animated == UIAnimated::yes && isViewLoaded())
        UIView::animate(UIApplication::kTransition, change);
    else
        change();
}

void UINavigationController::loadView() {
    UIViewController::loadView();
    view()->addSubview(bar_);
}

bool UINavigationController::prefersStatusBarHidden() const {
    const auto top = topViewController();
    return top && top->prefersStatusBarHidden();
}

CGRect UINavigationController::childFrame() const {
    CGRect frame = UIViewController::childFrame();
    if (bar_->isHidden()) return frame;
    const double below = CGRectGetMaxY(bar_->frame());
    return UIEdgeInsetsInsetRect(frame, {below, 0, 0, 0});
}

void UINavigationController::layOutChildren() {
    bar_->setFrame(
        {{0, view()->safeAreaInsets().top}, {view()->bounds().size.width, UINavigationBar::kHeight}});
    UIViewController::layOutChildren();
}

void UINavigationController::showItem() {
    const auto top = topViewController();
    bar_->setItems(top ? std::vector{top->navigationItem()}
                       : std::vector<std::shared_ptr<UINavigationItem>>{});
}

void UITabBarController::setViewControllers(std::vector<std::shared_ptr<UIViewController>> controllers) {
    finishTransition();
    const auto old = selectedViewController();
    const auto first = controllers.empty() ? nullptr : controllers.front();
    setChildren(std::move(controllers));
    selected_ = first;
    exchangeChild(old, first, UIAnimated::no, {});
}

} // namespace korvane
