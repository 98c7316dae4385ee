#include "Platform/Qt/Web/WebPage.h"

#include "Platform/Failure.h"
#include "Platform/View/UIApplication.h"
#include "Platform/View/UIWindow.h"

#include <QFile>
#include <QPointer>
#include <QQmlComponent>
#include <QQuickWebEngineProfile>
#include <QUuid>
#include <QWebEngineCookieStore>
#include <QWebEngineNavigationRequest>
#include <QWebEngineScript>
#include <QWebEngineUrlRequestInterceptor>

#include <algorithm>
#include <array>
#include <utility>

/// Resources of a static library are there only where they are asked for; outside of every namespace.
static void loadResources() {
    Q_INIT_RESOURCE(Web);
}

namespace korvane {

namespace {

/// Forms that were told and have not left yet.
constexpr std::size_t kMostFormsTold = 8;

/// A script for every frame: a function. In the world that pages do not reach it is called with the word by
/// which its messages are known.
struct FrameScript {
    const char* name;
    QWebEngineScript::ScriptWorldId world;
};

constexpr std::array kScripts{
    FrameScript{"loads", QWebEngineScript::ApplicationWorld},
    FrameScript{"peers", QWebEngineScript::MainWorld},
    FrameScript{"forms", QWebEngineScript::ApplicationWorld},
};

QVariantList scriptsWith(const QString& word) {
    QVariantList scripts;
    for (const auto& [name, world] : kScripts) {
        QFile file(QStringLiteral(":/korvane/web/%1.js").arg(QLatin1String(name)));
        if (!file.open(QFile::ReadOnly)) fatalError("no script " + file.fileName().toStdString());
        QWebEngineScript script;
        script.setName(QLatin1String(name));
        const QString told = world == QWebEngineScript::MainWorld ? QString() : word;
        script.setSourceCode(QStringLiteral("(%1)('%2')").arg(QString::fromUtf8(file.readAll()), told));
        script.setInjectionPoint(QWebEngineScript::DocumentCreation);
        script.setWorldId(world);
        script.setRunsOnSubFrames(true);
        scripts << QVariant::fromValue(script);
    }
    return scripts;
}

/// The address under which the engine shows a text.
QUrl addressOf(const QString& html) {
    return QUrl(QStringLiteral("data:text/html;charset=UTF-8,") +
                QString::fromLatin1(html.toUtf8().toPercentEncoding()));
}

bool mayBeShown(const QUrl& address) {
    return address.scheme() == QLatin1String("https") || address.scheme() == QLatin1String("about");
}

WKNavigationAction actionFor(const QString& address) {
    const auto url = URL::make(address.toStdString());
    return url ? WKNavigationAction{URLRequest{*url}} : WKNavigationAction{};
}

/// What the policy is asked. The address is the engine's, the form what was told of it.
WKNavigationAction actionFor(const QUrl& address, const std::optional<WebForm>& form) {
    if (!form) return actionFor(QString::fromLatin1(address.toEncoded()));
    WKNavigationAction action = actionFor(form->address().value_or(form->action));
    if (!action.request || form->method == WebForm::Method::get) return action;
    action.request->httpMethod = "POST";
    action.request->httpBody = form->body();
    return action;
}

} // namespace

/// Blocks whatever a page would load in the clear or from this machine, and what the view blocks.
class WebPage::Gate final : public QWebEngineUrlRequestInterceptor {
public:
    void interceptRequest(QWebEngineUrlRequestInfo& info) override {
        constexpr std::array kOpen = {"https", "wss", "data", "blob", "about"};
        const QUrl address = info.requestUrl();
        const auto hasScheme = [&](const char* open) { return address.scheme() == QLatin1String(open); };
        const bool isBlocked =
            !blocked.isEmpty() &&
            QString::fromLatin1(address.toEncoded()).startsWith(blocked, Qt::CaseInsensitive);
        if (isBlocked || std::ranges::none_of(kOpen, hasScheme)) info.block(true);
    }

    QString blocked;
};

struct WebPage::Question {
    QUrl address;
    std::optional<WebForm> form;
    /// Counts those of the main frame; 0 for one of another frame.
    int number = 0;
    bool isAsking = false;
    std::optional<WKNavigationActionPolicy> answer = std::nullopt;
};

/// Next to the page in the order of focus: gets what the engine hands on.
class WebPage::Edge final : public QQuickItem {
public:
    Edge(WebPage& page, UIKeyboardKey leadsOn) : QQuickItem(&page), page_(page), leadsOn_(leadsOn) {
        setActiveFocusOnTab(true);
    }

protected:
    /// Once Qt has done with this change.
    void focusInEvent(QFocusEvent* /*event*/) override {
        QMetaObject::invokeMethod(
            &page_, [this] { page_.leave(leadsOn_); }, Qt::QueuedConnection);
    }

private:
    WebPage& page_;
    UIKeyboardKey leadsOn_;
};

WebPage::WebPage(QQmlEngine& engine, const std::shared_ptr<WKWebView>& view, QQuickItem* parent)
    : Page(parent), view_(view), word_(QUuid::createUuid().toString()), gate_(std::make_unique<Gate>()) {
    setFlag(ItemIsFocusScope);
    makeWeb(engine);
    makeEdges();
    synchronize();
}

WebPage::~WebPage() = default;

void WebPage::makeWeb(QQmlEngine& engine) {
    loadResources();
    QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/korvane/web/WebPage.qml")),
                            QQmlComponent::PreferSynchronous);
    web_.reset(qobject_cast<QQuickItem*>(
        component.createWithInitialProperties({{QStringLiteral("scripts"), scriptsWith(word_)}})));
    if (!web_) fatalError(component.errorString().toStdString());
    QQmlEngine::setObjectOwnership(web_.get(), QQmlEngine::CppOwnership);
    auto* const profile = web_->property("profile").value<QQuickWebEngineProfile*>();
    profile->setUrlRequestInterceptor(gate_.get());
    profile->cookieStore()->setCookieFilter([](const auto& /*request*/) { return false; });
    connect(web_.get(), SIGNAL(navigationRequested(QWebEngineNavigationRequest*)), this,
            SLOT(onNavigation(QWebEngineNavigationRequest*)));
    connect(web_.get(), SIGNAL(spoken(QString)), this, SLOT(onSpoken(QString)));
    web_->setParentItem(this);
    web_->setFocus(true);
}

/// Whoever comes again comes to the page, and not to the edge by which it was left.
void WebPage::makeEdges() {
    const auto* const before = new Edge(*this, UIKeyboardKey::backTab);
    web_->stackAfter(before);
    static_cast<void>(new Edge(*this, UIKeyboardKey::tab));
    connect(this, &QQuickItem::activeFocusChanged, web_.get(), [this](bool hasFocus) {
        if (!hasFocus) web_->setFocus(true);
    });
}

void WebPage::leave(UIKeyboardKey by) {
    const auto view = view_.lock();
    if (const auto window = view ? view->window() : nullptr) window->focusSystem().press(by);
}

void WebPage::synchronize() {
    const auto view = view_.lock();
    if (!view) return;
    web_->setProperty("textScale", UIApplication::shared().textScale());
    gate_->blocked = QString::fromStdString(view->blockedAddress());
    if (view->loadCount() == loadCount_) return;
    loadCount_ = view->loadCount();
    ++questionCount_;
    told_.clear();
    allowedAddress_.clear();
    html_ = QString::fromStdString(view->htmlString());
    ownAddress_ = addressOf(html_);
    load();
}

void WebPage::load() {
    QMetaObject::invokeMethod(web_.get(), "loadHtml", Q_ARG(QString, html_));
}

void WebPage::onNavigation(QWebEngineNavigationRequest* request) {
    const QUrl address = request->url();
    const bool isMainFrame = request->isMainFrame();
    bool isGoing = (isMainFrame && address == ownAddress_) || mayBeShown(address);
    if (!isMainFrame || std::exchange(allowedAddress_, QUrl()) != address)
        isGoing = ask(std::make_shared<Question>(questionFor(*request))) && isGoing;
    isGoing ? request->accept() : request->reject();
}

void WebPage::onSpoken(const QString& text) {
    if (!text.startsWith(word_)) return;
    auto form = WebForm::make(text.mid(word_.size()));
    if (!form) return;
    told_.push_back(std::move(*form));
    if (told_.size() > kMostFormsTold) told_.pop_front();
}

WebPage::Question WebPage::questionFor(const QWebEngineNavigationRequest& request) {
    const bool isMainFrame = request.isMainFrame();
    Question question{request.url(), std::nullopt, isMainFrame ? ++questionCount_ : 0};
    // A form that fills an empty frame does not count as one.
    const auto type = request.navigationType();
    if (type == QWebEngineNavigationRequest::FormSubmittedNavigation ||
        (!isMainFrame && type != QWebEngineNavigationRequest::RedirectNavigation))
        question.form = takeForm(question.address);
    return question;
}

/// The one that was told last of those that go there.
std::optional<WebForm> WebPage::takeForm(const QUrl& address) {
    const auto goesThere = [&](const WebForm& form) {
        const auto goal = form.address();
        return goal && QUrl(*goal) == address;
    };
    const auto found = std::find_if(told_.rbegin(), told_.rend(), goesThere);
    if (found == told_.rend()) return std::nullopt;
    std::optional<WebForm> form = std::move(*found);
    told_.erase(told_.begin(), found.base());
    return form;
}

bool WebPage::ask(const std::shared_ptr<Question>& question) {
    const auto view = view_.lock();
    if (!view) return false;
    const QUrl& address = question->address;
    const QUrl shown = address == ownAddress_ ? QUrl(QStringLiteral("about:blank")) : address;
    question->isAsking = true;
    view->decidePolicy(actionFor(shown, question->form), [question, page = QPointer(this)](auto answer) {
        question->answer = answer;
        if (!question->isAsking && page && answer == WKNavigationActionPolicy::allow) page->go(*question);
    });
    question->isAsking = false;
    return question->answer == WKNavigationActionPolicy::allow;
}

void WebPage::go(const Question& question) {
    if (question.number != questionCount_) return;
    allowedAddress_ = question.address;
    if (question.address == ownAddress_) {
        load();
    } else if (question.form && question.form->method == WebForm::Method::post) {
        QMetaObject::invokeMethod(web_.get(), "sendAgain");
    } else {
        web_->setProperty("url", question.address);
    }
}

} // namespace korvane
