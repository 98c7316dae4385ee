#include "tests/Platform/Qt/Web/ShownPage.h"

#include <QDesktopServices>

#include <gmock/gmock.h>

#include <array>
#include <utility>

namespace korvane {
namespace {

using Asked = std::vector<std::string>;

/// Hears what would be opened in other programs.
class Desktop : public QObject {
    Q_OBJECT

public:
    Desktop() {
        for (const char* scheme : kSchemes)
            QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "open");
    }
    ~Desktop() override {
        for (const char* scheme : kSchemes)
            QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
    }
    Q_INVOKABLE void open(const QUrl& url) { opened << url; }

    QList<QUrl> opened;

private:
    static constexpr std::array kSchemes = {"mailto", "foo", "file"};
};

std::string link(const std::string& address) {
    return "<a id=l href='" + address + "'>link</a>";
}

class WebPageNavigation : public testing::Test {
protected:
    const LocalServer server{LocalServer::Transport::tls};
    const std::string echo = server.url("/echo");
    const std::shared_ptr<ShownPage> page = ShownPage::make();
};

TEST(WebPagePolicy, IsAskedOnceAndNothingIsDoneWhereItRefuses) {
    Desktop desktop;
    ShownPage::expect({
        {"a link to http", link("http://a/b"), "#l", "GET http://a/b"},
        {"a letter", link("mailto:a@b.example?subject=x"), "#l", "GET mailto:a@b.example?subject=x"},
        {"a form to a letter", "<form id=f method=post action=mailto:a@b.example><input name=a>",
         "f.submit()", "GET mailto:a@b.example?body=a%3D"},
        {"another program", "", "location = 'foo:bar'", "GET foo:bar"},
        {"a file", link("file:///etc/hostname"), "#l", "GET file:///etc/hostname"},
        {"a refreshed page", "<meta http-equiv=refresh content='0;url=http://a/b'>", "", "GET http://a/b"},
        {"letters that an address may not hold", "", "location = 'https://no/\u00e4 b{'",
         "GET https://no/%C3%A4%20b%7B"},
        {"a text of the page's own", link("data:text/html,mine"), "#l", ""},
        {"a page of the engine", "", "location = 'chrome://version'", ""},
        {"a new window", "", "window.open('https://no/')", ""},
        {"a form to a new window", "<form id=f method=post target=_blank action=https://no/>", "f.submit()",
         ""},
    });
    EXPECT_EQ(desktop.opened, QList<QUrl>());
}

TEST_F(WebPageNavigation, IsDoneOnceAlsoAfterALateAnswerAndThereIsAWayBack) {
    const std::string shown =
        link(echo) + "<iframe name=x></iframe><form id=f method=post accept-charset=windows-1252 action='" +
        echo + "'><input name=a value='1 2'><button id=b name=b value=3>B</button></form>";
    std::size_t count = 0;
    for (const auto& [act, isLate, received] :
         {std::tuple("f.target = 'x'; b.click()", false, "POST /echo a=1+2&b=3"),
          {"f.a.value = '\u00e9'; f.submit(); f.a.value = 'later'", true, "POST /echo a=%E9"},
          {"l.click()", true, "GET /echo "}}) {
        SCOPED_TRACE(act);
        page->load(shown);
        page->isAnsweringLate = isLate;
        page->run(act);
        if (isLate) {
            ASSERT_TRUE(ShownPage::await([&] { return page->lateAnswers.size() == 1; }));
            EXPECT_EQ(server.received().size(), count);
            page->isAnsweringLate = false;
            std::exchange(page->lateAnswers, {}).front()();
        }
        ++count;
        ASSERT_TRUE(isLate ? page->awaitOther(server, count)
                           : ShownPage::await([&] { return server.received().size() == count; }));
        EXPECT_EQ(page->asked().size(), 1);
        ASSERT_EQ(server.received().size(), count);
        const auto last = server.received().back();
        EXPECT_EQ(last.method + ' ' + last.path + ' ' + last.body, received);
    }
    EXPECT_EQ(page->evaluate("document.body.innerText"), "nothing");
    page->run("history.back()");
    ASSERT_TRUE(ShownPage::await([&] { return page->showsOwnText(); }));
    EXPECT_EQ(page->asked(), (Asked{"GET " + echo, "GET about:blank"}));
    page->load("<b>the second page</b>");
    page->run("document.body.innerText = 'used'");
    page->loadAgain();
    EXPECT_EQ(page->evaluate("document.body.innerText"), "the second page");
}

TEST_F(WebPageNavigation, AsksAboutRedirectionsAndFramesWhichShowHttpsAndTheirOwnTextAlone) {
    const LocalServer clear(LocalServer::Transport::plain);
    const std::string start = server.redirectingUrl("http://127.0.0.1/clear");
    page->run("location = '" + start + "'");
    ASSERT_TRUE(ShownPage::await([&] { return page->asked().size() == 2; }));
    EXPECT_EQ(page->allAsked(), (Asked{"GET " + start, "GET http://127.0.0.1/clear"}));
    EXPECT_TRUE(page->showsOwnText());

    const auto frame = [](const std::string& source) { return "<iframe src=\"" + source + "\"></iframe>"; };
    const std::string tell = "<script>parent.postMessage(location.protocol, '*')</script>";
    page->load("<script>heard = []; onmessage = (e) => heard.push(e.data)</script>" +
               frame("data:text/html," + tell) + frame("file:///etc/hostname") + frame(clear.url("/echo")) +
               frame(echo) + frame(server.redirectingUrl("https://no/")) + "<iframe srcdoc=\"" + tell +
               "\"></iframe>");
    ASSERT_TRUE(ShownPage::await([&] { return page->asked().size() == 6; }));
    EXPECT_EQ(page->evaluate("heard"), "about:");
    EXPECT_THAT(page->allAsked(), testing::UnorderedElementsAre(
                                      testing::StartsWith("GET data:text/html,"), "GET file:///etc/hostname",
                                      "GET " + clear.url("/echo"), "GET " + echo,
                                      "GET " + server.redirectingUrl("https://no/"), "GET https://no/"));
    EXPECT_TRUE(clear.received().empty());
}

TEST_F(WebPageNavigation, IsForgottenIfTheAnswerComesAfterAnotherPageOrToAFrame) {
    page->load("<iframe id=f></iframe>");
    page->isAnsweringLate = true;
    for (const char* act : {"f.src = 'https://other.invalid/'", "location = 'https://other.invalid/'"}) {
        page->run(act);
        ASSERT_TRUE(ShownPage::await([&] { return page->lateAnswers.size() == 1; }));
        if (act[0] == 'f') std::exchange(page->lateAnswers, {}).front()();
    }
    EXPECT_TRUE(page->showsOwnText());
    EXPECT_EQ(page->asked().size(), 2);
    page->isAnsweringLate = false;
    page->load("the second page");
    page->lateAnswers.front()();
    EXPECT_EQ(page->allAsked(), Asked());
    EXPECT_TRUE(page->showsOwnText());
}

} // namespace
} // namespace korvane

#include "NavigationTest.moc"
