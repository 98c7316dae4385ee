#pragma once

#include "Platform/NotificationCenter.h"
#include "Platform/View/WKWebView.h"
#include "Ui/Screens/ChallengeViewController.h"

#include <optional>
#include <string>
#include <string_view>

namespace korvane {

/// The screen that shows the ACS's own page, in both orientations. The page's form goes nowhere: what it
/// would send is taken from it and handed to the transaction, on the global queue. Main queue only.
class ChallengeWebViewController : public ChallengeViewController, public WKNavigationDelegate {
public:
    /// Whether what draws the screens can show pages: without an engine this one stays empty. Any thread.
    [[nodiscard]] static bool isAvailable();

    void viewDidLoad() override;
    void viewWillDisappear(UIAnimated animated) override;

    /// Lets the page be shown and follow https links; takes the form.
    void webView(WKWebView& webView, const WKNavigationAction& decidePolicyFor,
                 const DecisionHandler& decisionHandler) override;

    void oobWasPresented(const Notification& sender);
    /// Shows the page for the return once the cardholder has been away, if the ACS sent one.
    void replaceText(const Notification& sender);

    UIOutlet<WKWebView> challengeWebView{*this, "challengeWebView"};
    std::optional<std::string> pageString;
    std::optional<std::string> returnFromOobPage;
    bool externalAppWasPresented = false;
    bool addedListeners = false;

private:
    void processHtmlChallengeButtonPress(const URL& url, const std::optional<Bytes>& body);
    void reportIncorrectCall();

    NotificationObserver leaving_;
    NotificationObserver return_;
};

/// The page of a Base64URL text as the ACS sends it; no value unless it is UTF-8.
[[nodiscard]] std::optional<std::string> decodedPage(const std::string& base64url);

/// An HTML text with a header before it that shows it unscaled.
[[nodiscard]] std::string addScalingHeader(std::string_view to);

} // namespace korvane
