#pragma once

#include "Platform/CGGeometry.h"
#include "Platform/View/UIColor.h"

#include <optional>

namespace korvane {

class CALayer;
class UIView;

/// A shadow as a value, in points.
struct Shadow {
    UIColor color = UIColor::black().withAlphaComponent(0.3);
    double radius = 5;
    float opacity = 1;
    CGSize offset{0, 1};
    /// The outline that casts it, where it is not the view's own.
    std::optional<CGRect> path = std::nullopt;
    friend bool operator==(const Shadow&, const Shadow&) = default;
};

void applyShadow(const Shadow& shadow, CALayer& layer);
void applyShadow(const Shadow& shadow, UIView& view);

} // namespace korvane
