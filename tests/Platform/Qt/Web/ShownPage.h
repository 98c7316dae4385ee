#pragma once

#include "Platform/Qt/QtPlatform.h"
#include "Platform/Qt/Web/WebPage.h"
#include "tests/support/LocalServer.h"

#include <QQmlEngine>
#include <QQuickWindow>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace korvane {

/// What a page does, and the one thing that the policy is asked because of it.
struct PageCase {
    const char* name;
    std::string page;
    /// A button or link that is pressed ("#id"), or a script.
    std::string act;
    /// "GET https://a/b", "POST https://a/b a=1", "POST https://a/b (no body)"; empty for no question.
    std::string asked;
};

/// A web view in a window with the real engine, and a policy that keeps what it is asked. It allows "about"
/// and "https", but not the host "no".
class ShownPage : public WKNavigationDelegate {
public:
    /// Ready when the page and its scripts are there. Fails the test otherwise.
    [[nodiscard]] static std::shared_ptr<ShownPage> make(const std::string& html = "");
    void load(const std::string& html);
    /// The same text once more.
    void loadAgain();
    void block(const std::string& address) { view_->setBlockedAddress(address); }
    /// Plays the cases one after the other. The page's own text must stay.
    static void expect(const std::vector<PageCase>& cases);

    /// The page's own world of scripts, or one that it does not reach: the library's, or the tests'.
    enum class World : unsigned { page = 0, library = 1, tests = 2 };
    void run(const std::string& statements, World in = World::page);
    /// An expression, as a text.
    std::string evaluate(const std::string& expression, World in = World::page);
    /// Presses the middle of an element with the mouse.
    void click(const std::string& selector);
    [[nodiscard]] QQuickWindow& window() noexcept { return window_; }
    [[nodiscard]] QQuickItem& web() const { return *page_->childItems().at(1); }
    [[nodiscard]] bool showsOwnText() const;
    /// Waits for a page of the server, to which that many requests are made.
    [[nodiscard]] bool awaitOther(const LocalServer& server, std::size_t requests = 1) const;
    [[nodiscard]] static bool await(const std::function<bool()>& condition);

    /// What was asked since the page was loaded.
    [[nodiscard]] const std::vector<std::string>& asked() const noexcept { return asked_; }
    /// Everything that was asked: makes the page ask for one thing more, and leaves that out.
    [[nodiscard]] std::vector<std::string> allAsked();

    /// Answers are kept here instead of being given, once this is set.
    bool isAnsweringLate = false;
    std::vector<std::function<void()>> lateAnswers;

    void webView(WKWebView& webView, const WKNavigationAction& decidePolicyFor,
                 const DecisionHandler& decisionHandler) override;

private:
    [[nodiscard]] bool awaitTitle(const std::string& title) const;

    QtPlatform platform_; // of which a page has its texts' scale
    QQmlEngine engine_;
    QQuickWindow window_;
    std::shared_ptr<WKWebView> view_ = std::make_shared<WKWebView>();
    std::unique_ptr<WebPage> page_;
    std::vector<std::string> asked_;
    int titles_ = 0;
    bool isDrawn_ = false;
};

} // namespace korvane
