#pragma once

#include "Platform/NotificationCenter.h"
#include "Ui/Screens/ChallengeNativeViewController.h"
#include "keyboard/SecKeyboardInputViewController.h"

#include <memory>

namespace korvane {

/// The screen that asks for a one-time code, typed on the library's own keyboard. Its actions reach the
/// transaction on the main queue. Main queue only.
class ChallengeTextNativeViewController : public ChallengeNativeViewController,
                                          public UITextFieldDelegate,
                                          public SecKeyboardInputDelegate {
public:
    void viewDidLoad() override;
    void viewDidLayoutSubviews() override;
    void traitCollectionDidChange(const UITraitCollection& previous) override;

    void applyCustomization(const std::shared_ptr<const UiCustomization>& customization) override;
    using ChallengeNativeViewController::applyCustomization;

    /// Sends what was typed; with an empty field nothing happens.
    void checkOtp();
    void resendOtp();

    bool textFieldShouldBeginEditing(UITextField& textField) override;
    /// Presses the button that sends the code.
    void textFieldShouldReturn(UITextField& textField) override;
    void keyboardDonePressed() override;
    /// Moves the screen up so far that the keyboard does not cover the field, and down again.
    void keyboardWillShow(const Notification& sender);
    void keyboardWillHide(const Notification& sender);

    UIOutlet<UITextField> otp{*this, "otp"};
    UIOutlet<ChallengeButton> submitButton{*this, "submitButton"};
    UIOutlet<ChallengeButton> resendButton{*this, "resendButton"};
    const std::shared_ptr<SecKeyboardInputViewController> secureKeyboard =
        std::make_shared<SecKeyboardInputViewController>();
    bool keyboardIsShown = false;
    /// How far the screen moved up, in points.
    double viewOffset = 0;

protected:
    [[nodiscard]] std::span<const UiObject> chain() const override;
    [[nodiscard]] std::shared_ptr<UIView> control(UiObject object) const override;

private:
    void observeKeyboard();
    void moveAboveKeyboard();
    void scrollToField();
    void moveTo(double y);

    double keyboardHeight_ = 0; // of the one that is shown, in points
    NotificationObserver showObserver_;
    NotificationObserver hideObserver_;
};

/// The same in landscape.
class LandscapeChallengeTextNativeViewController final : public ChallengeTextNativeViewController {};

} // namespace korvane
