#include "Ui/Screens/VCFactory.h"

#include "Crypt/DataExtensions.h"
#include "Platform/JSON.h"
#include "Platform/Platform.h"
#include "Sdk/Messages/MessageValues.h"
#include "Sdk/Messages/UiUtils.h"
#include "Ui/Screens/ChallengeOobNativeViewController.h"
#include "Ui/Screens/ChallengeSelectNativeViewController.h"
#include "Ui/Screens/ChallengeStoryboard.h"
#include "Ui/Screens/ChallengeTextNativeViewController.h"
#include "Ui/Screens/ChallengeWebViewController.h"

namespace korvane {

namespace {

using Case = SdkErrorCase;

constexpr const char* kGetContainer = "getViewControllerContainer(for:)";
constexpr const char* kGetText = "getNativeTextVC(_:)";
constexpr const char* kGetSingle = "getNativeSingleSelectVC(_:)";
constexpr const char* kGetMulti = "getNativeMultiSelectVC(_:)";
constexpr const char* kGetOob = "getNativeOobVC(_:)";
constexpr const char* kGetHtml = "getHtmlVC(_:)";

void setTitlesIfPresent(UIButton& button, const std::optional<std::string>& title) {
    if (title) setTitles(button, *title);
}

void setTextIfPresent(UILabel& label, const std::optional<std::string>& text) {
    if (text) label.setText(*text);
}

/// A failure whose text differs from what the log tells.
[[noreturn]] void failHtml(const LogLines& logged, const std::string& text) {
    KORVANE_LOG(kGetHtml, logged);
    throw SdkError(Case::SDKRuntimeException, text);
}

/// @throws SdkError SDKRuntimeException that says why it is no page.
std::string requiredPage(const std::string& acsHTML) {
    if (auto page = decodedPage(acsHTML)) return *std::move(page);
    const std::string undecodable = "Can not encode cRes.acsHTML from base64url to base64.";
    if (!fromBase64(base64urlToBase64(acsHTML)))
        failHtml({undecodable + "\n" + escapedControls(acsHTML)}, undecodable);
    const std::string noString = "Can not create HTML string from base64 encoded cRes.acsHTML";
    failHtml({noString}, noString + ".");
}

} // namespace

VCFactory::VCFactory(UIImagePtr itsPsImage, UIImagePtr itsBankImage,
                     std::shared_ptr<const UiCustomization> itsUiCustomization)
    : VCFactory(std::move(itsPsImage), std::move(itsBankImage), std::move(itsUiCustomization), nullptr) {}

VCFactory::VCFactory(UIImagePtr itsPsImage, UIImagePtr itsBankImage,
                     std::shared_ptr<const UiCustomization> itsUiCustomization,
                     std::shared_ptr<const UiCustomizationConstraints> itsConstraints)
    : rootSize(Platform::current().mainScreen().bounds()), uiCustomization(std::move(itsUiCustomization)),
      uiCustomizationConstraints(std::move(itsConstraints)), psImage(std::move(itsPsImage)),
      bankImage(std::move(itsBankImage)) {
    try {
        storyboard_ = challengeStoryboard();
    } catch (const UIStoryboardError& error) {
        KORVANE_LOG("init(psImage:bankImage:uiCustomization:)", error.localizedDescription());
    }
}

// Scenes.

std::shared_ptr<UIViewController> VCFactory::instantiateAny(const Scene& scene) const {
    if (!storyboard_) return nullptr;
    try {
        return storyboard_->instantiateViewController(scene.identifier);
    } catch (const UIStoryboardError& error) {
        KORVANE_LOG(scene.function, error.localizedDescription());
        return nullptr;
    }
}

template <class Screen>
std::shared_ptr<Screen> VCFactory::instantiate(const Scene& scene) const {
    auto screen = std::dynamic_pointer_cast<Screen>(instantiateAny(scene));
    if (!screen) KORVANE_RAISE(scene.function, scene.kind, scene.failure);
    return screen;
}

template <class Screen, class LandscapeScreen>
ViewControllerContainer VCFactory::makeTwins(const CRes& cRes, const Scene& portrait, const Scene& landscape,
                                             const std::function<void(Screen&)>& prepare,
                                             const std::function<void(Screen&)>& fill) const {
    const std::shared_ptr<Screen> upright = instantiate<Screen>(portrait);
    const std::shared_ptr<Screen> lying = instantiate<LandscapeScreen>(landscape);
    for (const auto& screen : {upright, lying}) {
        prepare(*screen);
        setCommonNativeVcParts(cRes, *screen);
    }
    fill(*upright);
    fill(*lying);
    recalculateContentSize(*upright, Orientation::PORTRAIT);
    recalculateContentSize(*lying, Orientation::LANDSCAPE);
    return {cRes, false, {{Orientation::PORTRAIT, upright}, {Orientation::LANDSCAPE, lying}}};
}

// Kinds.

ViewControllerContainer VCFactory::getViewControllerContainer(const CRes& cRes) const {
    const auto kind = cRes.acsUiType ? fromRawValue<UiType>(*cRes.acsUiType) : std::nullopt;
    if (!kind) KORVANE_RAISE(kGetContainer, Case::InvalidAcsResponseException, "Unknown cRes.acsUiType");
    switch (*kind) {
    case UiType::TEXT: return getNativeTextVC(cRes);
    case UiType::SINGLE_SELECT: return getNativeSingleSelectVC(cRes);
    case UiType::MULTI_SELECT: return getNativeMultiSelectVC(cRes);
    case UiType::OOB: return getNativeOobVC(cRes);
    case UiType::HTML_OTHER: break;
    }
    return getHtmlVC(cRes);
}

ViewControllerContainer VCFactory::getNativeTextVC(const CRes& cRes) const {
    using Screen = ChallengeTextNativeViewController;
    return makeTwins<Screen, LandscapeChallengeTextNativeViewController>(
        cRes,
        {kGetText, "nativeTextChallengeVc", Case::InvalidInputException,
         "Failed initialization of portrait ChallengeTextNativeViewController"},
        {kGetText, "nativeTextChallengeLandscapeVc", Case::InvalidInputException,
         "Failed initialization of landscape ChallengeTextNativeViewController"},
        [](Screen&) {},
        [&cRes](Screen& screen) {
            setTitlesIfPresent(*screen.submitButton.get(), cRes.submitAuthenticationLabel);
            setTitlesIfPresent(*screen.resendButton.get(), cRes.resendInformationLabel);
            if (!cRes.resendInformationLabel) screen.resendButton->setHidden(true);
            setTextIfPresent(*screen.challengeInfoLabel.get(), cRes.challengeInfoLabel);
            if (cRes.challengeInfoLabel) screen.otp->setAccessibilityLabel(*cRes.challengeInfoLabel);
        });
}

ViewControllerContainer VCFactory::getNativeSingleSelectVC(const CRes& cRes) const {
    using Screen = ChallengeSingleSelectNativeViewController;
    return makeTwins<Screen, LandscapeChallengeSingleSelectNativeViewController>(
        cRes,
        {kGetSingle, "nativeSingleSelectChallengeVc", Case::SDKRuntimeException,
         "Failed initialization of portrait ChallengeSingleSelectNativeViewController"},
        {kGetSingle, "nativeSingleSelectChallengeLandscapeVc", Case::SDKRuntimeException,
         "Failed initialization of landscape LandscapeChallengeSingleSelectNativeViewController"},
        [&cRes](Screen& screen) { screen.data = cRes.challengeSelectInfo; },
        [&cRes](Screen& screen) {
            setTitlesIfPresent(*screen.nextButton.get(), cRes.submitAuthenticationLabel);
        });
}

ViewControllerContainer VCFactory::getNativeMultiSelectVC(const CRes& cRes) const {
    using Screen = ChallengeMultiSelectNativeViewController;
    return makeTwins<Screen, LandscapeChallengeMultiSelectNativeViewController>(
        cRes,
        {kGetMulti, "nativeMultiSelectChallengeVc", Case::SDKRuntimeException,
         "Failed initialization of portrait ChallengeMultiSelectNativeViewController"},
        {kGetMulti, "nativeMultiSelectChallengeLandscapeVc", Case::SDKRuntimeException,
         "Failed initialization of landscape LandscapeChallengeMultiSelectNativeViewController"},
        [&cRes](Screen& screen) { screen.data = cRes.challengeSelectInfo; },
        [&cRes](Screen& screen) {
            setTitlesIfPresent(*screen.nextButton.get(), cRes.submitAuthenticationLabel);
            setTextIfPresent(*screen.challengeInfoLabel.get(), cRes.challengeInfoLabel);
        });
}

ViewControllerContainer VCFactory::getNativeOobVC(const CRes& cRes) const {
    using Screen = ChallengeOobNativeViewController;
    return makeTwins<Screen, LandscapeChallengeOobNativeViewController>(
        cRes,
        {kGetOob, "nativeOobChallengeVc", Case::SDKRuntimeException,
         "Failed initialization of portrait ChallengeOobNativeViewController"},
        {kGetOob, "nativeOobChallengeLandscapeVc", Case::SDKRuntimeException,
         "Failed initialization of landscape LandscapeChallengeOobNativeViewController"},
        [](Screen&) {},
        [&cRes](Screen& screen) {
            setTitlesIfPresent(*screen.continueButton.get(), cRes.oobContinueLabel);
            setTextIfPresent(*screen.challengeInfoLabel.get(), cRes.challengeInfoLabel);
            if (cRes.challengeAddInfo) screen.addInfo = cRes.challengeAddInfo;
        });
}

ViewControllerContainer VCFactory::getHtmlVC(const CRes& cRes) const {
    const auto screen =
        instantiate<ChallengeWebViewController>({kGetHtml, kHtmlChallengeScene, Case::SDKRuntimeException,
                                                 "Failed initialization of ChallengeWebViewController"});
    static_cast<void>(screen->view());
    applyCustomization(*screen);
    if (!cRes.acsHTML) KORVANE_RAISE(kGetHtml, Case::InvalidInputException, "Can not get cRes.acsHTML");
    screen->pageString = requiredPage(*cRes.acsHTML);
    if (cRes.acsHTMLRefresh) screen->returnFromOobPage = decodedPage(*cRes.acsHTMLRefresh);
    screen->challengeWebView->loadHTMLString(*screen->pageString);
    return {cRes, true, {{Orientation::PORTRAIT, screen}}};
}

// The application's look.

void VCFactory::applyCustomization(ChallengeViewController& controller) const {
    if (!uiCustomization) return;
    try {
        controller.applyCustomization(uiCustomization);
    } catch (const std::exception& error) {
        KORVANE_RAISE("applyCustomization(_:)", Case::InvalidInputException,
                      "Failed on apply UI customization to challenge controller: " +
                          localizedDescription(error));
    }
}

} // namespace korvane
