#include "Platform/Failure.h"
#include "Platform/View/LayoutPlan.h"
#include "Platform/View/UIViewController.h"
#include "Platform/View/UIWindow.h"

#include <algorithm>

namespace korvane {

void UIView::setFrame(const CGRect& frame) {
    if (frame == this->frame()) return;
    const bool isResized = !(frame.size == bounds_.size);
    origin_ = frame.origin;
    bounds_.size = frame.size;
    if (isResized) {
        fittings_ = {};
        setNeedsLayout();
    }
    setNeedsDisplay();
    spreadPlace();
}

/// A view that grows by its bounds grows around its middle.
void UIView::setBounds(const CGRect& bounds) {
    if (bounds == bounds_) return;
    bounds_.origin = bounds.origin;
    const CGPoint middle = center();
    setFrame({{middle.x - bounds.size.width / 2, middle.y - bounds.size.height / 2}, bounds.size});
    setNeedsDisplay();
    spreadPlace();
}

CGPoint UIView::center() const noexcept {
    return {origin_.x + bounds_.size.width / 2, origin_.y + bounds_.size.height / 2};
}

CGPoint UIView::originInRoot() const {
    CGPoint point;
    for (const UIView* view = this; view->superview_; view = view->superview_) {
        point.x += view->origin_.x - view->bounds_.origin.x;
        point.y += view->origin_.y - view->bounds_.origin.y;
    }
    return point;
}

CGPoint UIView::convertTo(const UIView* view, CGPoint point) const {
    const CGPoint own = originInRoot();
    const CGPoint other = view ? view->originInRoot() : CGPoint{};
    return {point.x + own.x - other.x, point.y + own.y - other.y};
}

CGRect UIView::convertTo(const UIView* view, const CGRect& rect) const {
    return {convertTo(view, rect.origin), rect.size};
}

CGPoint UIView::middleInWindow() const {
    return convertTo(nullptr, CGPoint{bounds_.origin.x + bounds_.size.width / 2,
                                      bounds_.origin.y + bounds_.size.height / 2});
}

/// What lies beyond the window is covered by nothing: a view that is moved out takes its content along.
UIEdgeInsets UIView::safeAreaInsets() const {
    const auto shownIn = window();
    if (!shownIn) return {};
    const UIEdgeInsets most = shownIn->safeAreaInsets();
    const CGRect safe = UIEdgeInsetsInsetRect(shownIn->bounds(), most);
    const CGRect own = convertTo(nullptr, bounds_);
    const auto covered = [](double distance, double extent, double inset) {
        return std::clamp(distance, 0.0, std::min(extent, inset));
    };
    return {covered(safe.origin.y - own.origin.y, own.size.height, most.top),
            covered(safe.origin.x - own.origin.x, own.size.width, most.left),
            covered(CGRectGetMaxY(own) - CGRectGetMaxY(safe), own.size.height, most.bottom),
            covered(CGRectGetMaxX(own) - CGRectGetMaxX(safe), own.size.width, most.right)};
}

std::shared_ptr<UILayoutGuide> UIView::safeAreaLayoutGuide() {
    if (!safeArea_) safeArea_ = std::make_shared<UILayoutGuide>(*this, UILayoutGuideKind::safeArea);
    return safeArea_;
}

std::shared_ptr<UILayoutGuide> UIView::readableContentGuide() {
    if (!readable_) readable_ = std::make_shared<UILayoutGuide>(*this, UILayoutGuideKind::readable);
    return readable_;
}

bool UIView::isRightToLeft() const {
    for (const UIView* view = this; view; view = view->superview_)
        if (view->isRightToLeft_) return *view->isRightToLeft_;
    return false;
}

void UIView::setRightToLeft(bool isRightToLeft) {
    if (assign(isRightToLeft_, isRightToLeft, UIViewChange::layout)) invalidateTree();
}

void UIView::addConstraint(std::shared_ptr<NSLayoutConstraint> constraint) {
    if (constraint->holder_ == this) return;
    if (constraint->holder_) constraint->holder_->removeConstraint(constraint);
    constraint->holder_ = this;
    constraints_.push_back(std::move(constraint));
    constraintsDidChange();
}

void UIView::removeConstraint(const std::shared_ptr<NSLayoutConstraint>& constraint) {
    if (constraint->holder_ != this) return;
    constraint->holder_ = nullptr;
    std::erase(constraints_, constraint);
    constraintsDidChange();
}

void UIView::dropConstraints(const UIView& of) {
    const auto concerns = [&of](const std::shared_ptr<NSLayoutConstraint>& constraint) {
        const bool isConcerned =
            constraint->firstItem().get() == &of || constraint->secondItem().get() == &of;
        if (isConcerned) constraint->holder_ = nullptr;
        return isConcerned;
    };
    if (std::erase_if(constraints_, concerns) > 0) constraintsDidChange();
}

void UIView::constraintsDidChange() {
    plan_.reset();
    setNeedsLayout();
}

/// A pass that is under way above comes round to this view by itself.
void UIView::setNeedsLayout() {
    needsLayout_ = true;
    bool isUnderWay = false;
    UIView* view = this;
    for (;;) {
        view->treeNeedsLayout_ = true;
        isUnderWay = isUnderWay || view->isLayingOut_;
        if (!view->superview_) break;
        view = view->superview_;
    }
    if (!isUnderWay) view->treeNeedsLayout();
}

void UIView::layoutIfNeeded() {
    // What one pass moves may ask for another one; screens settle in two.
    constexpr int kMostPasses = 8;
    if (isLayingOut_) return;
    isLayingOut_ = true;
    for (int pass = 0; pass < kMostPasses && treeNeedsLayout_; ++pass)
        layoutTree();
    isLayingOut_ = false;
}

void UIView::layoutTree() {
    if (!treeNeedsLayout_) return;
    treeNeedsLayout_ = false;
    if (needsLayout_) layoutOnce();
    for (std::size_t index = 0; index < subviews_.size(); ++index) {
        const auto view = subviews_[index];
        view->layoutTree();
    }
}

void UIView::layoutOnce() {
    const auto controller = viewController();
    if (controller) controller->viewWillLayoutSubviews();
    needsLayout_ = false;
    layoutSubviews();
    if (!controller) return;
    controller->layOutChildren();
    controller->viewDidLayoutSubviews();
}

void UIView::layoutSubviews() {
    if (constraints_.empty()) return;
    try {
        makePlan();
    } catch (const LayoutPlan::Fault& fault) {
        fatalError(fault.text);
    }
    plan_->run();
}

void UIView::makePlan() {
    if (!plan_) plan_ = std::make_unique<LayoutPlan>(*this);
}

CGSize UIView::sizeThatFits(CGSize /*size*/) const {
    return bounds_.size;
}

CGSize UIView::fittingSize(double width) const {
    Fitting& memory = fittings_[width == kUnbounded ? 0 : 1];
    if (memory.width != width) memory = {width, sizeThatFits({width, kUnbounded})};
    return memory.size;
}

std::atomic<std::uint64_t>& UIView::sizesEra() {
    static std::atomic<std::uint64_t> era{0};
    return era;
}

void UIView::forgetSizes(std::uint64_t era) {
    sizesEra_ = era;
    invalidateIntrinsicContentSize();
    setNeedsDisplay();
    for (const auto& view : subviews_)
        view->forgetSizes(era);
}

void UIView::invalidateTree() {
    forgetSizes(++sizesEra());
}

void UIView::invalidateIntrinsicContentSize() {
    fittings_ = {};
    setNeedsLayout();
    if (!superview_) return;
    superview_->setNeedsLayout();
    superview_->subviewContentDidChange();
}

} // namespace korvane
