#pragma once

#include "Platform/Export.h"

#include <optional>

namespace korvane {

/// The controls whose place an application can change.
enum class UiObject {
    bankLogo,
    psLogo,
    challengeInfoHeader,
    challengeInfoLabel,
    challengeInfoText,
    whitelistingInfo,
    whyInfoButton,
    whyInfo,
    extInfoButton,
    extInfo,
    warningImage,
    otp,
    submitButton,
    resendButton,
    continueButton,
    tableView,
    nextButton
};

/// New constants, in points, for the constraints that a screen has on one control. Absent ones stay, and so
/// does everything that the screen has no constraint for.
struct UiConstraints {
    std::optional<double> leading = std::nullopt;
    std::optional<double> trailing = std::nullopt;
    std::optional<double> top = std::nullopt;
    std::optional<double> bottom = std::nullopt;
    std::optional<double> height = std::nullopt;
    std::optional<double> width = std::nullopt;

    friend bool operator==(const UiConstraints&, const UiConstraints&) = default;
};

/// Where an application wants the controls of the native screens, in portrait and landscape alike. Shared
/// plain data, to be filled before the service is initialised.
class KORVANE_EXPORT UiCustomizationConstraints {
public:
    void setConstraints(UiObject to, const UiConstraints& constraints);
    [[nodiscard]] const UiConstraints& getConstraints(UiObject to) const;

    UiConstraints bankLogo;
    UiConstraints psLogo;
    UiConstraints challengeInfoHeader;
    UiConstraints challengeInfoLabel;
    UiConstraints challengeInfoText;
    UiConstraints whyInfoButton;
    UiConstraints whitelistingInfo;
    UiConstraints whyInfo;
    UiConstraints extInfoButton;
    UiConstraints extInfo;
    UiConstraints warningImage;
    UiConstraints otp;
    UiConstraints submitButton;
    UiConstraints resendButton;
    UiConstraints continueButton;
    UiConstraints tableView;
    UiConstraints nextButton;
};

} // namespace korvane
