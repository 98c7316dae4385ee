#pragma once

#include "Platform/Export.h"
#include "Platform/FaultyText.h"
#include "Ui/Customisation/UiCustomization.h"
#include "Ui/Customisation/UiCustomizationConstraints.h"

#include <memory>
#include <string>
#include <string_view>

namespace korvane {

/// A look as a file has it: JSON, of which `theme.schema.json` tells every member. Both objects are what
/// `ThreeDS2Service::initialize` takes, and belong to the reader's caller alone.
struct Theme {
    std::shared_ptr<UiCustomization> customization;
    /// Null where the file places nothing.
    std::shared_ptr<UiCustomizationConstraints> constraints;
};

/// Where a theme's text comes from.
struct ThemeOrigin {
    /// Stands before the line in what is said of faults.
    std::string name = "theme";
    /// What the folders of images are told from; empty for the application's own folder, which a platform has
    /// to tell then.
    std::string folder;
};

/// Reads a theme. Members that are absent stay as the library has them. Any thread.
/// @throws FaultyText with all that is wrong: text that is no JSON, members that are not known or stand
/// twice, values of another type or beyond their bounds.
KORVANE_EXPORT [[nodiscard]] Theme readTheme(std::string_view json, const ThemeOrigin& origin = {});

/// Reads a theme's file. The folders of its images are told from the file's own.
/// @throws FaultyText as above, and for a file that cannot be read.
KORVANE_EXPORT [[nodiscard]] Theme readThemeFile(const std::string& path);

} // namespace korvane
