#include "Platform/Text.h"
#include "Platform/View/DrawnPart.h"
#include "Ui/Screens/VCFactory.h"

namespace korvane {

namespace {

/// What `whyInfoHeightConstraint` gets where the screen asks about whitelisting; the screen sets it back
/// before it appears.
constexpr double kWhitelistingHeight = 40;
/// The challenge text's name in messages, whatever the screen.
constexpr const char* kChallengeTextName = "otp text";

/// A section that opens: its text and its button, which is hidden unless there are a text and a label.
void setSection(UITextView& view, ShowInfoButtonButton& button, const std::optional<std::string>& text,
                const std::optional<std::string>& label) {
    if (!text || !label) {
        button.setHidden(true);
        return;
    }
    view.setText(*text);
    setTitles(button, *label);
    button.setImageEdgeInsets(button.imageInsetsAtRight(0));
}

void setWhitelisting(ChallengeNativeViewController& controller, const std::optional<std::string>& text) {
    controller.whitelistingInfo->setHidden(!text);
    if (!text) {
        controller.whitelistingInfoHeightConstraint->setConstant(0);
        return;
    }
    controller.whitelistingInfo->setTitle(*text, ControlState::normal);
    controller.whyInfoHeightConstraint->setConstant(kWhitelistingHeight);
}

} // namespace

void VCFactory::setCommonNativeVcParts(const CRes& cRes, ChallengeNativeViewController& controller) const {
    const auto view = controller.view();
    controller.customConstraints = uiCustomizationConstraints;
    view->setRightToLeft(isRightToLeft(drawnPart(cRes.challengeInfoHeader.value_or("")) +
                                       drawnPart(cRes.challengeInfoText.value_or(""))));
    // Widths count below, and the application has a say in them.
    view->setNeedsLayout();
    view->layoutIfNeeded();

    controller.bankLogo->setImage(bankImage);
    controller.psLogo->setImage(psImage);
    controller.challengeInfoHeader->setText(cRes.challengeInfoHeader.value_or(""));
    setSection(*controller.whyInfo.get(), *controller.whyInfoButton.get(), cRes.whyInfoText,
               cRes.whyInfoLabel);
    setSection(*controller.extInfo.get(), *controller.extInfoButton.get(), cRes.expandInfoText,
               cRes.expandInfoLabel);
    if (cRes.challengeInfoLabel)
        controller.challengeInfoLabel->setText(*cRes.challengeInfoLabel);
    else
        controller.challengeInfoLabel->setHidden(true);
    setWhitelisting(controller, cRes.whitelistingInfoText);
    if (cRes.challengeInfoText) setChallengeText(cRes, controller);
    applyCustomization(controller);
}

/// The look of the challenge text, or null. A warning asks for one even where the application has none.
std::shared_ptr<CustTextCustomization> VCFactory::challengeTextLook() const {
    if (!uiCustomization) return nullptr;
    auto look = uiCustomization->getCustTextCustomization(CustTextViewType::CHALLENGE_INFO_TEXT);
    if (!look && uiCustomization->getCustWarning()) look = std::make_shared<CustTextCustomization>();
    return look;
}

void VCFactory::setChallengeText(const CRes& cRes, ChallengeNativeViewController& controller) const {
    const auto look = challengeTextLook();
    const auto warning = look ? uiCustomization->getCustWarning() : nullptr;
    const bool isWarning = cRes.challengeInfoTextIndicator == "Y";
    auto applied = look;
    if (warning) warning->isWarning = isWarning;
    if (isWarning) {
        if (look) applied = look->copy();
        if (warning && warning->textColor) applied->textColor = warning->textColor;
        if (warning && warning->backgroundColor) applied->backgroundColor = warning->backgroundColor;
        if (!warning || warning->isShowIndicator) controller.showWarning();
    }
    const std::string& text = *cRes.challengeInfoText;
    controller.challengeInfoText->setText(look ? look->getCustomText(text).value_or(text) : text);
    if (applied)
        controller.applyCustomization(*controller.challengeInfoText.get(), *applied, kChallengeTextName);
    controller.fitChallengeText();
}

} // namespace korvane
