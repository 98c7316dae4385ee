#pragma once

#include "Platform/View/UIButton.h"

#include <optional>
#include <string>

namespace korvane {

/// A box or a circle to tick, with its text. Main queue only.
class ChallengeSelectButton final : public UIButton {
public:
    using UIButton::UIButton;

    /// The value that the choice stands for.
    std::optional<std::string> key;

    /// Absent as long as nobody has touched the button.
    [[nodiscard]] const std::optional<bool>& checked() const noexcept { return checked_; }
    void setChecked(bool isChecked) {
        checked_ = isChecked;
        setSelected(isChecked);
    }
    [[nodiscard]] bool isChecked() const noexcept { return checked_.value_or(false); }

    /// The left parts alone of the insets.
    [[nodiscard]] double titleEdgeInsetsLeft() const noexcept { return titleEdgeInsets().left; }
    void setTitleEdgeInsetsLeft(double left) {
        UIEdgeInsets insets = titleEdgeInsets();
        insets.left = left;
        setTitleEdgeInsets(insets);
    }
    [[nodiscard]] double imageEdgeInsetsLeft() const noexcept { return imageEdgeInsets().left; }
    void setImageEdgeInsetsLeft(double left) {
        UIEdgeInsets insets = imageEdgeInsets();
        insets.left = left;
        setImageEdgeInsets(insets);
    }
    [[nodiscard]] double borderWidth() const noexcept { return layer().borderWidth(); }
    void setBorderWidth(double width) { layer().setBorderWidth(width); }

private:
    std::optional<bool> checked_;
};

} // namespace korvane
