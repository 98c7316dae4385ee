#include "Sdk/Transaction/ChallengeFlow.h"

#include "Platform/Logger.h"
#include "Sdk/Events/SdkError.h"
#include "Ui/Screens/ChallengeWebViewController.h"
#include "Ui/Screens/Later.h"
#include "Ui/Screens/VCFactory.h"

namespace korvane {

namespace {

constexpr const char* kPresentRoot = "presentRootChallengeVc(_:)";
constexpr const char* kUpdate = "updateViewControllerContainer(for:)";
constexpr const char* kContinue = "continueChallenge(_:)";
constexpr const char* kUpdateHtml = "updateHtml(_:)";

std::optional<UiType> uiTypeOf(const CRes& cRes) {
    return cRes.acsUiType ? fromRawValue<UiType>(*cRes.acsUiType) : std::nullopt;
}

constexpr const char* kNoPages =
    "The bank asks with a web page, and this application was built without an engine for them.";

bool isOutOfReach(const CRes& cRes) {
    return uiTypeOf(cRes) == UiType::HTML_OTHER && !ChallengeWebViewController::isAvailable();
}

} // namespace

/// A challenge that began with an HTML page stays with pages; the other way round nothing is said.
void ChallengeFlow::updateViewControllerContainer(const CRes& cRes) {
    using enum SdkErrorCase;
    const auto type = uiTypeOf(cRes);
    if (!channelgeFlowType_) {
        if (!type) KORVANE_RAISE(kUpdate, InvalidAcsResponseException, "Unknown CRes.acsUiType");
        channelgeFlowType_ = type;
    }
    if (channelgeFlowType_ == UiType::HTML_OTHER && type && type != UiType::HTML_OTHER)
        KORVANE_RAISE(kUpdate, InvalidAcsResponseException,
                      "Challenge attempts to switch between native and html challenge views.");
    const auto factory = vcFactory_.get();
    screens_->hold(
        factory ? std::make_shared<const ViewControllerContainer>(factory->getViewControllerContainer(cRes))
                : nullptr);
}

void ChallengeFlow::presentRootChallengeVc(const CRes& cRes) {
    if (isOutOfReach(cRes)) {
        cancelChallengeTimer();
        KORVANE_LOG(kPresentRoot, kNoPages);
        endWithRuntimeError(kNoPages);
        return;
    }
    try {
        updateViewControllerContainer(cRes);
        screens_->present(screens_->firstController(), shared_from_this());
        enter(State::standing);
    } catch (const std::exception& error) {
        cancelChallengeTimer();
        const std::string text = "Got error on challenge VC init from CRes: " + genericDescription(error);
        KORVANE_LOG(kPresentRoot, text);
        endWithRuntimeError(text);
    }
}

void ChallengeFlow::continueChallenge(const CRes& cRes) {
    if (isOutOfReach(cRes)) {
        endWithError(kContinue, kNoPages);
        return;
    }
    try {
        updateViewControllerContainer(cRes);
    } catch (const std::exception& error) {
        endWithError(kContinue, "Can not create challenge VC: " + genericDescription(error));
        return;
    }
    if (channelgeFlowType_ == UiType::HTML_OTHER) {
        updateHtml(cRes);
        return;
    }
    const auto controller = screens_->nextController();
    if (!controller) {
        endWithError(kContinue, "Can not get challenge VC from ViewControllerContainer.");
        return;
    }
    onMainQueue([self = shared_from_this(), controller] {
        self->screens_->hideSpinner();
        self->screens_->replace(controller);
    });
}

/// The screen stays, and shows another page; its spinner goes, or nobody could use that page.
void ChallengeFlow::updateHtml(const CRes& cRes) {
    const auto page = decodedPage(cRes.acsHTML.value_or(""));
    if (!page || page->empty()) {
        endWithError(kUpdateHtml, "Can not get HTML from CRes.");
        return;
    }
    const auto screen = screens_->topController<ChallengeWebViewController>();
    if (!screen) {
        endWithError(kUpdateHtml, "Can not get top challenge HTML view controller.");
        return;
    }
    screen->externalAppWasPresented = false;
    screen->pageString = *page;
    screen->challengeWebView->loadHTMLString(*page);
    screen->hideSpinner();
    if (cRes.acsHTMLRefresh)
        if (auto refresh = decodedPage(*cRes.acsHTMLRefresh)) screen->returnFromOobPage = std::move(*refresh);
}

} // namespace korvane
