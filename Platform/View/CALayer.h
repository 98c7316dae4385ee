#pragma once

#include "Platform/CGGeometry.h"
#include "Platform/Export.h"
#include "Platform/View/UIColor.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace korvane {

class UIView;

/// The frame around a view's content: corners, border and shadow. Main queue only. It lives in its view.
class KORVANE_EXPORT CALayer {
public:
    explicit CALayer(UIView& view) : view_(view) {}
    CALayer(const CALayer&) = delete;
    CALayer& operator=(const CALayer&) = delete;

    [[nodiscard]] double cornerRadius() const noexcept { return cornerRadius_; }
    [[nodiscard]] double borderWidth() const noexcept { return borderWidth_; }
    [[nodiscard]] const std::optional<UIColor>& borderColor() const noexcept { return borderColor_; }
    [[nodiscard]] const std::optional<UIColor>& shadowColor() const noexcept { return shadowColor_; }
    [[nodiscard]] double shadowRadius() const noexcept { return shadowRadius_; }
    /// From 0, no shadow, to 1.
    [[nodiscard]] double shadowOpacity() const noexcept { return shadowOpacity_; }
    [[nodiscard]] CGSize shadowOffset() const noexcept { return shadowOffset_; }
    /// The outline that casts the shadow, where it is not the layer's own.
    [[nodiscard]] const std::optional<CGRect>& shadowPath() const noexcept { return shadowPath_; }

    void setCornerRadius(double radius) { assign(cornerRadius_, radius); }
    void setBorderWidth(double width) { assign(borderWidth_, width); }
    void setBorderColor(std::optional<UIColor> color) { assign(borderColor_, std::move(color)); }
    void setShadowColor(std::optional<UIColor> color) { assign(shadowColor_, std::move(color)); }
    void setShadowRadius(double radius) { assign(shadowRadius_, radius); }
    void setShadowOpacity(double opacity) { assign(shadowOpacity_, opacity); }
    void setShadowOffset(CGSize offset) { assign(shadowOffset_, offset); }
    void setShadowPath(std::optional<CGRect> path) { assign(shadowPath_, path); }

    /// Whether the layer has a property of that name which a renderer heeds: `kCaptureMask`.
    [[nodiscard]] bool responds(std::string_view toKey) const noexcept { return toKey == kCaptureMask; }

    /// Values by name. A name that the layer does not respond to is kept all the same.
    void setValue(double value, const std::string& forKey);
    [[nodiscard]] std::optional<double> value(const std::string& forKey) const;

    /// Bits that say from which pictures of the screen the layer is left out; 0 from none.
    static constexpr std::string_view kCaptureMask = "disableUpdateMask";

private:
    template <class Value>
    void assign(Value& stored, Value value) {
        if (stored == value) return;
        stored = std::move(value);
        markPaint();
    }
    void markPaint();

    UIView& view_;
    double cornerRadius_ = 0;
    double borderWidth_ = 0;
    std::optional<UIColor> borderColor_;
    std::optional<UIColor> shadowColor_;
    double shadowRadius_ = 3;
    double shadowOpacity_ = 0;
    CGSize shadowOffset_{0, -3};
    std::optional<CGRect> shadowPath_;
    std::map<std::string, double> values_;
};

} // namespace korvane
