#include "examples/checkout/Themes.h"

#include "Platform/Platform.h"

#include <algorithm>
#include <array>

namespace korvane::checkout {

namespace {

constexpr std::array<Theme, 4> kThemes{{
    {.name = "default", .label = "Default"},
    {.name = "bank", .label = "A bank's brand", .isBarDark = true},
    {.name = "dark", .label = "Dark", .isDark = true, .isBarDark = true},
    {.name = "large", .label = "Large text", .textScale = 1.4},
}};

} // namespace

std::span<const Theme> allThemes() {
    return kThemes;
}

std::vector<std::string> themeNames() {
    std::vector<std::string> names;
    for (const Theme& theme : kThemes)
        names.emplace_back(theme.name);
    return names;
}

int themeNamed(const QString& name) {
    const auto* found = std::ranges::find_if(
        kThemes, [&name](const Theme& theme) { return name == QLatin1String(theme.name); });
    return found == kThemes.end() ? -1 : static_cast<int>(found - kThemes.begin());
}

korvane::Theme lookOf(const Theme& theme) {
    const std::string folder = Platform::current().mainBundle().bundlePath() + "/themes/";
    return readThemeFile(folder + theme.name + ".json");
}

} // namespace korvane::checkout
