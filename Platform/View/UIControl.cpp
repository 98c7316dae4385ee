#include "Platform/View/UIControl.h"

#include <algorithm>

namespace korvane {

void UIControl::addTarget(ControlEvent event, Action action) {
    targets_.push_back({event, std::move(action)});
}

void UIControl::addTarget(ControlEvent event, std::function<void()> action) {
    addTarget(event, Action([action = std::move(action)](UIControl&) { action(); }));
}

void UIControl::removeTargets(ControlEvent event) {
    std::erase_if(targets_, [event](const Target& target) { return target.event == event; });
}

void UIControl::sendActions(ControlEvent event) {
    const auto self = shared_from_this();
    std::vector<Action> actions;
    for (const Target& target : targets_)
        if (target.event == event) actions.push_back(target.action);
    for (const Action& action : actions)
        action(*this);
}

void UIControl::setState(bool& flag, bool value) {
    if (assign(flag, value, UIViewChange::paint)) stateDidChange();
}

void UIControl::setEnabled(bool isEnabled) {
    setState(isEnabled_, isEnabled);
}

void UIControl::setSelected(bool isSelected) {
    setState(isSelected_, isSelected);
}

void UIControl::setHighlighted(bool isHighlighted) {
    setState(isHighlighted_, isHighlighted);
}

ControlState UIControl::state() const noexcept {
    if (!isEnabled_) return ControlState::disabled;
    if (isHighlighted_) return ControlState::highlighted;
    return isSelected_ ? ControlState::selected : ControlState::normal;
}

/// What a control is made of does not take its touches.
std::shared_ptr<UIView> UIControl::hitTest(CGPoint point) {
    return UIView::hitTest(point) ? std::static_pointer_cast<UIView>(shared_from_this()) : nullptr;
}

/// A finger may slip off the control a little.
bool UIControl::isWithinReach(const UITouches& touches) const {
    constexpr double kSlip = 20;
    const CGRect reach = UIEdgeInsetsInsetRect(bounds(), {-kSlip, -kSlip, -kSlip, -kSlip});
    return std::ranges::any_of(
        touches, [&](const auto& touch) { return CGRectContainsPoint(reach, touch->location(this)); });
}

void UIControl::didMoveToWindow() {
    if (window() || !isTracking_) return;
    isTracking_ = false;
    setHighlighted(false);
}

void UIControl::touchesBegan(const UITouches& /*touches*/) {
    if (!isEnabled_) return;
    isTracking_ = true;
    setHighlighted(true);
}

void UIControl::touchesMoved(const UITouches& touches) {
    if (!isTracking_) return;
    setHighlighted(isWithinReach(touches));
}

void UIControl::touchesEnded(const UITouches& touches) {
    if (!isTracking_) return;
    isTracking_ = false;
    setHighlighted(false);
    if (isWithinReach(touches)) sendActions(ControlEvent::touchUpInside);
}

void UIControl::touchesCancelled(const UITouches& /*touches*/) {
    if (!isTracking_) return;
    isTracking_ = false;
    setHighlighted(false);
}

} // namespace korvane
