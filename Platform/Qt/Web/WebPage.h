#pragma once

#include "Platform/Qt/Web/PageEngine.h"
#include "Platform/Qt/Web/WebForm.h"
#include "Platform/View/UIFocusSystem.h"
#include "Platform/View/WKWebView.h"

#include <QQmlEngine>
#include <QUrl>

#include <deque>
#include <memory>
#include <optional>

class QWebEngineNavigationRequest;

namespace korvane {

/// The engine behind one `WKWebView`: shows its page, lets the user's touches and keys reach it, and asks the
/// view before the page goes anywhere. Each page has a profile of its own that keeps nothing: no cookies, no
/// storage, no cache. Main thread only, after Qt WebEngine was initialised. A text of more than 2 MiB in
/// percent-encoding is not shown: the engine has no address for it.
///
/// **Navigation.** Every navigation of every frame is put to `WKWebView::decidePolicy` and done if it allows
/// it. The view's own text counts as "about:blank"; the engine gives it an address of scheme "data", which no
/// page may go to by itself. Nothing but "https", "about" and that text is ever shown, whatever the answer
/// is, and no other program is ever opened. New windows, downloads, permissions and dialogs are refused.
///
/// **Forms.** The engine shows neither the method nor the body of a request. So `forms.js` tells them, from a
/// world of scripts that the page's own scripts neither see nor reach: it reads the data when all listeners
/// of the page have had their say, and tells them before the form leaves. The policy is then asked with the
/// whole request: a POST form's body, or a GET form's query to the letter, in the form's own encoding, files
/// as their names alone. A form that was not told (in a shadow tree) is asked about as a GET of its address;
/// a POST form of more than 1 MiB without its body.
///
/// **Focus.** The page leads Tab among what it shows; past its first and its last control the window's focus
/// goes on.
///
/// **Loads.** Whatever else a page loads, in any frame, is encrypted, redirects too: `Gate` stops what starts
/// in the clear or goes to the view's blocked address, `loads.js` what is redirected into the clear.
/// `peers.js` takes WebRTC away.
///
/// **Late answers.** The engine does not wait. A navigation that has no answer when `decidePolicy` returns is
/// refused. One of the main frame is made once more if it is allowed later, unless the page has asked for
/// another in between or it is a form of a frame within the page.
class WebPage : public Page {
    Q_OBJECT

public:
    /// Fills itself with the engine's item. Holds the view weakly.
    WebPage(QQmlEngine& engine, const std::shared_ptr<WKWebView>& view, QQuickItem* parent);
    ~WebPage() override;

    void synchronize() override;

private slots:
    void onNavigation(QWebEngineNavigationRequest* request);
    void onSpoken(const QString& text);

private:
    class Edge;
    class Gate;
    struct Question;

    void makeWeb(QQmlEngine& engine);
    void makeEdges();
    void leave(UIKeyboardKey by);
    void load();
    [[nodiscard]] Question questionFor(const QWebEngineNavigationRequest& request);
    [[nodiscard]] std::optional<WebForm> takeForm(const QUrl& address);
    /// @return whether the policy allows it at once.
    bool ask(const std::shared_ptr<Question>& question);
    void go(const Question& question);

    std::weak_ptr<WKWebView> view_;
    int loadCount_ = 0;
    int questionCount_ = 0;
    QString html_;
    QUrl ownAddress_;          // of that text
    QUrl allowedAddress_;      // of what was allowed late and is on its way
    QString word_;             // that the scripts' messages begin with
    std::deque<WebForm> told_; // that are about to leave, the newest last
    std::unique_ptr<Gate> gate_;
    std::unique_ptr<QQuickItem> web_; // the last member: it uses the others until its end
};

} // namespace korvane
