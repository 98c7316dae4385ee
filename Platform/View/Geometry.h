#pragma once

#include "Platform/CGGeometry.h"

#include <limits>

namespace korvane {

/// An extent without a bound, for fitting sizes.
inline constexpr double kUnbounded = std::numeric_limits<double>::max();

/// Distances inwards from the sides of a rectangle, in points; negative ones go outwards.
struct UIEdgeInsets {
    double top = 0;
    double left = 0;
    double bottom = 0;
    double right = 0;
    friend bool operator==(const UIEdgeInsets&, const UIEdgeInsets&) = default;
};

[[nodiscard]] constexpr double CGRectGetMaxX(const CGRect& rect) {
    return rect.origin.x + rect.size.width;
}

[[nodiscard]] constexpr double CGRectGetMaxY(const CGRect& rect) {
    return rect.origin.y + rect.size.height;
}

/// Left and top sides belong to the rectangle, right and bottom sides do not.
[[nodiscard]] constexpr bool CGRectContainsPoint(const CGRect& rect, CGPoint point) {
    return point.x >= rect.origin.x && point.y >= rect.origin.y && point.x < CGRectGetMaxX(rect) &&
           point.y < CGRectGetMaxY(rect);
}

[[nodiscard]] constexpr CGRect CGRectOffset(const CGRect& rect, double dx, double dy) {
    return {{rect.origin.x + dx, rect.origin.y + dy}, rect.size};
}

[[nodiscard]] constexpr CGRect UIEdgeInsetsInsetRect(const CGRect& rect, const UIEdgeInsets& insets) {
    return {{rect.origin.x + insets.left, rect.origin.y + insets.top},
            {rect.size.width - insets.left - insets.right, rect.size.height - insets.top - insets.bottom}};
}

} // namespace korvane
