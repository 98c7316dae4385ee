#pragma once

#include "Ui/Customisation/Theme.h"

#include <QString>

#include <span>
#include <string>
#include <vector>

namespace korvane::checkout {

/// One way for the screens to look. What the application has to say of it itself stands here, the rest in a
/// file of its name in the folder `themes`.
struct Theme {
    /// For scripts, and the file's.
    const char* name;
    /// For people.
    const char* label;
    bool isDark = false;
    double textScale = 1;
    /// Whether what the system draws over the library's bar has to be light.
    bool isBarDark = false;
};

[[nodiscard]] std::span<const Theme> allThemes();

[[nodiscard]] std::vector<std::string> themeNames();

/// The index of a theme, by its name; -1 for none.
[[nodiscard]] int themeNamed(const QString& name);

/// What the library is initialised with: the theme's file as it is now, so that it can be changed while the
/// shop runs. After the platform.
/// @throws FaultyText for a file that cannot be used.
[[nodiscard]] korvane::Theme lookOf(const Theme& theme);

} // namespace korvane::checkout
