#include "Platform/View/UIGestureRecognizer.h"

#include "Platform/View/UIView.h"

#include <cmath>

namespace korvane {

bool UITapGestureRecognizer::recognizes(const UITouch& touch, const UIView& view) {
    constexpr double kMostDrift = 10;
    if (touch.phase() == UITouchPhase::began) {
        if (isTracking_) return false;
        isTracking_ = true;
        finger_ = touch.identifier();
        start_ = touch.location(nullptr);
        return false;
    }
    if (!isTracking_ || touch.identifier() != finger_) return false;
    const CGPoint now = touch.location(nullptr);
    const bool hasDrifted = std::hypot(now.x - start_.x, now.y - start_.y) > kMostDrift;
    const bool isDone = touch.phase() == UITouchPhase::ended || touch.phase() == UITouchPhase::cancelled;
    if (isDone || hasDrifted) isTracking_ = false;
    return touch.phase() == UITouchPhase::ended && !hasDrifted && view.pointInside(touch.location(&view));
}

} // namespace korvane
