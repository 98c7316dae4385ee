#include "Ui/Screens/ChallengeViewController.h"

#include <array>

namespace korvane {

namespace {

using Neighbour = const UIView*;

/// An edge or a length of the view: its new constant, and what stands beside the edge.
struct Side {
    NSLayoutAttribute attribute;
    std::optional<double> constant;
    Neighbour neighbour = nullptr;

    [[nodiscard]] bool isLength() const {
        return attribute == NSLayoutAttribute::width || attribute == NSLayoutAttribute::height;
    }
};

/// Whether the other side of a constraint is the neighbour; without one, the superview or a guide of it, and
/// for a length also nothing.
bool isBoundTo(const NSLayoutConstraint& constraint, UIView& superview, const Side& side) {
    const auto item = constraint.secondItem();
    if (side.neighbour) return item.get() == side.neighbour;
    if (!item) return side.isLength();
    return item.get() == &superview || item == superview.safeAreaLayoutGuide() ||
           item == superview.readableContentGuide();
}

void applyConstant(UIView& superview, const UIView& view, const Side& side) {
    if (!side.constant) return;
    for (const auto& constraint : superview.constraints()) {
        if (constraint->firstItem().get() != &view || constraint->firstAttribute() != side.attribute)
            continue;
        if (!isBoundTo(*constraint, superview, side)) continue;
        constraint->setConstant(*side.constant);
        return;
    }
}

} // namespace

void ChallengeViewController::applyConstraints(UIView& superview, const UIView& view, const UIView* topView,
                                               const UIView* bottomView, const UIView* leftView,
                                               const UIView* rightView, const UiConstraints& constraints) {
    const std::array<Side, 6> sides{{
        {NSLayoutAttribute::leading, constraints.leading, leftView},
        {NSLayoutAttribute::trailing, constraints.trailing, rightView},
        {NSLayoutAttribute::top, constraints.top, topView},
        {NSLayoutAttribute::bottom, constraints.bottom, bottomView},
        {NSLayoutAttribute::height, constraints.height},
        {NSLayoutAttribute::width, constraints.width},
    }};
    for (const Side& side : sides)
        applyConstant(superview, view, side);
}

} // namespace korvane
