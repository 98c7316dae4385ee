#include "Platform/View/WKWebView.h"

namespace korvane {

void WKWebView::loadHTMLString(std::string html, std::optional<std::string> baseURL) {
    html_ = std::move(html);
    baseURL_ = std::move(baseURL);
    ++loadCount_;
    didChange(UIViewChange::paint);
}

void WKWebView::decidePolicy(const WKNavigationAction& action,
                             const WKNavigationDelegate::DecisionHandler& decide) {
    const auto delegate = delegate_.lock();
    if (!delegate) return decide(WKNavigationActionPolicy::allow);
    delegate->webView(*this, action, decide);
}

} // namespace korvane
