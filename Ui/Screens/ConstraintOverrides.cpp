#include "Ui/Screens/ChallengeViewController.h"

#include <array>

namespace korvane {

namespace {

using Neighbour = const UIView*;

struct Side {
    std::optional<double> UiConstraints::*value;
    NSLayoutAttribute attribute;
    bool isLength = false;
};

/// In the order in which they are applied.
constexpr std::array<Side, 6> kSides{{
    {&UiConstraints::leading, NSLayoutAttribute::leading},
    {&UiConstraints::trailing, NSLayoutAttribute::trailing},
    {&UiConstraints::top, NSLayoutAttribute::top},
    {&UiConstraints::bottom, NSLayoutAttribute::bottom},
    {&UiConstraints::height, NSLayoutAttribute::height, true},
    {&UiConstraints::width, NSLayoutAttribute::width, true},
}};

/// Whether the other side of a constraint is the neighbour; without one, the superview or its safe area, and
/// for a length also nothing.
bool isBoundTo(const NSLayoutConstraint& constraint, Neighbour neighbour, UIView& superview,
               const Side& side) {
    const auto item = constraint.secondItem();
    if (neighbour) return item.get() == neighbour;
    if (!item) return side.isLength;
    return item.get() == &superview || item == superview.safeAreaLayoutGuide();
}

void applyConstant(UIView& superview, const UIView& view, const Side& side, Neighbour neighbour,
                   double constant) {
    for (const auto& constraint : superview.constraints()) {
        if (constraint->firstItem().get() != &view || constraint->firstAttribute() != side.attribute)
            continue;
        if (!isBoundTo(*constraint, neighbour, superview, side)) continue;
        constraint->setConstant(constant);
        return;
    }
}

} // namespace

void ChallengeViewController::applyConstraints(UIView& superview, const UIView& view, const UIView* topView,
                                               const UIView* bottomView, const UIView* leftView,
                                               const UIView* rightView, const UiConstraints& constraints) {
    const std::array<Neighbour, kSides.size()> neighbours{leftView,   rightView, topView,
                                                          bottomView, nullptr,   nullptr};
    for (std::size_t index = 0; index < kSides.size(); ++index) {
        const Side& side = kSides[index];
        if (const auto& value = constraints.*side.value)
            applyConstant(superview, view, side, neighbours[index], *value);
    }
}

} // namespace korvane
