#pragma once

#include "Platform/Export.h"
#include "Platform/URLSession.h"
#include "Platform/View/UIView.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace korvane {

class WKWebView;

enum class WKNavigationActionPolicy { cancel, allow };

/// Where a page wants to go: no value for an address that is no URL.
struct WKNavigationAction {
    std::optional<URLRequest> request;
};

class KORVANE_EXPORT WKNavigationDelegate {
public:
    using DecisionHandler = std::function<void(WKNavigationActionPolicy)>;

    virtual ~WKNavigationDelegate() = default;

    /// Calls the handler once, now or later, on the main queue.
    virtual void webView(WKWebView& webView, const WKNavigationAction& decidePolicyFor,
                         const DecisionHandler& decisionHandler) = 0;
};

/// A web page, as far as its user sees it: the page's text and who is asked before it goes elsewhere. The
/// engine that shows it is a renderer's. Main queue only.
class KORVANE_EXPORT WKWebView : public UIView {
public:
    using UIView::UIView;

    [[nodiscard]] UIViewKind kind() const noexcept override { return UIViewKind::webView; }
    /// The page itself leads on among what it shows.
    [[nodiscard]] bool canBecomeFocused() const override { return true; }

    /// Shows a page of HTML text. Every call counts as a new page, also with the same text.
    void loadHTMLString(std::string html, std::optional<std::string> baseURL = std::nullopt);
    /// The page that was loaded last; empty before the first one.
    [[nodiscard]] const std::string& htmlString() const noexcept { return html_; }
    [[nodiscard]] const std::optional<std::string>& baseURL() const noexcept { return baseURL_; }
    /// How many pages were loaded: an engine loads anew whenever this has grown.
    [[nodiscard]] int loadCount() const noexcept { return loadCount_; }

    void setNavigationDelegate(std::weak_ptr<WKNavigationDelegate> delegate) {
        delegate_ = std::move(delegate);
    }

    /// What no page may load, however it asks for it: addresses that begin like this, in any case of letters.
    /// Empty for none.
    [[nodiscard]] const std::string& blockedAddress() const noexcept { return blockedAddress_; }
    void setBlockedAddress(std::string start) { blockedAddress_ = std::move(start); }

    /// For the engine: asks the delegate about one navigation. Without a delegate it is allowed.
    void decidePolicy(const WKNavigationAction& action, const WKNavigationDelegate::DecisionHandler& decide);

protected:
    [[nodiscard]] UIAccessibilityRole defaultAccessibilityRole() const override {
        return UIAccessibilityRole::page;
    }

private:
    std::string html_;
    std::optional<std::string> baseURL_;
    std::string blockedAddress_;
    int loadCount_ = 0;
    std::weak_ptr<WKNavigationDelegate> delegate_;
};

} // namespace korvane
