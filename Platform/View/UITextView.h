#pragma once

#include "Platform/Export.h"
#include "Platform/View/UIScrollView.h"
#include "Platform/View/UITextContent.h"

namespace korvane {

/// A text of any length to read, which scrolls. Main queue only.
class KORVANE_EXPORT UITextView : public UITextContent<UIScrollView> {
public:
    using UITextContent::UITextContent;

    [[nodiscard]] UIViewKind kind() const noexcept override { return UIViewKind::textView; }

    /// Room around the text, in points.
    [[nodiscard]] const UIEdgeInsets& textContainerInset() const noexcept { return textContainerInset_; }
    void setTextContainerInset(const UIEdgeInsets& insets) {
        assign(textContainerInset_, insets, UIViewChange::content);
    }
    /// Further room at both ends of every line, in points.
    [[nodiscard]] double lineFragmentPadding() const noexcept { return lineFragmentPadding_; }
    void setLineFragmentPadding(double padding) {
        assign(lineFragmentPadding_, padding, UIViewChange::content);
    }

    /// The size of all of the text at the present width.
    [[nodiscard]] CGSize contentSize() const override { return fittingSize(bounds().size.width); }
    [[nodiscard]] CGSize sizeThatFits(CGSize size) const override;

protected:
    [[nodiscard]] UIAccessibilityRole defaultAccessibilityRole() const override {
        return UIAccessibilityRole::staticText;
    }

private:
    UIEdgeInsets textContainerInset_{8, 0, 8, 0};
    double lineFragmentPadding_ = 5;
};

} // namespace korvane
