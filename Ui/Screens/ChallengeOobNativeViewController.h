#pragma once

#include "Platform/NotificationCenter.h"
#include "Ui/Screens/ChallengeNativeViewController.h"

#include <optional>
#include <string>

namespace korvane {

/// The screen of a payment that is approved elsewhere, such as in the bank's own application. It notices that
/// the cardholder has been away. It acts on the global queue. Main queue only.
class ChallengeOobNativeViewController : public ChallengeNativeViewController {
public:
    void viewWillAppear(UIAnimated animated) override;
    void viewWillDisappear(UIAnimated animated) override;

    void applyCustomization(const std::shared_ptr<const UiCustomization>& customization) override;
    using ChallengeNativeViewController::applyCustomization;

    /// Says that the cardholder goes on; whether the payment was approved is the ACS's to know.
    void sendOobContinue();
    void oobWasPresented(const Notification& sender);
    /// Shows `addInfo` in place of the challenge text once the cardholder has been away.
    void replaceText(const Notification& sender);

    void viewDidLoad() override;

    UIOutlet<ChallengeButton> continueButton{*this, "continueButton"};
    std::optional<std::string> addInfo;
    bool externalAppWasPresented = false;
    /// Stays set after a disappearance: a screen that appears again does not observe any more.
    bool addedListeners = false;

protected:
    [[nodiscard]] std::span<const UiObject> chain() const override;
    [[nodiscard]] std::shared_ptr<UIView> control(UiObject object) const override;

private:
    NotificationObserver leaving_;
    NotificationObserver return_;
};

/// The same in landscape.
class LandscapeChallengeOobNativeViewController final : public ChallengeOobNativeViewController {};

} // namespace korvane
