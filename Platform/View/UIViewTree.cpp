#include "Platform/View/LayoutPlan.h"
#include "Platform/View/UIApplication.h"
#include "Platform/View/UIGestureRecognizer.h"
#include "Platform/View/UIScrollView.h"
#include "Platform/View/UIViewController.h"
#include "Platform/View/UIWindow.h"

#include <algorithm>
#include <limits>

namespace korvane {

namespace {

/// Stands for what a view showed at one moment.
class SnapshotView final : public UIView {
public:
    using UIView::UIView;

    [[nodiscard]] UIViewKind kind() const noexcept override { return UIViewKind::snapshot; }
};

constexpr std::size_t kOnTop = std::numeric_limits<std::size_t>::max();

} // namespace

std::shared_ptr<UIView> UIView::superview() const {
    return superview_ ? std::static_pointer_cast<UIView>(superview_->weak_from_this().lock()) : nullptr;
}

const UIView& UIView::root() const {
    const UIView* view = this;
    while (view->superview_)
        view = view->superview_;
    return *view;
}

std::shared_ptr<UIWindow> UIView::window() const {
    const UIView& top = root();
    if (top.kind() != UIViewKind::window) return nullptr;
    return std::static_pointer_cast<UIWindow>(const_cast<UIView&>(top).weak_from_this().lock());
}

bool UIView::isDescendant(const UIView& ofView) const {
    for (const UIView* view = this; view; view = view->superview_)
        if (view == &ofView) return true;
    return false;
}

void UIView::addSubview(std::shared_ptr<UIView> view) {
    insertSubview(std::move(view), kOnTop);
}

void UIView::insertSubview(std::shared_ptr<UIView> view, std::size_t atIndex) {
    if (view->superview_ == this) {
        moveSubview(*view, atIndex);
        return;
    }
    if (isDescendant(*view)) fatalError("A view cannot be put into itself.");
    view->removeFromSuperview();
    const auto place = subviews_.begin() + static_cast<std::ptrdiff_t>(std::min(atIndex, subviews_.size()));
    UIView& inserted = **subviews_.insert(place, std::move(view));
    inserted.superview_ = this;
    for (UIView* around = this; around; around = around->superview_)
        around->placeWatchers_ += inserted.placeWatchers_;
    setNeedsLayout();
    inserted.setNeedsDisplay();
    inserted.spreadPlace();
    if (root().kind() == UIViewKind::window) inserted.spreadWindow();
}

void UIView::moveSubview(const UIView& view, std::size_t toIndex) {
    const auto found = std::ranges::find(subviews_, &view, &std::shared_ptr<UIView>::get);
    auto moved = std::move(*found);
    subviews_.erase(found);
    const auto place = subviews_.begin() + static_cast<std::ptrdiff_t>(std::min(toIndex, subviews_.size()));
    subviews_.insert(place, std::move(moved));
    setNeedsDisplay();
}

void UIView::bringSubviewToFront(const std::shared_ptr<UIView>& view) {
    if (view->superview_ == this && subviews_.back() != view) moveSubview(*view, kOnTop);
}

void UIView::removeFromSuperview() {
    if (!superview_) return;
    const bool wasShown = root().kind() == UIViewKind::window;
    if (wasShown) endEditing();
    if (const auto shownIn = window()) shownIn->focusSystem().willLeave(*this);
    UIView* const old = superview_;
    if (!old) return; // whoever heard of the end of editing has removed it
    old->dropConstraints(*this);
    const auto found = std::ranges::find(old->subviews_, this, &std::shared_ptr<UIView>::get);
    const std::shared_ptr<UIView> self = *found;
    old->subviews_.erase(found);
    superview_ = nullptr;
    for (UIView* around = old; around; around = around->superview_)
        around->placeWatchers_ -= placeWatchers_;
    old->setNeedsLayout();
    old->setNeedsDisplay();
    if (wasShown) spreadWindow();
}

void UIView::spreadWindow() {
    if (safeArea_) setNeedsLayout(); // another window covers other parts
    if (sizesEra_ != sizesEra()) forgetSizes(sizesEra());
    didMoveToWindow();
    for (std::size_t index = 0; index < subviews_.size(); ++index) {
        const auto view = subviews_[index];
        view->spreadWindow();
    }
}

void UIView::watchPlace() {
    for (UIView* view = this; view; view = view->superview_)
        ++view->placeWatchers_;
}

/// Most views have nobody below who watches.
void UIView::spreadPlace() {
    if (placeWatchers_ == 0) return;
    placeDidChange();
    for (const auto& view : subviews_)
        view->spreadPlace();
}

void UIView::spreadTraits(const UITraitCollection& previous) {
    traitCollectionDidChange(previous);
    if (const auto controller = viewController()) controller->traitCollectionDidChange(previous);
    setNeedsDisplay();
    for (std::size_t index = 0; index < subviews_.size(); ++index) {
        const auto view = subviews_[index];
        view->spreadTraits(previous);
    }
}

std::shared_ptr<UIView> UIView::viewWithTag(int tag) const {
    if (tag_ == tag)
        return std::static_pointer_cast<UIView>(const_cast<UIView*>(this)->weak_from_this().lock());
    for (const auto& view : subviews_)
        if (auto found = view->viewWithTag(tag)) return found;
    return nullptr;
}

std::shared_ptr<UIViewController> UIView::viewController() const {
    return controller_ ? std::static_pointer_cast<UIViewController>(controller_->weak_from_this().lock())
                       : nullptr;
}

std::shared_ptr<UIView> UIView::snapshotView() const {
    auto snapshot = std::make_shared<SnapshotView>(frame());
    snapshot->setBackgroundColor(backgroundColor_);
    return snapshot;
}

std::shared_ptr<UIResponder> UIView::next() const {
    if (auto controller = viewController()) return controller;
    return superview();
}

std::shared_ptr<UIView> UIView::hitTest(CGPoint point) {
    if (!isShown() || !isUserInteractionEnabled_ || !pointInside(point)) return nullptr;
    for (auto view = subviews_.rbegin(); view != subviews_.rend(); ++view) {
        const UIView& child = **view;
        const CGPoint inChild{point.x - child.origin_.x + child.bounds_.origin.x,
                              point.y - child.origin_.y + child.bounds_.origin.y};
        if (auto hit = (*view)->hitTest(inChild)) return hit;
    }
    return std::static_pointer_cast<UIView>(shared_from_this());
}

/// A bar stays in sight, and what lies on it too.
void UIView::scrollIntoSight(const CGRect& part) const {
    for (const UIView* around = this; around; around = around->superview_) {
        if (around->kind() == UIViewKind::navigationBar) return;
        auto* const scroll = dynamic_cast<UIScrollView*>(around->superview_);
        if (scroll) scroll->scrollRectToVisible(convertTo(scroll, part), UIAnimated::no);
    }
}

void UIView::addGestureRecognizer(std::shared_ptr<UIGestureRecognizer> recognizer) {
    gestureRecognizers_.push_back(std::move(recognizer));
}

void UIView::endEditing() {
    const auto responder = UIApplication::shared().firstResponder();
    const auto view = std::dynamic_pointer_cast<UIView>(responder);
    if (view && view->isDescendant(*this)) view->resignFirstResponder();
}

} // namespace korvane
