#include "Ui/Screens/FontRule.h"

#include "Platform/Logger.h"

namespace korvane {

double customFontSize(const FontValues& values) {
    return values.size ? *values.size : UIFont::systemFontSize();
}

std::optional<UIFont> customFont(const FontValues& values, std::optional<double> weight,
                                 const std::string& subject) {
    if (!values.name) return std::nullopt;
    const double size = customFontSize(values);
    if (*values.name == kSystemFontName) {
        if (!weight) return UIFont::systemFont(size);
        return UIFont::systemFont(size, values.weight ? *values.weight / kFontWeightScale : *weight);
    }
    auto font = UIFont::make(*values.name, size);
    if (!font)
        KORVANE_LOG("applyCustomization(to:from:named:)",
                    "Can not find " + subject + " font with name " + *values.name);
    return font;
}

} // namespace korvane
