#pragma once

#include "Ui/Screens/Orientation.h"
#include "tests/Ui/ScreenSupport.h"

#include <string>
#include <vector>

namespace korvane {

/// A telephone as it is held, with what its system covers.
struct GalleryScreen {
    const char* name;
    CGSize size;
    UIEdgeInsets safeArea;
};

[[nodiscard]] const std::vector<GalleryScreen>& galleryScreens();

/// Responses with everything that a screen can show, and with the longest texts.
[[nodiscard]] CRes fullCRes(UiType kind);
[[nodiscard]] CRes longCRes(UiType kind);

/// What is wrong with where the views of a screen lie: leaves that overlap, leaves beyond the screen's sides,
/// texts with less room than they need. Empty if all is well.
[[nodiscard]] std::vector<std::string> geometryFaults(const UIView& screen);

} // namespace korvane
