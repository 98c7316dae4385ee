#pragma once

#include "Platform/Native/UsualFontSizes.h"
#include "Platform/View/TextMeasurer.h"

#include <QFont>

namespace korvane {

/// The fonts that Qt knows. Any thread.
class QtFonts final : public UsualFontSizes {
public:
    [[nodiscard]] std::vector<std::string> familyNames() const override;
    /// A family's styles behind its name, as in "Inter Bold".
    [[nodiscard]] std::vector<std::string> fontNamesForFamilyName(const std::string& family) const override;

    /// The application's font, and the size.
    [[nodiscard]] std::string systemFontDescription(double size) const override;
};

/// Measures with the fonts that are drawn with. Any thread.
class QtTextMeasurer final : public TextMeasurer {
public:
    [[nodiscard]] CGSize size(std::string_view text, const UIFont& font, double maximumWidth,
                              int maximumLines) const override;
};

/// The font that a view's font is drawn with, in whole pixels; the application's own family unless the font
/// has a name.
[[nodiscard]] QFont drawnFont(const UIFont& font);

/// A text as Qt holds it.
[[nodiscard]] QString drawnText(std::string_view text);

} // namespace korvane
