#pragma once

#include "Ui/Customisation/UiCustomization.h"

#include <QString>

#include <memory>
#include <span>
#include <string>
#include <vector>

namespace korvane::checkout {

/// The colours ("#RRGGBB") and the font of a bank's brand.
struct Palette {
    const char* bar;
    const char* onBar;
    const char* page;
    const char* heading;
    const char* text;
    const char* quiet;
    const char* accent;
    const char* onAccent;
    const char* pressed;
    const char* field;
    const char* border;
    /// For the bar and for headings; null for the library's own.
    const char* headingFont;
    int cornerRadius;
    /// The bar's title.
    const char* title;
    /// The box of a question: images of this program's folder `images`; null for the library's own.
    const char* boxChecked = nullptr;
    const char* boxUnchecked = nullptr;
};

/// One way for the screens to look.
struct Theme {
    /// For scripts.
    const char* name;
    /// For people.
    const char* label;
    /// Null leaves the library's own look.
    const Palette* palette = nullptr;
    bool isDark = false;
    double textScale = 1;
    /// Whether what the system draws over the library's bar has to be light.
    bool isBarDark = false;
    /// The bar's title without a palette; null for the library's own.
    const char* barTitle = nullptr;
};

[[nodiscard]] std::span<const Theme> allThemes();

[[nodiscard]] std::vector<std::string> themeNames();

/// The index of a theme, by its name; -1 for none.
[[nodiscard]] int themeNamed(const QString& name);

/// What the library is initialised with; null for a theme that changes none of it. After the platform.
[[nodiscard]] std::shared_ptr<const UiCustomization> customizationOf(const Theme& theme);

} // namespace korvane::checkout
