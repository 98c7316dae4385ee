#pragma once

#include "Platform/Export.h"
#include "Platform/NSBundle.h"
#include "Ui/Customisation/Customization.h"

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace korvane {

/// The look of a button. Lengths are in points.
class KORVANE_EXPORT ButtonCustomization : public Customization {
public:
    ButtonCustomization() = default;
    ButtonCustomization(FontValues font, std::optional<UIColor> itsTextColor,
                        std::optional<UIColor> itsBackgroundColor, std::optional<int> itsCornerRadius,
                        std::optional<int> itsBorderWidth = std::nullopt,
                        std::optional<UIColor> itsBorderColor = std::nullopt,
                        std::optional<UIColor> itsHighlitedColor = std::nullopt,
                        std::optional<UIColor> itsHighlitedTextColor = std::nullopt,
                        std::optional<double> itsRightImageInset = std::nullopt,
                        std::optional<double> itsLeftImageInset = std::nullopt,
                        std::optional<double> itsLeftTitleInset = std::nullopt)
        : Customization(std::move(font), itsTextColor), backgroundColor(itsBackgroundColor),
          cornerRadius(itsCornerRadius), borderWidth(itsBorderWidth), borderColor(itsBorderColor),
          highlitedColor(itsHighlitedColor), highlitedTextColor(itsHighlitedTextColor),
          rightImageInset(itsRightImageInset), leftImageInset(itsLeftImageInset),
          leftTitleInset(itsLeftTitleInset) {}

    void setCustBorderColor(std::optional<UIColor> color) { borderColor = color; }
    [[nodiscard]] const std::optional<UIColor>& getCustBorderColor() const noexcept { return borderColor; }
    void setCornerRadius(std::optional<int> radius) { cornerRadius = radius; }
    /// @return 0 where none is set.
    [[nodiscard]] int getCornerRadius() const { return cornerRadius.value_or(DEFAULT_INT_VALUE); }
    /// How far the arrow of a section's button stands from the right edge.
    void setRightImageInset(std::optional<double> inset) { rightImageInset = inset; }
    /// How far the arrow stands behind the title, where no right inset is set.
    void setLeftImageInset(std::optional<double> inset) { leftImageInset = inset; }
    void setLeftTitleInset(std::optional<double> inset) { leftTitleInset = inset; }

    std::optional<UIColor> backgroundColor;
    std::optional<int> cornerRadius;
    std::optional<int> borderWidth;
    std::optional<UIColor> borderColor;
    /// The background while the button is pressed.
    std::optional<UIColor> highlitedColor;
    std::optional<UIColor> highlitedTextColor;
    std::optional<double> rightImageInset;
    std::optional<double> leftImageInset;
    std::optional<double> leftTitleInset;
};

/// The background of a screen.
class BackgroundCustomization : public Customization {
public:
    void setBackgroundColor(std::optional<UIColor> color) { backgroundColor = color; }
    [[nodiscard]] const std::optional<UIColor>& getBackgroundColor() const noexcept {
        return backgroundColor;
    }

    std::optional<UIColor> backgroundColor;
};

/// The bar on top of a screen: its title and its cancel button.
class KORVANE_EXPORT ToolbarCustomization : public Customization {
public:
    ToolbarCustomization() = default;
    ToolbarCustomization(FontValues font, std::optional<UIColor> itsTextColor,
                         std::optional<UIColor> itsBackgroundColor, std::optional<std::string> itsHeaderText,
                         std::optional<std::string> itsButtonText, bool itsIsHideShadowImage = false)
        : Customization(std::move(font), itsTextColor), backgroundColor(itsBackgroundColor),
          headerText(std::move(itsHeaderText)), buttonText(std::move(itsButtonText)),
          isHideShadowImage(itsIsHideShadowImage) {}

    void setHeaderText(std::optional<std::string> text) { headerText = std::move(text); }
    /// @return an empty text where none is set, here and below.
    [[nodiscard]] const std::string& getHeaderText() const {
        return headerText ? *headerText : DEFAULT_STRING_VALUE;
    }
    void setButtonText(std::optional<std::string> text) { buttonText = std::move(text); }
    [[nodiscard]] const std::string& getButtonText() const {
        return buttonText ? *buttonText : DEFAULT_STRING_VALUE;
    }

    std::optional<UIColor> backgroundColor;
    std::optional<std::string> headerText;
    std::optional<std::string> buttonText;
    /// Kept for the application alone: the line below the bar stays as the library has it.
    bool isHideShadowImage = false;
};

/// The labels of a screen: the heading, and the rest by the inherited values.
class LabelCustomization : public Customization {
public:
    LabelCustomization() = default;
    LabelCustomization(FontValues font, std::optional<UIColor> itsTextColor, FontValues headingFont,
                       std::optional<UIColor> itsHeadingTextColor)
        : Customization(std::move(font), itsTextColor), headingTextColor(itsHeadingTextColor),
          headingTextFontName(std::move(headingFont.name)), headingTextFontSize(headingFont.size),
          headingTextFontWeight(headingFont.weight) {}

    void setHeadingTextFontWeight(std::optional<double> weight) { headingTextFontWeight = weight; }
    [[nodiscard]] std::optional<double> getHeadingTextFontWeight() const noexcept {
        return headingTextFontWeight;
    }
    [[nodiscard]] FontValues headingFont() const {
        return {headingTextFontName, headingTextFontSize, headingTextFontWeight};
    }

    std::optional<UIColor> headingTextColor;
    std::optional<std::string> headingTextFontName;
    std::optional<int> headingTextFontSize;
    std::optional<double> headingTextFontWeight;
};

/// The page that the keyboard begins with. From letters and numbers keys lead to every other one, but from the
/// pad of ten digits to none: it is for codes that never have a letter.
enum class KeyboardPage { letters, numbers, numberPad };

/// The field for the one-time code. Lengths are in points.
class KORVANE_EXPORT TextBoxCustomization : public Customization {
public:
    void setBorderWidth(std::optional<int> width) { borderWidth = width; }
    /// @return 0 where none is set, here and for the radius.
    [[nodiscard]] int getBorderWidth() const { return borderWidth.value_or(DEFAULT_INT_VALUE); }
    void setBorderColor(std::optional<UIColor> color) { borderColor = color; }
    [[nodiscard]] const std::optional<UIColor>& getBorderColor() const noexcept { return borderColor; }
    void setCornerRadius(std::optional<int> radius) { cornerRadius = radius; }
    [[nodiscard]] int getCornerRadius() const { return cornerRadius.value_or(DEFAULT_INT_VALUE); }
    void setCustCursorColor(std::optional<UIColor> color) { cursorColor = color; }
    [[nodiscard]] const std::optional<UIColor>& getCustCursorColor() const noexcept { return cursorColor; }
    void setErrorColor(std::optional<UIColor> color) { errorColor = color; }
    [[nodiscard]] const std::optional<UIColor>& getErrorColor() const noexcept { return errorColor; }

    std::optional<int> borderWidth;
    std::optional<UIColor> borderColor;
    std::optional<int> cornerRadius;
    std::optional<UIColor> backgroundColor;
    std::optional<UIColor> cursorColor;
    /// Letters where none is set: no message tells whether a code has any, and only the application knows the
    /// banks that it pays with.
    std::optional<KeyboardPage> keyboardPage;
    /// Kept for the application alone: no screen marks what was entered.
    std::optional<UIColor> errorColor;
};

/// A longer text of a screen, and texts of the application's own in place of the ACS's.
class KORVANE_EXPORT CustTextCustomization : public Customization {
public:
    CustTextCustomization() = default;
    CustTextCustomization(
        FontValues font, std::optional<UIColor> itsTextColor, std::optional<UIColor> itsBackgroundColor,
        std::optional<std::map<std::string, std::string>> itsTextCustomization = std::nullopt)
        : Customization(std::move(font), itsTextColor), backgroundColor(itsBackgroundColor),
          textCustomization(std::move(itsTextCustomization)) {}

    /// Replaces a text that is exactly `fromString`.
    void setCustomText(const std::string& fromString, const std::string& toString);
    /// @return no value for a text that is not replaced.
    [[nodiscard]] std::optional<std::string> getCustomText(const std::string& fromString) const;
    /// A new object with the same colours and font, and without replacements.
    [[nodiscard]] std::shared_ptr<CustTextCustomization> copy() const;

    std::optional<UIColor> backgroundColor;
    std::optional<std::map<std::string, std::string>> textCustomization;
};

/// An image of the application's in place of the library's. Immutable.
struct CustImageCustomization {
    const std::shared_ptr<const NSBundle> imageBundle;
    const std::string imageName;
    /// The colour of all that the image shows; absent for its own colours.
    const std::optional<UIColor> tintColor = std::nullopt;
};

/// How a challenge text that warns looks. It has no font, so it is no `Customization`.
class KORVANE_EXPORT CustWarning {
public:
    CustWarning() = default;
    /// @param itsTextColor  also the label's; absent for black there.
    /// @param isOwnFiled  taken for compatibility; it has no effect.
    /// @param itsTopConstraint  in points; absent for 5.
    CustWarning(bool itsIsShowIndicator, bool isOwnFiled, std::optional<UIColor> itsTextColor,
                std::optional<UIColor> itsBackgroundColor, std::optional<double> itsTopConstraint);

    void setShowIndicator(bool isShown) { isShowIndicator = isShown; }
    [[nodiscard]] bool getShowIndicator() const noexcept { return isShowIndicator; }
    void setTextColor(std::optional<UIColor> color) { textColor = color; }
    [[nodiscard]] const std::optional<UIColor>& getTextColor() const noexcept { return textColor; }

    /// Whether the latest screen warns; written by the screens.
    bool isWarning = false;
    bool isShowIndicator = true;
    std::optional<UIColor> textColor;
    std::optional<UIColor> backgroundColor;
    std::shared_ptr<LabelCustomization> labelCustomization = std::make_shared<LabelCustomization>();
    double topConstraint = 0;
};

} // namespace korvane
