#include "Ui/Customisation/UiCustomizationConstraints.h"

#include "Platform/Failure.h"

namespace korvane {

namespace {

using All = UiCustomizationConstraints;

UiConstraints All::*fieldOf(UiObject object) {
    switch (object) {
    case UiObject::bankLogo: return &All::bankLogo;
    case UiObject::psLogo: return &All::psLogo;
    case UiObject::challengeInfoHeader: return &All::challengeInfoHeader;
    case UiObject::challengeInfoLabel: return &All::challengeInfoLabel;
    case UiObject::challengeInfoText: return &All::challengeInfoText;
    case UiObject::whitelistingInfo: return &All::whitelistingInfo;
    case UiObject::whyInfoButton: return &All::whyInfoButton;
    case UiObject::whyInfo: return &All::whyInfo;
    case UiObject::extInfoButton: return &All::extInfoButton;
    case UiObject::extInfo: return &All::extInfo;
    case UiObject::warningImage: return &All::warningImage;
    case UiObject::otp: return &All::otp;
    case UiObject::submitButton: return &All::submitButton;
    case UiObject::resendButton: return &All::resendButton;
    case UiObject::continueButton: return &All::continueButton;
    case UiObject::tableView: return &All::tableView;
    case UiObject::nextButton: return &All::nextButton;
    }
    fatalError("A number that is no control.");
}

} // namespace

void UiCustomizationConstraints::setConstraints(UiObject to, const UiConstraints& constraints) {
    this->*fieldOf(to) = constraints;
}

const UiConstraints& UiCustomizationConstraints::getConstraints(UiObject to) const {
    return this->*fieldOf(to);
}

} // namespace korvane
