#pragma once

#include "Platform/Export.h"
#include "Platform/View/UIColor.h"

#include <optional>
#include <string>
#include <utility>

namespace korvane {

/// A font as applications name it. Each value that is absent leaves what the control has.
struct FontValues {
    /// "System" for the system's own font; another name is looked up, and tells in the log if there is none.
    std::optional<std::string> name = std::nullopt;
    /// In points.
    std::optional<int> size = std::nullopt;
    /// In thousandths of the platform's weights: 400 is bold.
    std::optional<double> weight = std::nullopt;

    friend bool operator==(const FontValues&, const FontValues&) = default;
};

/// What all customisations of controls have in common: the text. An absent value keeps what the screen has.
///
/// Customisation objects are plain data that the application shares with the library. They have no lock: the
/// application fills them before it initialises the service. Nothing that is set is checked.
class KORVANE_EXPORT Customization {
public:
    virtual ~Customization() = default;

    const int DEFAULT_INT_VALUE = 0;
    const std::string DEFAULT_STRING_VALUE;
    const std::string DEFAULT_FONT_NAME = "System";

    void setTextFontName(std::optional<std::string> name) { textFontName = std::move(name); }
    /// @return "System" where no name is set.
    [[nodiscard]] const std::string& getTextFontName() const {
        return textFontName ? *textFontName : DEFAULT_FONT_NAME;
    }
    void setTextColor(std::optional<UIColor> color) { textColor = color; }
    [[nodiscard]] const std::optional<UIColor>& getTextColor() const noexcept { return textColor; }
    void setTextFontSize(std::optional<int> size) { textFontSize = size; }
    [[nodiscard]] std::optional<int> getTextFontSize() const noexcept { return textFontSize; }
    void setTextFontWeight(std::optional<double> weight) { textFontWeight = weight; }
    [[nodiscard]] std::optional<double> getTextFontWeight() const noexcept { return textFontWeight; }
    void setTextFont(FontValues font);
    [[nodiscard]] FontValues textFont() const { return {textFontName, textFontSize, textFontWeight}; }

    std::optional<std::string> textFontName;
    std::optional<UIColor> textColor;
    std::optional<int> textFontSize;
    std::optional<double> textFontWeight;

protected:
    Customization() = default;
    Customization(FontValues font, std::optional<UIColor> itsTextColor);
};

/// A colour from six hexadecimal digits, with or without "#" before them and white space around. Six
/// characters that are no such digits give the colour of the digits before the first that is none, or black;
/// blanks before the first digit do not count.
/// @return no value for any other length.
KORVANE_EXPORT [[nodiscard]] std::optional<UIColor> hexStringToUIColor(std::string_view hex);

} // namespace korvane
