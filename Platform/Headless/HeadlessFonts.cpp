#include "Platform/Headless/HeadlessFonts.h"

#include "Platform/DecimalText.h"

#include <fontconfig/fontconfig.h>

namespace korvane {

namespace {

template <class Object, void (*destroy)(Object*)>
struct Destroyer {
    void operator()(Object* object) const { destroy(object); }
};

using Config = std::unique_ptr<FcConfig, Destroyer<FcConfig, FcConfigDestroy>>;
using Pattern = std::unique_ptr<FcPattern, Destroyer<FcPattern, FcPatternDestroy>>;
using ObjectSet = std::unique_ptr<FcObjectSet, Destroyer<FcObjectSet, FcObjectSetDestroy>>;
using FontSet = std::unique_ptr<FcFontSet, Destroyer<FcFontSet, FcFontSetDestroy>>;

/// The property's first value, or an empty text.
std::string firstText(const FcPattern* font, const char* property) {
    FcChar8* text = nullptr;
    if (FcPatternGetString(font, property, 0, &text) != FcResultMatch) return {};
    return reinterpret_cast<const char*>(text);
}

std::map<std::string, std::set<std::string>> listFamilies(FcConfig* config) {
    std::map<std::string, std::set<std::string>> families;
    const Pattern everything(FcPatternCreate());
    const ObjectSet wanted(FcObjectSetBuild(FC_FAMILY, FC_POSTSCRIPT_NAME, nullptr));
    const FontSet fonts(FcFontList(config, everything.get(), wanted.get()));
    for (int index = 0; fonts && index < fonts->nfont; ++index) {
        const FcPattern* font = fonts->fonts[index];
        const std::string family = firstText(font, FC_FAMILY);
        if (family.empty()) continue;
        std::set<std::string>& names = families[family];
        if (std::string name = firstText(font, FC_POSTSCRIPT_NAME); !name.empty())
            names.insert(std::move(name));
    }
    return families;
}

std::string sansSerifFamily(FcConfig* config) {
    const Pattern wanted(FcNameParse(reinterpret_cast<const FcChar8*>("sans-serif")));
    FcConfigSubstitute(config, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultNoMatch;
    const Pattern match(FcFontMatch(config, wanted.get(), &result));
    return match ? firstText(match.get(), FC_FAMILY) : std::string();
}

} // namespace

struct HeadlessFonts::Catalogue {
    std::map<std::string, std::set<std::string>> families;
    std::string systemFamily;
};

HeadlessFonts::HeadlessFonts() = default;

HeadlessFonts::~HeadlessFonts() = default;

const HeadlessFonts::Catalogue& HeadlessFonts::catalogue() const {
    std::call_once(once_, [this] {
        auto made = std::make_unique<Catalogue>();
        if (const Config config{FcInitLoadConfigAndFonts()})
            *made = {listFamilies(config.get()), sansSerifFamily(config.get())};
        catalogue_ = std::move(made);
    });
    return *catalogue_;
}

std::vector<std::string> HeadlessFonts::familyNames() const {
    std::vector<std::string> names;
    for (const auto& [family, fonts] : catalogue().families)
        names.push_back(family);
    return names;
}

std::vector<std::string> HeadlessFonts::fontNamesForFamilyName(const std::string& family) const {
    const auto& families = catalogue().families;
    const auto found = families.find(family);
    if (found == families.end()) return {};
    return {found->second.begin(), found->second.end()};
}

std::string HeadlessFonts::systemFontDescription(double size) const {
    return "font-family: \"" + catalogue().systemFamily + "\"; font-size: " + decimalText(size) + "pt";
}

} // namespace korvane
