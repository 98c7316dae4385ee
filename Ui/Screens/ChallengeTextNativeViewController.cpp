#include "Ui/Screens/ChallengeTextNativeViewController.h"

#include "Platform/Platform.h"
#include "Platform/Security/Secret.h"
#include "Platform/View/UIApplication.h"
#include "Platform/View/UIGestureRecognizer.h"
#include "Platform/View/UIWindow.h"
#include "Ui/Screens/Later.h"

#include <algorithm>
#include <array>

namespace korvane {

namespace {

constexpr double kFieldBorder = 1;
constexpr double kFieldCorner = 4;
/// Between the field and the keyboard.
constexpr double kFieldClearance = 5;
constexpr Seconds kKeyboardAnimation{0.25};

constexpr std::array kChain{UiObject::challengeInfoText,
                            UiObject::challengeInfoLabel,
                            UiObject::otp,
                            UiObject::submitButton,
                            UiObject::resendButton,
                            UiObject::whitelistingInfo,
                            UiObject::whyInfoButton,
                            UiObject::whyInfo,
                            UiObject::extInfoButton,
                            UiObject::extInfo};

/// Letters begin with one capital.
CustomKeyboardLayoutState stateOf(KeyboardPage page) {
    switch (page) {
    case KeyboardPage::letters: break;
    case KeyboardPage::numbers: return CustomKeyboardLayoutState::Numbers();
    case KeyboardPage::numberPad: return CustomKeyboardLayoutState::NumberPad();
    }
    return CustomKeyboardLayoutState::Letters(CustomKeyboardShiftState::Once);
}

} // namespace

void ChallengeTextNativeViewController::viewDidLoad() {
    ChallengeNativeViewController::viewDidLoad();
    otp->setDelegate(weakFrom(this));
    otp->layer().setBorderWidth(kFieldBorder);
    otp->layer().setCornerRadius(kFieldCorner);
    secureKeyboard->setDelegate(weakFrom(this));
    connect(*submitButton.get(), &ChallengeTextNativeViewController::checkOtp);
    connect(*resendButton.get(), &ChallengeTextNativeViewController::resendOtp);
    observeKeyboard();
    auto tap = std::make_shared<UITapGestureRecognizer>([weak = weakFrom(this)] {
        if (const auto self = weak.lock()) self->view()->endEditing();
    });
    tap->setCancelsTouchesInView(false);
    tap->setShouldReceive(
        [field = std::weak_ptr(otp.get())](const UITouch& touch) { return touch.view() != field.lock(); });
    view()->addGestureRecognizer(std::move(tap));
}

/// The keyboard of another screen, such as the twin that is not shown, is not this one's concern; one that
/// was shown here always goes again.
void ChallengeTextNativeViewController::observeKeyboard() {
    NotificationCenter& center = NotificationCenter::defaultCenter();
    showObserver_ = center.addObserver(UIResponder::keyboardWillShowNotification,
                                       [weak = weakFrom(this)](const Notification& notification) {
                                           const auto self = weak.lock();
                                           if (self && self->isAppearing())
                                               self->keyboardWillShow(notification);
                                       });
    hideObserver_ = center.addObserver(UIResponder::keyboardWillHideNotification,
                                       [weak = weakFrom(this)](const Notification& notification) {
                                           if (const auto self = weak.lock())
                                               self->keyboardWillHide(notification);
                                       });
}

void ChallengeTextNativeViewController::traitCollectionDidChange(const UITraitCollection& previous) {
    ChallengeNativeViewController::traitCollectionDidChange(previous);
    const auto look = customConfig ? customConfig->getTextBoxCustomization() : nullptr;
    if (look && look->borderColor) otp->layer().setBorderColor(look->borderColor);
}

void ChallengeTextNativeViewController::applyCustomization(
    const std::shared_ptr<const UiCustomization>& customization) {
    ChallengeNativeViewController::applyCustomization(customization);
    customizeButton(*submitButton.get(), ButtonType::SUBMIT, "submit");
    customizeButton(*submitButton.get(), ButtonType::VERIFY, "submit");
    customizeButton(*resendButton.get(), ButtonType::RESEND, "resend");
    if (const auto& label = customization->getLabelCustomization())
        applyCustomization(*challengeInfoLabel.get(), *label, "text challengeInfoLabel");
    const auto& box = customization->getTextBoxCustomization();
    if (!box) return;
    applyCustomization(*otp.get(), *box, "otp text");
    if (box->keyboardPage) secureKeyboard->setFirstPage(stateOf(*box->keyboardPage));
}

// Actions.

void ChallengeTextNativeViewController::checkOtp() {
    if (keyboardIsShown) view()->endEditing();
    const SecretString text(otp->text());
    if (text.text().empty()) return;
    showSpinner();
    const auto actions = transaction();
    if (!actions) return;
    onGlobalQueueAfter(kActionDelay, [actions, text, whitelisting = latestWhitelistingDataEntry()] {
        onMainQueue([actions, text, whitelisting] { actions->sendChallengeDataToAcs(text, whitelisting()); });
    });
}

void ChallengeTextNativeViewController::resendOtp() {
    if (keyboardIsShown) view()->endEditing();
    showSpinner();
    const auto actions = transaction();
    if (!actions) return;
    onGlobalQueueAfter(kActionDelay, [actions] { onMainQueue([actions] { actions->resendOtp(); }); });
}

// The keyboard.

bool ChallengeTextNativeViewController::textFieldShouldBeginEditing(UITextField& textField) {
    secureKeyboard->set(std::static_pointer_cast<UITextField>(textField.shared_from_this()));
    return true;
}

void ChallengeTextNativeViewController::textFieldShouldReturn(UITextField& /*textField*/) {
    submitButton->sendActions(ControlEvent::touchUpInside);
}

void ChallengeTextNativeViewController::keyboardDonePressed() {
    view()->endEditing();
}

void ChallengeTextNativeViewController::keyboardWillShow(const Notification& sender) {
    if (keyboardIsShown) return;
    keyboardIsShown = true;
    keyboardHeight_ = sender.keyboardFrameEnd.size.height;
    UIView::animate(kKeyboardAnimation, [this] {
        moveAboveKeyboard();
        scrollToField();
    });
}

void ChallengeTextNativeViewController::keyboardWillHide(const Notification& /*sender*/) {
    if (!keyboardIsShown) return;
    keyboardIsShown = false;
    UIView::animate(kKeyboardAnimation, [this] { moveTo(0); });
}

/// Another window has another keyboard, and gives the screen its usual place back.
void ChallengeTextNativeViewController::viewDidLayoutSubviews() {
    ChallengeNativeViewController::viewDidLayoutSubviews();
    if (!keyboardIsShown) return;
    const auto window = view()->window();
    const double height = window ? window->inputFrame().size.height : 0;
    if (height > 0) keyboardHeight_ = height;
    moveAboveKeyboard();
}

void ChallengeTextNativeViewController::moveAboveKeyboard() {
    const auto window = UIApplication::shared().keyWindow();
    const UIEdgeInsets covered = window ? window->safeAreaInsets() : UIEdgeInsets{};
    const double fieldBottom = CGRectGetMaxY(otp->frame()) + toolBar->bounds().size.height + covered.top;
    const double visible =
        Platform::current().mainScreen().bounds().size.height - keyboardHeight_ + covered.bottom;
    viewOffset = fieldBottom > visible ? fieldBottom - visible + kFieldClearance : 0;
    moveTo(-viewOffset);
}

/// A screen that is scrolled may have moved its field up and out of sight.
void ChallengeTextNativeViewController::scrollToField() {
    const auto window = view()->window();
    if (!scrollView || !window) return;
    const auto placeOf = [](const UIView& part) { return part.convertTo(nullptr, part.bounds()); };
    const double least = std::max(CGRectGetMaxY(placeOf(*toolBar.get())), window->safeAreaInsets().top);
    const double over = least + kFieldClearance - placeOf(*otp.get()).origin.y;
    if (over > 0) scrollView->scrollBy(-over);
}

/// The stack has no bar of its own: its screens begin at its top unless they have moved.
void ChallengeTextNativeViewController::moveTo(double y) {
    const CGRect frame = view()->frame();
    view()->setFrame({{frame.origin.x, y}, frame.size});
}

// The application's constraints.

std::span<const UiObject> ChallengeTextNativeViewController::chain() const {
    return kChain;
}

std::shared_ptr<UIView> ChallengeTextNativeViewController::control(UiObject object) const {
    if (object == UiObject::otp) return otp.get();
    if (object == UiObject::submitButton) return submitButton.get();
    if (object == UiObject::resendButton) return resendButton.get();
    return ChallengeNativeViewController::control(object);
}

} // namespace korvane
