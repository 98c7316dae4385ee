#pragma once

#include "Platform/EnumTable.h"
#include "Ui/Customisation/UiCustomization.h"
#include "Ui/Customisation/UiCustomizationConstraints.h"

#include <string_view>

namespace korvane {

// What the members of a theme's file are called that stand for cases.

[[nodiscard]] constexpr std::string_view rawValue(ButtonType type) {
    switch (type) {
    case ButtonType::VERIFY: return "verify";
    case ButtonType::CONTINUE: return "continue";
    case ButtonType::NEXT: return "next";
    case ButtonType::CANCEL: return "cancel";
    case ButtonType::RESEND: return "resend";
    case ButtonType::SUBMIT: return "submit";
    case ButtonType::CUST_WHY_INFO: return "whyInfo";
    case ButtonType::CUST_EXT_INFO: return "extInfo";
    }
    return kNoRawValue;
}

[[nodiscard]] constexpr std::string_view rawValue(CustImageType type) {
    switch (type) {
    case CustImageType::WARNING: return "warning";
    case CustImageType::ARROW_UP: return "arrowUp";
    case CustImageType::ARROW_DOWN: return "arrowDown";
    case CustImageType::CHECKBOX_WHITELISTING_CHECKED: return "checkBoxChecked";
    case CustImageType::CHECKBOX_WHITELISTING_UNCHECKED: return "checkBoxUnchecked";
    }
    return kNoRawValue;
}

[[nodiscard]] constexpr std::string_view rawValue(CustTextViewType type) {
    switch (type) {
    case CustTextViewType::CHALLENGE_INFO_TEXT: return "challengeInfo";
    case CustTextViewType::WHY_INFO_TEXT: return "whyInfo";
    case CustTextViewType::EXT_INFO_TEXT: return "extInfo";
    case CustTextViewType::WHITELISTING_TEXT: return "whitelisting";
    }
    return kNoRawValue;
}

[[nodiscard]] constexpr std::string_view rawValue(KeyboardPage page) {
    switch (page) {
    case KeyboardPage::letters: return "letters";
    case KeyboardPage::numbers: return "numbers";
    case KeyboardPage::numberPad: return "numberPad";
    }
    return kNoRawValue;
}

[[nodiscard]] constexpr std::string_view rawValue(UiObject object) {
    switch (object) {
    case UiObject::bankLogo: return "bankLogo";
    case UiObject::psLogo: return "psLogo";
    case UiObject::challengeInfoHeader: return "challengeInfoHeader";
    case UiObject::challengeInfoLabel: return "challengeInfoLabel";
    case UiObject::challengeInfoText: return "challengeInfoText";
    case UiObject::whitelistingInfo: return "whitelistingInfo";
    case UiObject::whyInfoButton: return "whyInfoButton";
    case UiObject::whyInfo: return "whyInfo";
    case UiObject::extInfoButton: return "extInfoButton";
    case UiObject::extInfo: return "extInfo";
    case UiObject::warningImage: return "warningImage";
    case UiObject::otp: return "otp";
    case UiObject::submitButton: return "submitButton";
    case UiObject::resendButton: return "resendButton";
    case UiObject::continueButton: return "continueButton";
    case UiObject::tableView: return "tableView";
    case UiObject::nextButton: return "nextButton";
    }
    return kNoRawValue;
}

} // namespace korvane
