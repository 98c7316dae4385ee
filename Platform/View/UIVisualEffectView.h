#pragma once

#include "Platform/Export.h"
#include "Platform/View/UIView.h"

namespace korvane {

/// Blurs by the platform's numbers.
enum class UIBlurEffectStyle : int { extraLight = 0, light = 1, dark = 2, regular = 4, prominent = 5 };

/// Blurs what lies behind it. Main queue only.
class KORVANE_EXPORT UIVisualEffectView : public UIView {
public:
    explicit UIVisualEffectView(UIBlurEffectStyle style) : style_(style) {}

    [[nodiscard]] UIViewKind kind() const noexcept override { return UIViewKind::visualEffect; }
    [[nodiscard]] UIBlurEffectStyle style() const noexcept { return style_; }

private:
    UIBlurEffectStyle style_;
};

} // namespace korvane
