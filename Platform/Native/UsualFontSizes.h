#pragma once

#include "Platform/UIFontServices.h"

namespace korvane {

/// What fonts of desktops have in common: no setting tells their sizes, and these are the ones that text is
/// laid out with here. In points.
class UsualFontSizes : public UIFontServices {
public:
    [[nodiscard]] double systemFontSize() const override { return 14; }
    [[nodiscard]] double labelFontSize() const override { return 17; }
    [[nodiscard]] double buttonFontSize() const override { return 18; }
    [[nodiscard]] double smallSystemFontSize() const override { return 12; }
};

} // namespace korvane
