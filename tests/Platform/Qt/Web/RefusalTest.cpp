#include "tests/Platform/Qt/Web/ShownPage.h"

#include <QQuickWebEngineProfile>
#include <QSignalSpy>
#include <QUdpSocket>

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

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

    /// Runs a script that calls `done` when its load from `to` has ended, and waits for that.
    void expectDone(const std::string& script, const std::string& to) {
        page->run("isDone = false; { const to = '" + to + "', done = () => isDone = true; " + script + " }");
        EXPECT_TRUE(ShownPage::await([&] { return page->evaluate("isDone") == "true"; })) << script;
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

const std::vector<std::pair<std::string, std::string>> kLoads = {
    {"fetch", "fetch(to, { mode: 'no-cors' }).catch(done)"},
    {"a picture", "Object.assign(new Image(), { onerror: done, src: to })"},
    {"a video", "Object.assign(document.createElement('video'), { onerror: done, src: to })"},
    {"a script",
     "document.body.append(Object.assign(document.createElement('script'), { onerror: done, src: to }))"},
    {"a style", "document.head.append(Object.assign(document.createElement('link'),"
                "{ onerror: done, rel: 'stylesheet', href: to }))"},
    {"a font", "new FontFace('f', `url(${to})`).load().catch(done)"},
    {"in a worker", "new Worker(URL.createObjectURL(new Blob([`fetch('${to}', { mode: 'no-cors' })"
                    ".catch(() => postMessage(0))`]))).onmessage = done"},
    {"a script of a worker", "new Worker(URL.createObjectURL(new Blob([`try { importScripts('${to}') }"
                             "catch { postMessage(0) }`]))).onmessage = done"},
    {"a frame without an address", "document.body.append(document.createElement('iframe'));"
                                   "frames[0].fetch(to, { mode: 'no-cors' }).catch(done)"},
};

TEST_F(WebPageRefusals, NothingIsLoadedInTheClear) {
    const LocalServer clear(LocalServer::Transport::plain);
    const std::string redirect = server.redirectingUrl(clear.url("/clear"));
    const auto expectNone = [&] {
        for (const auto& [name, script] : kLoads) {
            expectDone(script, redirect);
            EXPECT_TRUE(clear.received().empty()) << name;
        }
        expectDone(kLoads.front().second, clear.url("/clear"));
        expectDone("try { new WebSocket(to.replace('http', 'ws')).onerror = done } catch { done() }",
                   clear.url("/clear"));
        expectDone("try { new Worker(to).onerror = done } catch { done() }", "/worker");
        EXPECT_TRUE(clear.received().empty());
    };
    expectNone();
    page->load("");
    EXPECT_EQ(page->evaluate(
                  "[document.compatMode, document.characterSet, document.querySelectorAll('meta').length]"),
              "CSS1Compat,UTF-8,0");
    expectNone();
    EXPECT_TRUE(
        std::ranges::none_of(server.received(), [](const auto& got) { return got.path == "/worker"; }));
}

/// Whatever asks for it, though the policy would allow it.
TEST_F(WebPageRefusals, NothingIsLoadedFromTheBlockedAddress) {
    page->block(server.url("/echo"));
    page->load("<iframe></iframe>");
    const std::string to = server.url("/Echo?a=1");
    for (const auto& [name, script] : kLoads)
        expectDone(script, to);
    for (const std::string window : {"frames[0]", "window"})
        page->run(window + ".location = '" + to + "'");
    EXPECT_EQ(page->allAsked(), std::vector<std::string>(2, "GET " + to));
    EXPECT_EQ(server.received().size(), 1U) << "but for the page before";
}

/// The page's ways to the window of a frame that no script of ours runs in. Each gives it to `take`, or
/// another one where it is refused.
const std::vector<std::pair<std::string, std::string>> kWindows = {
    {"the page", "take(window)"},
    {"a frame with a text", "add(`<iframe srcdoc='<script>parent.take(window)</script>'></iframe>`)"},
    {"a frame's element", "take(put(frame()).contentWindow)"},
    {"a frame's place", "put(frame(slow)); all()"},
    {"a frame that goes on",
     "const f = frame(); put(f); f.onload = () => take(f.contentWindow); f.src = 'about:blank'"},
    {"a frame's script", "put(frame('javascript:parent.take(window)'))"},
    {"a document of a frame's script",
     "put(frame('javascript:parent.take(window), `<script>parent.take(window)</' + 'script>`'))"},
    {"a shadow tree", "const s = put(document.createElement('p')).attachShadow({ mode: 'closed' });"
                      "s.append(frame(slow)); take(s.firstChild.contentWindow)"},
    {"an element of the page's own",
     "customElements.define('x-x', class extends HTMLElement"
     "{ connectedCallback() { all() } }); add(`<iframe src=${slow}></iframe><x-x>`)"},
    {"a text that a frame writes",
     "const inner = put(frame()).contentDocument;"
     "inner.write(`<iframe src=${slow}></iframe><script>parent.take(window[0])</script>`)"},
    {"an object",
     "put(Object.assign(document.createElement('object'), { data: 'about:blank' })).offsetTop; all()"},
    {"a text that the page writes", "document.open(); document.write(`<iframe src=${slow}></iframe>"
                                    "<script>take(window[0])</script>`); put(frame(slow)); all()"},
};

const std::string kTaking =
    "<script>const slow = 'https://127.0.0.1:1/', taken = [];"
    "function take(view) { taken.push(typeof view.RTCPeerConnection, typeof view.webkitRTCPeerConnection) }"
    "function all() { for (let i = 0; window[i]; ++i) take(window[i]) }"
    "function frame(src = '') { const f = document.createElement('iframe'); if (src) f.src = src; return f }"
    "function put(element) { document.documentElement.append(element); return element }"
    "function add(text) { document.body.insertAdjacentHTML('beforeend', text) }"
    "for (const { prototype } of [Array, String, EventTarget, MutationObserver, Function])"
    "  for (const name of ['indexOf', 'addEventListener', 'observe', 'call', 'apply', Symbol.iterator])"
    "    if (name in prototype && prototype !== Array.prototype) prototype[name] = () => {};"
    "</script><body>";

TEST(WebPagePeers, AreOutOfReachOfEveryWindow) {
    const auto page = ShownPage::make();
    for (const auto& [name, act] : kWindows) {
        SCOPED_TRACE(name);
        page->load(kTaking);
        page->run(act);
        EXPECT_TRUE(ShownPage::await([&] { return page->evaluate("taken.length > 0") == "true"; }));
        EXPECT_EQ(page->evaluate("taken.filter((type) => type != 'undefined')"), "");
        EXPECT_EQ(page->evaluate("Array.from({ length: frames.length + 1 }, (_, i) => frames[i] ?? window)"
                                 ".filter((view) => view.RTCPeerConnection)",
                                 ShownPage::World::library),
                  "");
    }
}

/// Should a page find a way nevertheless: the tests' own world of scripts has what is taken from pages.
TEST(WebPagePeers, SendNothingByUdp) {
    QUdpSocket listener;
    ASSERT_TRUE(listener.bind(QHostAddress::LocalHost));
    const auto page = ShownPage::make();
    page->run("c = new RTCPeerConnection({ iceServers: [{ urls: 'stun:127.0.0.1:" +
                  std::to_string(listener.localPort()) +
                  "' }] }); c.createDataChannel(''); c.setLocalDescription()",
              ShownPage::World::tests);
    EXPECT_TRUE(ShownPage::await(
        [&] { return page->evaluate("c.iceGatheringState", ShownPage::World::tests) == "complete"; }));
    EXPECT_FALSE(listener.hasPendingDatagrams());
}

} // namespace
} // namespace korvane
