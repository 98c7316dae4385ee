#include "Ui/Screens/ChallengeOobNativeViewController.h"

#include "Platform/View/UIApplication.h"
#include "Ui/Screens/Later.h"

#include <array>

namespace korvane {

namespace {

constexpr std::array kChain{UiObject::challengeInfoText, UiObject::challengeInfoLabel,
                            UiObject::continueButton,    UiObject::whitelistingInfo,
                            UiObject::whyInfoButton,     UiObject::whyInfo,
                            UiObject::extInfoButton,     UiObject::extInfo};

} // namespace

void ChallengeOobNativeViewController::viewDidLoad() {
    ChallengeNativeViewController::viewDidLoad();
    connect(*continueButton.get(), &ChallengeOobNativeViewController::sendOobContinue);
}

void ChallengeOobNativeViewController::viewWillAppear(UIAnimated animated) {
    if (!addedListeners) {
        NotificationCenter& center = NotificationCenter::defaultCenter();
        leaving_ = center.addObserver(UIApplication::willResignActiveNotification,
                                      weakly(this, &ChallengeOobNativeViewController::oobWasPresented));
        return_ = center.addObserver(UIApplication::didBecomeActiveNotification,
                                     weakly(this, &ChallengeOobNativeViewController::replaceText));
        addedListeners = true;
    }
    ChallengeNativeViewController::viewWillAppear(animated);
}

void ChallengeOobNativeViewController::viewWillDisappear(UIAnimated animated) {
    ChallengeNativeViewController::viewWillDisappear(animated);
    leaving_.reset();
    return_.reset();
}

void ChallengeOobNativeViewController::applyCustomization(
    const std::shared_ptr<const UiCustomization>& customization) {
    ChallengeNativeViewController::applyCustomization(customization);
    customizeButton(*continueButton.get(), ButtonType::CONTINUE, "continue");
}

void ChallengeOobNativeViewController::oobWasPresented(const Notification& /*sender*/) {
    externalAppWasPresented = true;
}

void ChallengeOobNativeViewController::replaceText(const Notification& /*sender*/) {
    if (!externalAppWasPresented || !addInfo) return;
    if (warningWidthConstraint->constant() > 0) warningWidthConstraint->setConstant(0);
    challengeInfoText->setText(*addInfo);
    fitChallengeText();
}

void ChallengeOobNativeViewController::sendOobContinue() {
    showSpinner();
    const auto actions = transaction();
    if (!actions) return;
    onGlobalQueueAfter(kActionDelay, [actions, whitelisting = latestWhitelistingDataEntry()] {
        actions->sendOobContinue(whitelisting());
    });
}

std::span<const UiObject> ChallengeOobNativeViewController::chain() const {
    return kChain;
}

std::shared_ptr<UIView> ChallengeOobNativeViewController::control(UiObject object) const {
    return object == UiObject::continueButton ? continueButton.get()
                                              : ChallengeNativeViewController::control(object);
}

} // namespace korvane
