#include "Platform/View/UIViewController.h"

#include "Platform/Platform.h"
#include "Platform/View/UINavigationController.h"
#include "Platform/View/UIWindow.h"

#include <algorithm>

namespace korvane {

UIViewController::UIViewController() : navigationItem_(std::make_shared<UINavigationItem>()) {}

/// Whoever points back at this controller without holding it is told.
UIViewController::~UIViewController() {
    if (view_) view_->controller_ = nullptr;
    for (const auto& child : children_)
        child->parent_ = nullptr;
    if (leaving_) leaving_->parent_ = nullptr;
}

const std::shared_ptr<UIView>& UIViewController::view() {
    if (view_) return view_;
    loadView();
    if (!view_) setView(std::make_shared<UIView>());
    if (const auto child = childForAppearance()) attachChild(*child);
    viewDidLoad();
    return view_;
}

void UIViewController::setView(std::shared_ptr<UIView> view) {
    if (view == view_) return;
    if (view_) view_->controller_ = nullptr;
    view_ = std::move(view);
    if (view_) view_->controller_ = this;
}

void UIViewController::loadView() {
    const auto loader = std::exchange(viewLoader_, nullptr);
    if (loader) return loader(*this);
    setView(std::make_shared<UIView>(Platform::current().mainScreen().bounds()));
}

bool UIViewController::isAppearing() const noexcept {
    return appearance_ == Appearance::appearing || appearance_ == Appearance::appeared;
}

UITraitCollection UIViewController::traitCollection() const {
    return view_ ? view_->traitCollection() : UITraitCollection{};
}

std::shared_ptr<UIViewController> UIViewController::self() const {
    return std::static_pointer_cast<UIViewController>(
        const_cast<UIViewController*>(this)->shared_from_this());
}

std::shared_ptr<UIViewController> UIViewController::parent() const {
    return parent_ ? parent_->self() : nullptr;
}

std::shared_ptr<UINavigationController> UIViewController::navigationController() const {
    for (auto around = parent(); around; around = around->parent())
        if (auto found = std::dynamic_pointer_cast<UINavigationController>(around)) return found;
    return nullptr;
}

std::shared_ptr<UIResponder> UIViewController::next() const {
    return view_ ? view_->superview() : nullptr;
}

void UIViewController::addChild(std::shared_ptr<UIViewController> child) {
    if (child->parent_ == this) return;
    child->removeFromParent();
    child->parent_ = this;
    children_.push_back(std::move(child));
}

void UIViewController::removeFromParent() {
    UIViewController* const old = std::exchange(parent_, nullptr);
    if (!old) return;
    const auto isThis = [this](const auto& child) { return child.get() == this; };
    if (old->leaving_.get() == this) old->leaving_.reset();
    std::erase_if(old->children_, isThis);
}

void UIViewController::setChildren(std::vector<std::shared_ptr<UIViewController>> children) {
    const auto shown = childForAppearance();
    const auto old = std::exchange(children_, std::move(children));
    for (const auto& child : old)
        child->parent_ = nullptr;
    for (const auto& child : children_) {
        if (child->parent_) child->removeFromParent();
        child->parent_ = this;
    }
    if (!shown || shown->parent_ == this) return;
    shown->parent_ = this;
    leaving_ = shown;
}

CGRect UIViewController::childFrame() const {
    return view_ ? CGRect{{0, 0}, view_->bounds().size} : CGRect{};
}

void UIViewController::attachChild(UIViewController& child) {
    child.view()->setFrame(childFrame());
    if (child.view()->superview() == view_) return;
    // Below what the container itself lays over its children.
    std::size_t above = 0;
    while (above < view_->subviews().size() && view_->subviews()[above]->viewController())
        ++above;
    view_->insertSubview(child.view(), above);
}

/// A child that has moved itself, as one does over a keyboard, stays there until its room is another.
void UIViewController::layOutChildren() {
    const CGRect room = childFrame();
    if (room == std::exchange(childRoom_, room)) return;
    const auto child = childForAppearance();
    if (child && child->view_ && child->view_->superview() == view_) child->view_->setFrame(room);
}

void UIViewController::beginAppearanceTransition(bool isAppearing, UIAnimated animated) {
    if (isAppearing == this->isAppearing()) return;
    if (!isAppearing && appearance_ == Appearance::disappearing) return;
    appearance_ = isAppearing ? Appearance::appearing : Appearance::disappearing;
    isAnimated_ = animated;
    if (isAppearing) {
        static_cast<void>(view());
        viewWillAppear(animated);
    } else {
        viewWillDisappear(animated);
    }
    if (const auto child = childForAppearance()) child->beginAppearanceTransition(isAppearing, animated);
}

void UIViewController::endAppearanceTransition() {
    if (appearance_ == Appearance::appearing) {
        appearance_ = Appearance::appeared;
        viewDidAppear(isAnimated_);
    } else if (appearance_ == Appearance::disappearing) {
        appearance_ = Appearance::disappeared;
        viewDidDisappear(isAnimated_);
    } else {
        return;
    }
    if (const auto child = childForAppearance()) child->endAppearanceTransition();
}

void UIViewController::exchangeChild(const std::shared_ptr<UIViewController>& old,
                                     const std::shared_ptr<UIViewController>& next, UIAnimated animated,
                                     Completion completion) {
    const auto here = self();
    const bool isShown = isAppearing();
    if (old != next && view_) {
        if (next) static_cast<void>(next->view());
        if (old && isShown) old->beginAppearanceTransition(false, animated);
        if (next && isShown) next->beginAppearanceTransition(true, animated);
        if (next) change(animated, [this, &next] { attachChild(*next); });
        if (isShown) view_->layoutIfNeeded();
    }
    runTransition(
        animated, [here, old, next] { here->endExchange(old, next); }, std::move(completion));
}

void UIViewController::endExchange(const std::shared_ptr<UIViewController>& old,
                                   const std::shared_ptr<UIViewController>& next) {
    if (old == next) return;
    if (old) {
        if (old->view_ && old->view_->superview() == view_) old->leaveTree();
        old->endAppearanceTransition();
        if (leaving_ == old) old->removeFromParent();
    }
    if (next) next->endAppearanceTransition();
}

} // namespace korvane
