#pragma once

#include "Ui/Customisation/UiCustomization.h"

#include <memory>
#include <vector>

namespace korvane {

/// A look that an application could give the screens.
struct Theme {
    const char* name;
    /// Null for the library's own.
    std::shared_ptr<UiCustomization> (*make)();
};

[[nodiscard]] const std::vector<Theme>& themes();

} // namespace korvane
