#pragma once

#include "Platform/CGGeometry.h"
#include "Platform/Export.h"

#include <string_view>

namespace korvane {

/// The main screen. Its bounds: any thread; the rest: main queue only.
class KORVANE_EXPORT UIScreen {
public:
    /// Posted when `isCaptured()` changes.
    static constexpr std::string_view capturedDidChangeNotification = "UIScreenCapturedDidChangeNotification";

    virtual ~UIScreen() = default;

    /// The screen's rectangle in points, in its present orientation; empty where there is no screen.
    [[nodiscard]] virtual CGRect bounds() const = 0;

    /// Whether the screen is being recorded or mirrored, as far as the machine tells.
    [[nodiscard]] virtual bool isCaptured() const { return false; }
};

} // namespace korvane
