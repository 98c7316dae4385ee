#pragma once

#include "Platform/Export.h"
#include "Platform/View/UIView.h"

#include <optional>

namespace korvane {

/// Turns while something is under way, and hides when it stands still. Main queue only.
class KORVANE_EXPORT UIActivityIndicatorView : public UIView {
public:
    /// The side of the large indicator, in points.
    static constexpr double kLargeSide = 37;

    UIActivityIndicatorView() : UIActivityIndicatorView(CGRect{{0, 0}, {kLargeSide, kLargeSide}}) {}
    explicit UIActivityIndicatorView(const CGRect& frame) : UIView(frame) { setHidden(true); }

    [[nodiscard]] UIViewKind kind() const noexcept override { return UIViewKind::activityIndicator; }

    [[nodiscard]] bool isAnimating() const noexcept { return isAnimating_; }
    virtual void startAnimating() { setAnimating(true); }
    virtual void stopAnimating() { setAnimating(false); }
    [[nodiscard]] const std::optional<UIColor>& color() const noexcept { return color_; }
    void setColor(std::optional<UIColor> color) { assign(color_, std::move(color), UIViewChange::paint); }

    /// What the indicator stands on; clear for nothing.
    [[nodiscard]] const UIColor& plateColor() const noexcept { return plateColor_; }
    void setPlateColor(const UIColor& color) { assign(plateColor_, color, UIViewChange::paint); }

    [[nodiscard]] CGSize sizeThatFits(CGSize /*size*/) const override { return {kLargeSide, kLargeSide}; }

private:
    void setAnimating(bool isAnimating) {
        assign(isAnimating_, isAnimating, UIViewChange::paint);
        setHidden(!isAnimating_);
    }

    std::optional<UIColor> color_;
    UIColor plateColor_ = UIColor::clear();
    bool isAnimating_ = false;
};

} // namespace korvane
