#include "Ui/Screens/ChallengeNativeViewController.h"

#include "Ui/Screens/FontRule.h"

namespace korvane {

namespace {

constexpr CGSize kEmptyArrow{20, 20};

/// The one way of controls with a text of their own: the font, then the text's colour.
template <class Control>
void customizeText(Control& control, const FontValues& font, const std::optional<UIColor>& color,
                   const std::string& subject) {
    if (const auto custom = customFont(font, control.font().weight(), subject)) control.setFont(*custom);
    if (color) control.setTextColor(*color);
}

UIImagePtr imageOf(const CustImageCustomization& look) {
    return look.imageBundle ? UIImage::named(look.imageName, *look.imageBundle) : nullptr;
}

} // namespace

void ChallengeNativeViewController::applyCustomization(
    const std::shared_ptr<const UiCustomization>& customization) {
    ChallengeViewController::applyCustomization(customization);
    if (!whyInfoButton->isHidden())
        customizeButton(*whyInfoButton.get(), ButtonType::CUST_WHY_INFO, "whyInfo");
    if (!extInfoButton->isHidden())
        customizeButton(*extInfoButton.get(), ButtonType::CUST_EXT_INFO, "extInfo");
    customizeImages(*customization);
    if (const auto& label = customization->getLabelCustomization()) applyCustomization(*label);
    customizeTexts(*customization);
}

void ChallengeNativeViewController::customizeButton(ChallengeButton& button, ButtonType type,
                                                    const std::string& named) {
    if (const auto look = customConfig->getButtonCustomization(type))
        applyCustomization(button, *look, named);
}

void ChallengeNativeViewController::customizeImages(const UiCustomization& customization) {
    const auto look = [&customization](CustImageType type) {
        return customization.getCustImageCustomization(type);
    };
    if (const auto warning = look(CustImageType::WARNING)) warningImage->setImage(imageOf(*warning));
    if (const auto up = look(CustImageType::ARROW_UP)) customizeArrow(arrowUp, *up);
    if (const auto down = look(CustImageType::ARROW_DOWN)) customizeArrow(arrowDown, *down);
    if (const auto box = look(CustImageType::CHECKBOX_WHITELISTING_CHECKED))
        checkedWhitelistingCheckBox.set(imageOf(*box));
    if (const auto box = look(CustImageType::CHECKBOX_WHITELISTING_UNCHECKED))
        uncheckedWhitelistingCheckBox.set(imageOf(*box));
}

void ChallengeNativeViewController::customizeArrow(ResourceImage& arrow, const CustImageCustomization& look) {
    auto image = imageOf(look);
    if (!image) {
        arrow.set(imageColor(kEmptyArrow, UIColor::clear()));
        return;
    }
    if (look.tintColor) {
        image = image->withRenderingMode(UIImageRenderingMode::alwaysTemplate);
        extInfoButton->setTintColor(look.tintColor);
        whyInfoButton->setTintColor(look.tintColor);
    }
    arrow.set(std::move(image));
}

void ChallengeNativeViewController::customizeTexts(const UiCustomization& customization) {
    const auto look = [&customization](CustTextViewType type) {
        return customization.getCustTextCustomization(type);
    };
    if (const auto ext = look(CustTextViewType::EXT_INFO_TEXT))
        applyCustomization(*extInfo.get(), *ext, "extInfoTextCustomization");
    if (const auto why = look(CustTextViewType::WHY_INFO_TEXT))
        applyCustomization(*whyInfo.get(), *why, "whyInfoTextCustomization");
    if (const auto question = look(CustTextViewType::WHITELISTING_TEXT))
        applyCustomization(*whitelistingInfo.get(), *question, "whitelistingTextCustomization");
}

// The controls.

void ChallengeNativeViewController::applyCustomization(const LabelCustomization& customization) {
    customizeText(*challengeInfoHeader.get(), customization.headingFont(), customization.headingTextColor,
                  "challenge info header label");
}

void ChallengeNativeViewController::applyCustomization(UILabel& to, const LabelCustomization& from,
                                                       const std::string& named) {
    customizeText(to, from.headingFont(), from.textColor, named + " label");
}

void ChallengeNativeViewController::applyCustomization(UIButton& to, const CustTextCustomization& from,
                                                       const std::string& named) {
    if (const auto font = customFont(from.textFont(), std::nullopt, named + " label"))
        to.titleLabel()->setFont(*font);
    if (from.textColor) to.setTitleColor(from.textColor, ControlState::normal);
}

void ChallengeNativeViewController::applyCustomization(UITextField& to, const TextBoxCustomization& from,
                                                       const std::string& named) {
    customizeText(to, from.textFont(), from.textColor, named + " text field");
    to.setBorderStyle(UITextBorderStyle::none);
    if (from.borderWidth) to.layer().setBorderWidth(*from.borderWidth);
    if (from.borderColor) to.layer().setBorderColor(from.borderColor);
    if (from.cornerRadius) {
        to.layer().setCornerRadius(*from.cornerRadius);
        to.layer().setShadowRadius(*from.cornerRadius);
    }
    if (from.backgroundColor) to.setBackgroundColor(from.backgroundColor);
    if (from.cursorColor) to.setTintColor(from.cursorColor);
}

void ChallengeNativeViewController::applyCustomization(UITextView& to, const CustTextCustomization& from,
                                                       const std::string& named) {
    customizeText(to, from.textFont(), from.textColor, named + " text field");
    if (from.backgroundColor) to.setBackgroundColor(from.backgroundColor);
}

} // namespace korvane
