#include "Ui/Customisation/UiCustomizationConstraints.h"

#include <cstddef>

namespace korvane {

namespace {

using All = UiCustomizationConstraints;

/// The fields in the order of `UiObject`, which is not their own.
constexpr UiConstraints All::*kFields[] = {
    &All::bankLogo,          &All::psLogo,           &All::challengeInfoHeader, &All::challengeInfoLabel,
    &All::challengeInfoText, &All::whitelistingInfo, &All::whyInfoButton,       &All::whyInfo,
    &All::extInfoButton,     &All::extInfo,          &All::warningImage,        &All::otp,
    &All::submitButton,      &All::resendButton,     &All::continueButton,      &All::tableView,
    &All::nextButton,
};

} // namespace

void UiCustomizationConstraints::setConstraints(UiObject to, const UiConstraints& constraints) {
    this->*kFields[static_cast<std::size_t>(to)] = constraints;
}

const UiConstraints& UiCustomizationConstraints::getConstraints(UiObject to) const {
    return this->*kFields[static_cast<std::size_t>(to)];
}

} // namespace korvane
