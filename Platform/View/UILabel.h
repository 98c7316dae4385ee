#pragma once

#include "Platform/Export.h"
#include "Platform/View/UITextContent.h"

namespace korvane {

/// A text to read. Main queue only.
class KORVANE_EXPORT UILabel : public UITextContent<UIView> {
public:
    using UITextContent::UITextContent;

    [[nodiscard]] UIViewKind kind() const noexcept override { return UIViewKind::label; }

    /// The most lines; 0 for as many as the text needs.
    [[nodiscard]] int numberOfLines() const noexcept { return numberOfLines_; }
    void setNumberOfLines(int lines) { assign(numberOfLines_, lines, UIViewChange::content); }
    [[nodiscard]] bool adjustsFontSizeToFitWidth() const noexcept { return adjustsFontSizeToFitWidth_; }
    void setAdjustsFontSizeToFitWidth(bool adjusts) {
        assign(adjustsFontSizeToFitWidth_, adjusts, UIViewChange::paint);
    }
    /// The smallest share of its size that the font may shrink to.
    void setMinimumScaleFactor(double factor) { assign(minimumScaleFactor_, factor, UIViewChange::paint); }
    /// The font's size that fits the present width: 1 down to the smallest share. 1 unless
    /// the label has a greatest number of lines and adjusts its font.
    [[nodiscard]] double scaleFactor() const;

    [[nodiscard]] CGSize sizeThatFits(CGSize size) const override;

protected:
    [[nodiscard]] UIAccessibilityRole defaultAccessibilityRole() const override {
        return UIAccessibilityRole::staticText;
    }

private:
    [[nodiscard]] double scaleForLines() const;

    int numberOfLines_ = 1;
    bool adjustsFontSizeToFitWidth_ = false;
    double minimumScaleFactor_ = 0.5;
};

} // namespace korvane
