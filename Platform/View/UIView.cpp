#include "Platform/View/UIView.h"

#include "Platform/View/LayoutPlan.h"
#include "Platform/View/UIApplication.h"
#include "Platform/View/UIGestureRecognizer.h"
#include "Platform/View/UIWindow.h"

#include <atomic>

namespace korvane {

namespace {

/// The animation whose changes this thread is making.
thread_local std::optional<UIViewAnimation> currentAnimation;

class AnimationScope {
public:
    explicit AnimationScope(const UIViewAnimation& animation)
        : outer_(std::exchange(currentAnimation, animation)) {}
    AnimationScope(const AnimationScope&) = delete;
    AnimationScope& operator=(const AnimationScope&) = delete;
    ~AnimationScope() { currentAnimation = outer_; }

private:
    std::optional<UIViewAnimation> outer_;
};

std::uint64_t nextRevision() {
    static std::atomic<std::uint64_t> last{0};
    return last.fetch_add(1, std::memory_order_relaxed) + 1;
}

} // namespace

UIView::UIView() = default;

UIView::UIView(const CGRect& frame) : origin_(frame.origin), bounds_{{0, 0}, frame.size} {}

/// Whoever points back at this view without holding it is told.
UIView::~UIView() {
    for (const auto& view : subviews_)
        view->superview_ = nullptr;
    for (const auto& constraint : constraints_)
        constraint->holder_ = nullptr;
    for (const auto& guide : {safeArea_, readable_})
        if (guide) guide->owner_ = nullptr;
}

void UIView::setBackgroundColor(std::optional<UIColor> color) {
    assign(backgroundColor_, std::move(color), UIViewChange::paint);
}

UIColor UIView::tintColor() const {
    for (const UIView* view = this; view; view = view->superview_)
        if (view->tintColor_) return *view->tintColor_;
    return UIColor::systemBlue();
}

void UIView::setTintColor(std::optional<UIColor> color) {
    assign(tintColor_, std::move(color), UIViewChange::paint);
}

UIColor UIView::focusColor() const {
    for (const UIView* view = this; view; view = view->superview_)
        if (view->focusColor_) return *view->focusColor_;
    return tintColor();
}

void UIView::setFocusColor(std::optional<UIColor> color) {
    assign(focusColor_, std::move(color), UIViewChange::paint);
}

void UIView::setHidden(bool isHidden) {
    if (assign(isHidden_, isHidden, UIViewChange::paint) && collapses_ && superview_)
        superview_->setNeedsLayout();
}

void UIView::hideFromCapture(bool hide) {
    constexpr double kEveryPicture = 18;
    layer_.setValue(hide ? kEveryPicture : 0, std::string(CALayer::kCaptureMask));
}

void UIView::didChange(UIViewChange change) {
    if (change == UIViewChange::content) invalidateIntrinsicContentSize();
    if (change == UIViewChange::layout) setNeedsLayout();
    setNeedsDisplay();
}

void UIView::setNeedsDisplay() {
    revision_ = nextRevision();
    animation_ = currentAnimation;
    UIView* view = this;
    view->treeRevision_ = revision_;
    while (view->superview_) {
        view = view->superview_;
        view->treeRevision_ = revision_;
    }
    view->treeDidChange();
}

void UIView::animate(UIViewAnimation animation, const std::function<void()>& animations,
                     std::function<void()> completion) {
    {
        const AnimationScope scope(animation);
        animations();
    }
    if (completion)
        UIApplication::shared().afterAnimation(animation.delay + animation.duration, std::move(completion));
}

UITraitCollection UIView::traitCollection() const {
    auto shownIn = window();
    if (!shownIn) shownIn = UIApplication::shared().keyWindow();
    return shownIn ? shownIn->traits() : UITraitCollection{};
}

bool UIView::isAccessibilityElement() const {
    const CGSize size = bounds_.size;
    if (!isShown() || size.width <= 0 || size.height <= 0) return false;
    switch (accessibilityRole()) {
    case UIAccessibilityRole::none: return false;
    case UIAccessibilityRole::staticText:
    case UIAccessibilityRole::header:
    case UIAccessibilityRole::image: return !accessibilityLabel().empty();
    case UIAccessibilityRole::button:
    case UIAccessibilityRole::textField:
    case UIAccessibilityRole::checkBox:
    case UIAccessibilityRole::radioButton:
    case UIAccessibilityRole::list:
    case UIAccessibilityRole::page: break;
    }
    return true;
}

UIAccessibilityRole UIView::accessibilityRole() const {
    return role_.value_or(defaultAccessibilityRole());
}

void UIView::setAccessibilityRole(UIAccessibilityRole role) {
    assign(role_, role, UIViewChange::paint);
}

std::string UIView::accessibilityLabel() const {
    return label_.empty() ? defaultAccessibilityLabel() : label_;
}

void UIView::setAccessibilityLabel(std::string label) {
    assign(label_, std::move(label), UIViewChange::paint);
}

void UIView::setAccessibilityIdentifier(std::string identifier) {
    assign(identifier_, std::move(identifier), UIViewChange::paint);
}

} // namespace korvane
