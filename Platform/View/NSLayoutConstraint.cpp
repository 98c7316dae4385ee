#include "Platform/View/NSLayoutConstraint.h"

#include "Platform/Failure.h"
#include "Platform/View/UIView.h"

#include <array>

namespace korvane {

namespace {

/// In the order of their numbers, from `top` on.
constexpr std::array<std::string_view, 6> kNames{"top", "bottom", "leading", "trailing", "width", "height"};

constexpr int kFirst = static_cast<int>(NSLayoutAttribute::top);

} // namespace

std::string_view name(NSLayoutAttribute attribute) {
    if (attribute == NSLayoutAttribute::notAnAttribute) return "nothing";
    return kNames[static_cast<std::size_t>(static_cast<int>(attribute) - kFirst)];
}

std::optional<NSLayoutAttribute> layoutAttributeNamed(std::string_view name) {
    for (std::size_t index = 0; index < kNames.size(); ++index)
        if (kNames[index] == name) return static_cast<NSLayoutAttribute>(static_cast<int>(index) + kFirst);
    return std::nullopt;
}

std::shared_ptr<NSLayoutConstraint> NSLayoutConstraint::make(const Side& first, const Side& second,
                                                             double constant) {
    return std::make_shared<NSLayoutConstraint>(Private{}, first, second, constant);
}

std::shared_ptr<NSLayoutConstraint> NSLayoutConstraint::activate(const Side& first, const Side& second,
                                                                 double constant) {
    const auto view = std::dynamic_pointer_cast<UIView>(first.item);
    const auto holder = view ? view->superview() : nullptr;
    if (!holder) fatalError("A constraint's first item must be a view with a superview.");
    auto constraint = make(first, second, constant);
    holder->addConstraint(constraint);
    return constraint;
}

NSLayoutConstraint::NSLayoutConstraint(Private, const Side& first, const Side& second, double constant)
    : first_(first.item), second_(second.item), firstAttribute_(first.attribute),
      secondAttribute_(second.attribute), constant_(constant) {}

void NSLayoutConstraint::setConstant(double constant) {
    if (constant == constant_) return;
    constant_ = constant;
    if (holder_ && isActive_) holder_->setNeedsLayout();
}

void NSLayoutConstraint::setActive(bool isActive) {
    if (isActive == isActive_) return;
    isActive_ = isActive;
    if (holder_) holder_->constraintsDidChange();
}

} // namespace korvane
