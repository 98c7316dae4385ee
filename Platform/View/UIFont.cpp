#include "Platform/View/UIFont.h"

#include "Platform/LetterCase.h"
#include "Platform/Platform.h"

#include <algorithm>
#include <array>

namespace korvane {

namespace {

struct StyleWord {
    std::string_view word;
    double weight;
};

/// What faces call their weights, without blanks and hyphens; a word stands before those that are part of it.
constexpr std::array<StyleWord, 14> kStyleWords{{{"EXTRALIGHT", UIFontWeight::ultraLight},
                                                 {"ULTRALIGHT", UIFontWeight::ultraLight},
                                                 {"THIN", UIFontWeight::thin},
                                                 {"LIGHT", UIFontWeight::light},
                                                 {"MEDIUM", UIFontWeight::medium},
                                                 {"SEMIBOLD", UIFontWeight::semibold},
                                                 {"DEMIBOLD", UIFontWeight::semibold},
                                                 {"DEMI", UIFontWeight::semibold},
                                                 {"EXTRABOLD", UIFontWeight::heavy},
                                                 {"ULTRABOLD", UIFontWeight::heavy},
                                                 {"BOLD", UIFontWeight::bold},
                                                 {"HEAVY", UIFontWeight::heavy},
                                                 {"BLACK", UIFontWeight::black},
                                                 {"ULTRA", UIFontWeight::black}}};

/// A name's letters alone, in one case.
std::string lettersOf(const std::string& name) {
    std::string letters = uppercased(name);
    std::erase_if(letters, [](char one) { return one == ' ' || one == '-' || one == '_'; });
    return letters;
}

/// By the style that a font's name has behind its family's.
double weightOf(const std::string& name, const std::string& family) {
    std::string style = lettersOf(name);
    const std::string itsFamily = lettersOf(family);
    if (style.starts_with(itsFamily)) style.erase(0, itsFamily.size());
    const auto known = std::ranges::find_if(
        kStyleWords, [&style](const StyleWord& row) { return style.find(row.word) != std::string::npos; });
    return known == kStyleWords.end() ? UIFontWeight::regular : known->weight;
}

} // namespace

std::optional<UIFont> UIFont::make(const std::string& name, double size) {
    const UIFontServices& fonts = Platform::current().fonts();
    for (const std::string& family : fonts.familyNames()) {
        if (family == name) return UIFont{name, size, UIFontWeight::regular};
        const auto names = fonts.fontNamesForFamilyName(family);
        if (std::ranges::find(names, name) != names.end()) return UIFont{name, size, weightOf(name, family)};
    }
    return std::nullopt;
}

double UIFont::systemFontSize() {
    return Platform::current().fonts().systemFontSize();
}

} // namespace korvane
