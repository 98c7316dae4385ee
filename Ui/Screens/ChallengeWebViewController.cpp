#include "Ui/Screens/ChallengeWebViewController.h"

#include "Crypt/DataExtensions.h"
#include "Platform/JSON.h"
#include "Platform/LetterCase.h"
#include "Platform/View/UIApplication.h"
#include "Sdk/Messages/UiUtils.h"
#include "Ui/Screens/Later.h"

namespace korvane {

namespace {

/// Where the pages' forms are sent: a host that is nobody's, so that nothing but a caught form goes there.
constexpr std::string_view kFormAddress = "https://emv3ds/challenge";

std::string schemeOf(std::string_view address) {
    const std::size_t end = address.find(':');
    return end == std::string_view::npos ? std::string() : lowercased(std::string(address.substr(0, end)));
}

/// What the form would have sent; no value for a call that is none of a form.
std::optional<std::string> formData(const URL& url, const std::optional<Bytes>& body) {
    if (body) {
        const std::string_view text = asText(*body);
        return isUtf8(text) ? std::optional<std::string>(text) : std::nullopt;
    }
    const std::string& address = url.absoluteString();
    const std::size_t mark = address.find('?');
    return mark == std::string::npos ? std::nullopt : std::optional(address.substr(mark + 1));
}

} // namespace

std::optional<std::string> decodedPage(const std::string& base64url) {
    const auto bytes = fromBase64(base64urlToBase64(base64url));
    if (!bytes || !isUtf8(asText(*bytes))) return std::nullopt;
    return std::string(asText(*bytes));
}

std::string addScalingHeader(std::string_view to) {
    return "<header><meta name='viewport' content='initial-scale=1.0, minimum-scale=1.0'></header>" +
           std::string(to);
}

bool ChallengeWebViewController::isAvailable() {
    return UIApplication::shared().showsPages();
}

void ChallengeWebViewController::viewDidLoad() {
    if (!addedListeners) {
        NotificationCenter& center = NotificationCenter::defaultCenter();
        leaving_ = center.addObserver(UIApplication::willResignActiveNotification,
                                      weakly(this, &ChallengeWebViewController::oobWasPresented));
        return_ = center.addObserver(UIApplication::didBecomeActiveNotification,
                                     weakly(this, &ChallengeWebViewController::replaceText));
        addedListeners = true;
    }
    ChallengeViewController::viewDidLoad();
    challengeWebView->setNavigationDelegate(weakFrom(this));
    challengeWebView->setBlockedAddress(std::string(kFormAddress));
}

void ChallengeWebViewController::viewWillDisappear(UIAnimated animated) {
    ChallengeViewController::viewWillDisappear(animated);
    leaving_.reset();
    return_.reset();
}

void ChallengeWebViewController::webView(WKWebView& /*webView*/, const WKNavigationAction& decidePolicyFor,
                                         const DecisionHandler& decisionHandler) {
    const auto& request = decidePolicyFor.request;
    const std::string scheme = request ? schemeOf(request->url.absoluteString()) : std::string();
    if (scheme == "about") {
        decisionHandler(WKNavigationActionPolicy::allow);
        return;
    }
    if (scheme != "https") {
        decisionHandler(WKNavigationActionPolicy::cancel);
        return;
    }
    if (!lowercased(request->url.absoluteString()).starts_with(kFormAddress)) {
        decisionHandler(WKNavigationActionPolicy::allow);
        return;
    }
    if (request->httpMethod == "GET") processHtmlChallengeButtonPress(request->url, std::nullopt);
    if (request->httpMethod == "POST") processHtmlChallengeButtonPress(request->url, request->httpBody);
    decisionHandler(WKNavigationActionPolicy::cancel);
}

void ChallengeWebViewController::processHtmlChallengeButtonPress(const URL& url,
                                                                 const std::optional<Bytes>& body) {
    showSpinner();
    const auto actions = transaction();
    if (!actions) return;
    onGlobalQueueAfter(kActionDelay, [weak = weakFrom(this), actions, data = formData(url, body)] {
        if (data) {
            actions->sendHtmlChallengeDataToAcs(*data);
            return;
        }
        onMainQueue([weak] {
            if (const auto self = weak.lock()) self->reportIncorrectCall();
        });
    });
}

void ChallengeWebViewController::reportIncorrectCall() {
    hideSpinner();
    if (const auto actions = transaction()) actions->sendRuntimeErrorToApp("Html form made incorrect call.");
    if (const auto presenting = presentingViewController()) presenting->dismiss(UIAnimated::yes);
}

void ChallengeWebViewController::oobWasPresented(const Notification& /*sender*/) {
    externalAppWasPresented = true;
}

void ChallengeWebViewController::replaceText(const Notification& /*sender*/) {
    if (externalAppWasPresented && returnFromOobPage) challengeWebView->loadHTMLString(*returnFromOobPage);
}

} // namespace korvane
