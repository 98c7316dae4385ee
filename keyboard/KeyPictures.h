#pragma once

#include "Platform/View/UIImageView.h"
#include "Platform/View/UILabel.h"

#include <string>

namespace korvane {

/// A text that is a picture only: assistive technology hears of the keys, and never of what appears and goes
/// while keys are pressed, which would tell what is being typed.
class KeyLabel final : public UILabel {
public:
    /// Keys have their own size, whatever the user's size of text.
    KeyLabel() { setAdjustsFontForContentSizeCategory(false); }

protected:
    [[nodiscard]] UIAccessibilityRole defaultAccessibilityRole() const override {
        return UIAccessibilityRole::none;
    }
    [[nodiscard]] std::string defaultAccessibilityLabel() const override { return {}; }
};

/// The same for an image.
class KeyImageView final : public UIImageView {
protected:
    [[nodiscard]] UIAccessibilityRole defaultAccessibilityRole() const override {
        return UIAccessibilityRole::none;
    }
};

} // namespace korvane
