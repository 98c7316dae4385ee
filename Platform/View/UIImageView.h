#pragma once

#include "Platform/Export.h"
#include "Platform/View/UIImage.h"
#include "Platform/View/UIView.h"

namespace korvane {

/// A picture. Main queue only.
class KORVANE_EXPORT UIImageView : public UIView {
public:
    using UIView::UIView;

    [[nodiscard]] UIViewKind kind() const noexcept override { return UIViewKind::image; }

    /// Null for none.
    [[nodiscard]] const UIImagePtr& image() const noexcept { return image_; }
    void setImage(UIImagePtr image) { assign(image_, std::move(image), UIViewChange::content); }

    [[nodiscard]] bool isAccessibilityElement() const override {
        return image_ && UIView::isAccessibilityElement();
    }
    /// The room that the image leaves at every side, in points.
    [[nodiscard]] double contentInset() const noexcept { return contentInset_; }
    void setContentInset(double inset) { assign(contentInset_, inset, UIViewChange::paint); }

    /// The image's size; nothing without one.
    [[nodiscard]] CGSize sizeThatFits(CGSize /*size*/) const override {
        return image_ ? image_->size() : CGSize{};
    }

protected:
    [[nodiscard]] UIAccessibilityRole defaultAccessibilityRole() const override {
        return UIAccessibilityRole::image;
    }

private:
    UIImagePtr image_;
    double contentInset_ = 0;
};

} // namespace korvane
