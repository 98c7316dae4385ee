#pragma once

#include "Platform/View/UIButton.h"

#include <optional>

namespace korvane {

/// A button that shows for a moment that it was pressed. Main queue only.
class ChallengeButton : public UIButton {
public:
    using UIButton::UIButton;

    /// The look that the storyboard gives is the one that a press ends with.
    void awakeFromNib() override;
    /// A change starts a press, which shows the look of that change for 0.2 seconds and meanwhile
    /// ignores further ones.
    void setHighlighted(bool isHighlighted) override;

    /// The height that a title of two lines needs; 0 for one line, which every button has room for.
    [[nodiscard]] double heightForTitle(double width) const;

    void layoutSubviews() override;
    /// Nothing where the application says what a press looks like.
    [[nodiscard]] std::optional<UIColor> pressedTint() const override;

    [[nodiscard]] double borderWidth() const noexcept { return layer().borderWidth(); }
    void setBorderWidth(double width) { layer().setBorderWidth(width); }
    [[nodiscard]] double cornerRadius() const noexcept { return layer().cornerRadius(); }
    void setCornerRadius(double radius) { layer().setCornerRadius(radius); }

    std::optional<UIColor> customBackgroundColor;
    /// The background of the press; absent for no other one.
    std::optional<UIColor> customHighlitedColor;
    std::optional<UIColor> customTextColor;
    std::optional<UIColor> customHighlitedTextColor;
    bool isPressed = false;

private:
    [[nodiscard]] int linesFor(double width) const;
    void applyLook();
};

/// A button that opens and closes a section of a screen. Main queue only.
class ShowInfoButtonButton final : public ChallengeButton {
public:
    using ChallengeButton::ChallengeButton;

    /// Where the image and the title stand, if the application says so; in points.
    std::optional<double> rightImageInset;
    std::optional<double> leftImageInset;
    std::optional<double> leftTitleInset;

    /// Whether the section is open, as assistive technology is told.
    [[nodiscard]] bool isOpen() const noexcept { return isOpen_; }
    void setOpen(bool isOpen) { assign(isOpen_, isOpen, UIViewChange::paint); }
    [[nodiscard]] UIAccessibilityState accessibilityState() const override {
        return {isEnabled(), isSelected(), isOpen_};
    }

    /// The insets that put the image `fromRight` points from the right edge, as the button is now.
    [[nodiscard]] UIEdgeInsets imageInsetsAtRight(double fromRight) const;
    /// Places image and title as the insets above say; the image at the right edge where they say nothing.
    void applyCustomInsets();

private:
    bool isOpen_ = false;
};

} // namespace korvane
