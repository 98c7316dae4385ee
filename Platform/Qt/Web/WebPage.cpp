#include "Platform/Qt/Web/WebPage.h"

#include "Platform/Failure.h"

#include <QPointer>
#include <QQmlComponent>
#include <QQuickWebEngineProfile>
#include <QWebEngineCookieStore>
#include <QWebEngineNavigationRequest>
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

/// Blocks whatever a page would load in the clear or from this machine.
class Gate final : public QWebEngineUrlRequestInterceptor {
public:
    void interceptRequest(QWebEngineUrlRequestInfo& info) override {
        constexpr std::array kOpen = {"https", "wss", "data", "blob", "about"};
        const QString scheme = info.requestUrl().scheme();
        if (std::ranges::none_of(kOpen, [&](const char* open) { return scheme == QLatin1String(open); }))
            info.block(true);
    }
};

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

struct WebPage::Question {
    QUrl address;
    std::optional<WebForm> form;
    int number = 0;
    bool isAsking = false;
    std::optional<WKNavigationActionPolicy> answer = std::nullopt;
};

WebPage::WebPage(QQmlEngine& engine, std::shared_ptr<WKWebView> view, QQuickItem* parent)
    : QQuickItem(parent), view_(view), gate_(std::make_unique<Gate>()) {
    setFlag(ItemIsFocusScope);
    formTimer_.setSingleShot(true);
    formTimer_.setInterval(kFormPatience);
    connect(&formTimer_, &QTimer::timeout, this, [this] { onFormTold(questionCount_, {}); });
    makeWeb(engine);
    synchronize();
}

WebPage::~WebPage() = default;

void WebPage::makeWeb(QQmlEngine& engine) {
    loadResources();
    QQmlComponent component(&engine, QUrl(QStringLiteral("qrc:/korvane/web/WebPage.qml")),
                            QQmlComponent::PreferSynchronous);
    const QVariantMap script{
        {QStringLiteral("formScript"), QUrl(QStringLiteral("qrc:/korvane/web/forms.js"))}};
    web_.reset(qobject_cast<QQuickItem*>(component.createWithInitialProperties(script)));
    if (!web_) fatalError(component.errorString().toStdString());
    QQmlEngine::setObjectOwnership(web_.get(), QQmlEngine::CppOwnership);
    auto* const profile = web_->property("profile").value<QQuickWebEngineProfile*>();
    profile->setUrlRequestInterceptor(static_cast<Gate*>(gate_.get()));
    profile->cookieStore()->setCookieFilter([](const auto& /*request*/) { return false; });
    connect(web_.get(), SIGNAL(navigationRequested(QWebEngineNavigationRequest*)), this,
            SLOT(onNavigation(QWebEngineNavigationRequest*)));
    connect(web_.get(), SIGNAL(formTold(int, QString)), this, SLOT(onFormTold(int, QString)));
    web_->setParentItem(this);
    web_->setFocus(true);
}

void WebPage::synchronize() {
    const auto view = view_.lock();
    if (!view || view->loadCount() == loadCount_) return;
    loadCount_ = view->loadCount();
    ++questionCount_;
    formTimer_.stop();
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
    const bool isOwn = request->isMainFrame() && address == ownAddress_;
    bool isGoing = isOwn || mayBeShown(address);
    if (request->isMainFrame() && std::exchange(allowedAddress_, QUrl()) != address) {
        ++questionCount_;
        formTimer_.stop();
        if (request->navigationType() == QWebEngineNavigationRequest::FormSubmittedNavigation) {
            fetchForm(address);
            isGoing = false;
        } else {
            const auto question = std::make_shared<Question>(Question{address, std::nullopt, questionCount_});
            isGoing = ask(question) && isGoing;
        }
    }
    isGoing ? request->accept() : request->reject();
}

void WebPage::fetchForm(const QUrl& address) {
    formAddress_ = address;
    formTimer_.start();
    QMetaObject::invokeMethod(web_.get(), "askForForm", Q_ARG(int, questionCount_));
}

void WebPage::onFormTold(int question, const QString& form) {
    if (question != questionCount_) return;
    formTimer_.stop();
    auto told = WebForm::make(form);
    const auto goal = told ? told->address() : std::nullopt;
    if (!goal || QUrl(*goal) != formAddress_) told.reset();
    const auto asked = std::make_shared<Question>(Question{formAddress_, std::move(told), question});
    if (ask(asked)) go(*asked);
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
