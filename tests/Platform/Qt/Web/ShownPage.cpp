#include "tests/Platform/Qt/Web/ShownPage.h"

#include <QtTest>

#include <gtest/gtest.h>

#include <utility>

namespace korvane {

namespace {

constexpr int kPatienceMilliseconds = 30000;

std::string lineOf(const WKNavigationAction& action) {
    if (!action.request) return "no address";
    std::string line = action.request->httpMethod;
    line += ' ';
    line += action.request->url.absoluteString();
    if (action.request->httpMethod == "GET") return line;
    line += ' ';
    return line += action.request->httpBody ? asText(*action.request->httpBody) : "(no body)";
}

} // namespace

std::shared_ptr<ShownPage> ShownPage::make(const std::string& html) {
    auto page = std::make_shared<ShownPage>();
    page->window_.resize(400, 600);
    page->view_->setNavigationDelegate(page);
    page->page_ = std::make_unique<WebPage>(page->engine_, page->view_, page->window_.contentItem());
    page->page_->setSize({400, 600});
    page->window_.show();
    page->load(html);
    return page;
}

void ShownPage::load(const std::string& html) {
    const std::string title = "page " + std::to_string(++titles_);
    asked_.clear();
    isDrawn_ = false;
    view_->loadHTMLString("<!doctype html><script>document.title = '" + title + "'</script>" + html);
    page_->synchronize();
    ASSERT_TRUE(awaitTitle(title) && await([&] { return !web().property("loading").toBool(); }));
    ASSERT_EQ(asked_.front(), "GET about:blank");
    asked_.erase(asked_.begin());
}

void ShownPage::loadAgain() {
    asked_.clear();
    view_->loadHTMLString(view_->htmlString());
    page_->synchronize();
    ASSERT_TRUE(await([&] { return !asked_.empty() && !web().property("loading").toBool(); }));
}

void ShownPage::expect(const std::vector<PageCase>& cases) {
    const auto page = make();
    for (const PageCase& row : cases) {
        SCOPED_TRACE(row.name);
        page->load(row.page);
        row.act.starts_with('#') ? page->click(row.act) : page->run(row.act);
        ASSERT_TRUE(row.asked.empty() || await([&] { return !page->asked_.empty(); }));
        using Asked = std::vector<std::string>;
        EXPECT_EQ(page->allAsked(), row.asked.empty() ? Asked() : Asked{row.asked});
        EXPECT_TRUE(page->showsOwnText());
    }
}

bool ShownPage::showsOwnText() const {
    return web().property("url").toString().startsWith(QLatin1String("data:text/html"));
}

bool ShownPage::awaitOther(const LocalServer& server, std::size_t requests) const {
    return await([&] {
        return server.received().size() >= requests && !showsOwnText() && !web().property("loading").toBool();
    });
}

bool ShownPage::awaitTitle(const std::string& title) const {
    return await([&] { return web().property("title").toString().toStdString() == title; });
}

bool ShownPage::await(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, kPatienceMilliseconds);
}

void ShownPage::run(const std::string& statements, World in) {
    QMetaObject::invokeMethod(&web(), "runJavaScript", Q_ARG(QString, QString::fromStdString(statements)),
                              Q_ARG(uint, static_cast<uint>(in)));
}

/// The answer comes as the page's title, which keeps the order of whatever the page asked for before.
std::string ShownPage::evaluate(const std::string& expression, World in) {
    const QString mark = QStringLiteral("answer %1:").arg(++titles_);
    run("document.title = '" + mark.toStdString() + "' + String(" + expression + ")", in);
    const auto title = [&] { return web().property("title").toString(); };
    EXPECT_TRUE(await([&] { return title().startsWith(mark); })) << expression;
    return title().mid(mark.size()).toStdString();
}

/// A page takes presses once it was drawn.
void ShownPage::click(const std::string& selector) {
    if (!std::exchange(isDrawn_, true)) {
        run("requestAnimationFrame(() => requestAnimationFrame(() => document.title = 'drawn'))",
            World::tests);
        ASSERT_TRUE(awaitTitle("drawn"));
    }
    const std::string middle = "(({ x, y, width, height }) => [x + width / 2, y + height / 2])"
                               "(document.querySelector('" +
                               selector + "').getBoundingClientRect())";
    const QStringList place = QString::fromStdString(evaluate(middle, World::tests)).split(QLatin1Char(','));
    ASSERT_EQ(place.size(), 2);
    QTest::mouseClick(&window_, Qt::LeftButton, {},
                      QPointF(place[0].toDouble(), place[1].toDouble()).toPoint());
}

std::vector<std::string> ShownPage::allAsked() {
    static const std::string kLast = "GET https://no/last";
    run("location = 'https://no/last'");
    EXPECT_TRUE(await([&] { return !asked_.empty() && asked_.back() == kLast; }));
    std::vector<std::string> all = asked_;
    std::erase(all, kLast);
    return all;
}

void ShownPage::webView(WKWebView& /*webView*/, const WKNavigationAction& decidePolicyFor,
                        const DecisionHandler& decisionHandler) {
    asked_.push_back(lineOf(decidePolicyFor));
    const std::string& line = asked_.back();
    const bool isAllowed =
        line.find(" about:") != std::string::npos ||
        (line.find(" https://") != std::string::npos && line.find(" https://no/") == std::string::npos);
    const auto answer = isAllowed ? WKNavigationActionPolicy::allow : WKNavigationActionPolicy::cancel;
    if (!isAnsweringLate) return decisionHandler(answer);
    lateAnswers.emplace_back([decisionHandler, answer] { decisionHandler(answer); });
}

} // namespace korvane
