#include "tests/Platform/Qt/Web/ShownPage.h"

#include <QQuickWebEngineProfile>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace korvane {
namespace {

/// A page that may use what an own text may not, and so is refused it by us.
class WebPageRefusals : public testing::Test {
protected:
    void SetUp() override {
        page->run("location = '" + server.url("/echo") + "'");
        ASSERT_TRUE(page->awaitOther(server));
    }
    [[nodiscard]] QQuickWebEngineProfile& profile() const {
        return *page->web().property("profile").value<QQuickWebEngineProfile*>();
    }

    const LocalServer server{LocalServer::Transport::tls};
    const std::shared_ptr<ShownPage> page = ShownPage::make();
};

TEST_F(WebPageRefusals, NothingIsKeptAndNothingPermitted) {
    EXPECT_TRUE(profile().isOffTheRecord());
    EXPECT_EQ(page->evaluate("(document.cookie = 'a=1; max-age=1000; secure', document.cookie)"), "");
    EXPECT_EQ(page->evaluate("window.localStorage"), "null");
    page->run("answers = []; const say = (answer) => answers.push(answer);"
              "navigator.geolocation.getCurrentPosition(say, () => say('refused'));"
              "Notification.requestPermission().then((answer) => say(answer));"
              "navigator.mediaDevices.getUserMedia({ audio: true }).then(say, () => say('refused'))");
    EXPECT_TRUE(ShownPage::await([&] { return page->evaluate("answers.length") == "3"; }));
    EXPECT_EQ(page->evaluate("answers.sort()"), "denied,refused,refused");
}

TEST_F(WebPageRefusals, DialogsAreDismissedAndDoNotHoldAnythingUp) {
    EXPECT_EQ(page->evaluate("[alert(1), confirm(2), prompt(3)]"), ",false,");
    page->run("document.body.innerHTML = '<input id=file type=file><input id=colour type=color>'");
    page->click("#file");
    page->click("#colour");
    page->run("print(); onbeforeunload = (e) => { e.preventDefault(); return 'stay' }");
    EXPECT_EQ(page->allAsked(), std::vector<std::string>{"GET " + server.url("/echo")});
}

TEST_F(WebPageRefusals, ADownloadIsCancelled) {
    QSignalSpy requested(&profile(), SIGNAL(downloadRequested(QQuickWebEngineDownloadRequest*)));
    page->run("const l = document.createElement('a'); l.href = '/size?bytes=9'; l.download = 'n'; l.click()");
    ASSERT_TRUE(ShownPage::await([&] { return !requested.isEmpty(); }));
    const auto* const download = requested.front().front().value<QObject*>();
    EXPECT_STREQ(download->metaObject()->enumerator(0).valueToKey(download->property("state").toInt()),
                 "DownloadCancelled");
}

TEST_F(WebPageRefusals, NothingIsLoadedInTheClear) {
    const LocalServer clear(LocalServer::Transport::plain);
    page->load("<img src='" + clear.url("/echo") + "'><img src='" + server.url("/empty") + "'>");
    page->run("done = 0; fetch('" + clear.url("/echo") + "', { mode: 'no-cors' }).catch(() => done = 1)");
    EXPECT_TRUE(
        ShownPage::await([&] { return page->evaluate("done") == "1" && server.received().size() == 2; }));
    EXPECT_TRUE(clear.received().empty());
}

} // namespace
} // namespace korvane
