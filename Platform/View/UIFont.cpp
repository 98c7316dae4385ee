#include "Platform/View/UIFont.h"

#include "Platform/Platform.h"

#include <algorithm>

namespace korvane {

std::optional<UIFont> UIFont::make(const std::string& name, double size) {
    const UIFontServices& fonts = Platform::current().fonts();
    for (const std::string& family : fonts.familyNames()) {
        if (family == name) return UIFont{name, size, UIFontWeight::regular};
        const auto names = fonts.fontNamesForFamilyName(family);
        if (std::ranges::find(names, name) != names.end()) return UIFont{name, size, UIFontWeight::regular};
    }
    return std::nullopt;
}

double UIFont::systemFontSize() {
    return Platform::current().fonts().systemFontSize();
}

} // namespace korvane
