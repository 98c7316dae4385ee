#pragma once

#include "Platform/Export.h"
#include "Platform/View/NSObject.h"

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace korvane {

class UIView;

/// An edge or a length that a constraint can address, by the platform's numbers.
enum class NSLayoutAttribute : int {
    notAnAttribute = 0,
    top = 3,
    bottom = 4,
    leading = 5,
    trailing = 6,
    width = 7,
    height = 8
};

/// "top", "bottom" and so on.
KORVANE_EXPORT [[nodiscard]] std::string_view name(NSLayoutAttribute attribute);
KORVANE_EXPORT [[nodiscard]] std::optional<NSLayoutAttribute> layoutAttributeNamed(std::string_view name);

/// What a part of a view is left with: what nothing of the system covers, or as much of its width as lines can
/// be read in.
enum class UILayoutGuideKind { safeArea, readable };

/// A part of a view as an item of constraints.
class UILayoutGuide final : public NSObject {
public:
    UILayoutGuide(UIView& owner, UILayoutGuideKind kind) : owner_(&owner), kind_(kind) {}

    [[nodiscard]] const UIView* owner() const noexcept { return owner_; }
    [[nodiscard]] UILayoutGuideKind kind() const noexcept { return kind_; }

private:
    friend class UIView;

    UIView* owner_; // cleared by the owner's end
    UILayoutGuideKind kind_;
};

/// One equation: first.attribute = second.attribute + constant, or first.attribute =
/// constant. Main queue only.
///
/// A constraint is held by one view and lays out that view's subviews: the first item is one of them, the
/// second one too, or the holder, or the holder's safe area. The first item is always the one that moves, so
/// the equations of a holder are solved in one pass, and they must not go round in a circle.
class KORVANE_EXPORT NSLayoutConstraint final : public NSObject {
    struct Private {};

public:
    /// One side of an equation; without an item and an attribute it is the constant alone.
    struct Side {
        std::shared_ptr<NSObject> item;
        NSLayoutAttribute attribute = NSLayoutAttribute::notAnAttribute;
    };

    /// @param first  a view with an attribute.
    [[nodiscard]] static std::shared_ptr<NSLayoutConstraint> make(const Side& first, const Side& second,
                                                                  double constant);
    [[nodiscard]] static std::shared_ptr<NSLayoutConstraint> make(const Side& first, double constant) {
        return make(first, {}, constant);
    }

    /// Makes a constraint and gives it to the superview that the first item has by now. Without one the
    /// process ends (`fatalError`).
    static std::shared_ptr<NSLayoutConstraint> activate(const Side& first, const Side& second,
                                                        double constant = 0);
    static std::shared_ptr<NSLayoutConstraint> activate(const Side& first, double constant) {
        return activate(first, {}, constant);
    }

    NSLayoutConstraint(Private, const Side& first, const Side& second, double constant);

    [[nodiscard]] std::shared_ptr<NSObject> firstItem() const { return first_.lock(); }
    [[nodiscard]] NSLayoutAttribute firstAttribute() const noexcept { return firstAttribute_; }
    /// Null for an equation with a constant alone.
    [[nodiscard]] std::shared_ptr<NSObject> secondItem() const { return second_.lock(); }
    [[nodiscard]] NSLayoutAttribute secondAttribute() const noexcept { return secondAttribute_; }

    /// In points.
    [[nodiscard]] double constant() const noexcept { return constant_; }
    void setConstant(double constant);

    /// An inactive constraint is held but takes no part.
    [[nodiscard]] bool isActive() const noexcept { return isActive_; }
    void setActive(bool isActive);

private:
    friend class UIView;

    std::weak_ptr<NSObject> first_;
    std::weak_ptr<NSObject> second_;
    NSLayoutAttribute firstAttribute_;
    NSLayoutAttribute secondAttribute_;
    double constant_;
    bool isActive_ = true;
    UIView* holder_ = nullptr; // cleared by the holder
};

} // namespace korvane
