#include "Platform/View/UIResponder.h"

#include "Platform/View/UIApplication.h"
#include "Platform/View/UIView.h"

namespace korvane {

void UIResponder::touchesBegan(const UITouches& touches) {
    if (const auto responder = next()) responder->touchesBegan(touches);
}

void UIResponder::touchesMoved(const UITouches& touches) {
    if (const auto responder = next()) responder->touchesMoved(touches);
}

void UIResponder::touchesEnded(const UITouches& touches) {
    if (const auto responder = next()) responder->touchesEnded(touches);
}

void UIResponder::touchesCancelled(const UITouches& touches) {
    if (const auto responder = next()) responder->touchesCancelled(touches);
}

bool UIResponder::isFirstResponder() const {
    return UIApplication::shared().firstResponder().get() == this;
}

bool UIResponder::becomeFirstResponder() {
    if (isFirstResponder()) return true;
    if (!canBecomeFirstResponder()) return false;
    UIApplication::shared().setFirstResponder(std::static_pointer_cast<UIResponder>(shared_from_this()));
    return true;
}

void UIResponder::resignFirstResponder() {
    if (isFirstResponder()) UIApplication::shared().setFirstResponder(nullptr);
}

CGPoint UITouch::location(const UIView* inView) const {
    if (!inView) return location_;
    const CGPoint zero = inView->convertTo(nullptr, CGPoint{});
    return {location_.x - zero.x, location_.y - zero.y};
}

} // namespace korvane
