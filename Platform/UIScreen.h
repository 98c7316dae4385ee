#pragma once

#include "Platform/CGGeometry.h"

namespace korvane {

/// The main screen. Main queue only.
class UIScreen {
public:
    virtual ~UIScreen() = default;

    /// The screen's rectangle in points, in its present orientation; empty where there is no screen.
    [[nodiscard]] virtual CGRect bounds() const = 0;
};

} // namespace korvane
