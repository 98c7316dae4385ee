#include "Platform/View/NSLayoutConstraint.h"

#include "Platform/Failure.h"
#include "Platform/View/UIView.h"

namespace korvane {

std::string_view name(NSLayoutAttribute attribute) {
    switch (attribute) {
    case NSLayoutAttribute::notAnAttribute: return "nothing";
    case NSLayoutAttribute::top: return "top";
    case NSLayoutAttribute::bottom: return "bottom";
    case NSLayoutAttribute::leading: return "leading";
    case NSLayoutAttribute::trailing: return "trailing";
    case NSLayoutAttribute::width: return "width";
    case NSLayoutAttribute::height: return "height";
    }
    return {};
}

std::optional<NSLayoutAttribute> layoutAttributeNamed(std::string_view text) {
    for (int number = static_cast<int>(NSLayoutAttribute::top);; ++number) {
        const auto attribute = static_cast<NSLayoutAttribute>(number);
        if (name(attribute).empty()) return std::nullopt;
        if (name(attribute) == text) return attribute;
    }
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
