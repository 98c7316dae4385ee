#include "Platform/Headless/HeadlessPlatform.h"
#include "Sdk/Exchange/HttpClient.h"
#include "tests/support/CannedServer.h"
#include "tests/support/Files.h"
#include "tests/support/LocalServer.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>

namespace korvane {
namespace {

using testing::HasSubstr;

constexpr Seconds kLong{60.0};

struct Outcome {
    std::optional<std::string> body;
    std::optional<std::string> error;
};

URLRequest get(const std::string& url) {
    return {*URL::make(url)};
}

URLRequest post(const std::string& url, const std::string& body) {
    URLRequest request = get(url);
    request.httpMethod = "POST";
    request.httpBody = toBytes(body);
    return request;
}

class NativeURLSession : public testing::Test {
protected:
    /// Requests to this machine go to it, whatever proxies the environment names.
    static void SetUpTestSuite() { ::setenv("no_proxy", "*", 1); }

    /// A task on the session, whose outcome `outcome()` waits for.
    std::shared_ptr<URLSessionDataTask> task(URLSession& session, URLRequest request) {
        return session.dataTask(std::move(request), [this](auto body, auto error) {
            if (body) last_.body = std::string(asText(*body));
            last_.error = std::move(error);
            ++calls_;
            ended_->signal();
        });
    }

    Outcome outcome() {
        EXPECT_EQ(ended_->wait(kLong), DispatchTimeoutResult::success);
        return std::exchange(last_, {});
    }

    Outcome fetch(URLSession& session, URLRequest request) {
        task(session, std::move(request))->resume();
        return outcome();
    }
    Outcome fetch(URLRequest request) { return fetch(*session_, std::move(request)); }

    LocalServer server_{LocalServer::Transport::plain};
    HeadlessPlatform platform_;
    std::shared_ptr<URLSession> session_ = platform_.makeURLSession({});
    std::shared_ptr<DispatchSemaphore> ended_ = platform_.dispatch().makeSemaphore(0);
    Outcome last_;
    std::atomic<int> calls_{0};
};

TEST_F(NativeURLSession, MethodHeadersAndBodyReachTheServerAndItsBodyComesBack) {
    URLRequest request = post(server_.url("/echo"), std::string("a\0=\xff", 4));
    request.httpHeaderFields = {{"Content-Type", "application/jose;charset=UTF-8"}, {"X-Other", "1, 2"}};
    EXPECT_EQ(fetch(request).body, std::string("a\0=\xff", 4));
    EXPECT_EQ(fetch(get(server_.url("/echo"))).body, "nothing");
    EXPECT_EQ(fetch(get(server_.url("/broken"))).body, "broken") << "whatever the status";
    request.httpHeaderFields = {{"X-Name", "value\r\nX-Smuggled: yes"}};
    EXPECT_EQ(fetch(request).error, "malformed request");

    const auto received = server_.received();
    ASSERT_EQ(received.size(), 3U);
    EXPECT_EQ(received[0].method, "POST");
    EXPECT_EQ(received[0].headers.at("content-type"), "application/jose;charset=UTF-8");
    EXPECT_EQ(received[0].headers.at("x-other"), "1, 2");
    EXPECT_EQ(received[0].headers.count("cookie") + received[0].headers.count("expect"), 0U);
    EXPECT_EQ(received[1].method, "GET");
}

/// The wait is longer than the server keeps a connection that nothing is asked on.
TEST_F(NativeURLSession, APostTakesAFreshConnectionWhereTheKeptOneHasIdled) {
    for (const auto transport : {LocalServer::Transport::plain, LocalServer::Transport::tls}) {
        LocalServer server(transport);
        URLSessionConfiguration configuration;
        configuration.additionalCertificateAuthorities = LocalServer::authority();
        const auto session = platform_.makeURLSession(configuration);
        ASSERT_EQ(fetch(*session, post(server.url("/echo"), "first")).body, "first");
        EXPECT_EQ(ended_->wait(LocalServer::kKeepAlive * 2.5), DispatchTimeoutResult::timedOut);
        EXPECT_EQ(fetch(*session, post(server.url("/echo"), "second")).body, "second");
        const auto received = server.received();
        ASSERT_EQ(received.size(), 2U);
        EXPECT_NE(received[0].port, received[1].port);
    }
}

TEST_F(NativeURLSession, BodiesOfMoreThan16MiBAreATransportFailure) {
    const auto sized = [&](std::size_t bytes) {
        return fetch(get(server_.url("/size?bytes=" + std::to_string(bytes))));
    };
    EXPECT_EQ(sized(kMostResponseBytes).body.value_or("").size(), kMostResponseBytes);
    const Outcome larger = sized(kMostResponseBytes + 1);
    EXPECT_EQ(larger.body, std::nullopt);
    EXPECT_THAT(larger.error.value_or(""), HasSubstr("16 MiB"));
}

TEST_F(NativeURLSession, HeadAndTrailersOfMoreThan64KiBAreATransportFailure) {
    const auto lines = [](std::size_t bytes) {
        constexpr std::size_t kLine = 1000;
        std::string text;
        for (; bytes > 2 * kLine; bytes -= kLine)
            text += "A:" + std::string(kLine - 4, 'a') + "\r\n";
        return text + "A:" + std::string(bytes - 4, 'a') + "\r\n";
    };
    const std::string sized = "HTTP/1.1 200 OK\r\nContent-Length: 4\r\n";
    const std::string chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";
    const std::string body = chunked + "4\r\nbody\r\n0\r\n";
    const std::string hints = "HTTP/1.1 103 Early Hints\r\n" + lines(kMostHeadBytes / 4) + "\r\n";
    const std::size_t ofHead = kMostHeadBytes - sized.size() - 2;
    const std::size_t ofTrailers = kMostHeadBytes - chunked.size();
    const std::pair<std::string, bool> rows[] = {
        {sized + lines(ofHead) + "\r\nbody", true},
        {sized + lines(ofHead + 1) + "\r\nbody", false},
        {body + lines(ofTrailers) + "\r\n", true},
        {body + lines(ofTrailers + 1) + "\r\n", false},
        {body + lines(64 * kMostHeadBytes), false}, // trailers without an end
        {hints + hints + hints + hints + sized + "\r\nbody", false},
    };
    for (const auto& [answer, isTaken] : rows) {
        const CannedServer server(answer);
        const Outcome outcome = fetch(get(server.url()));
        EXPECT_EQ(outcome.body, isTaken ? std::optional<std::string>("body") : std::nullopt);
        EXPECT_EQ(outcome.error.value_or("").find("64 KiB") != std::string::npos, !isTaken);
    }
}

TEST_F(NativeURLSession, WhatIsNeitherHttpNorHttpsAndWhatNamesAUserIsRefusedInRedirectsToo) {
    const std::string host = server_.url("/echo").substr(std::string("http").size());
    const std::string place = host.substr(std::string("://").size());
    for (const std::string& url : {std::string("file:///etc/passwd"), "ftp" + host, "dict" + host,
                                   "http://ada:secret@" + place, "http://ada@" + place})
        for (const std::string& asked : {url, server_.redirectingUrl(url)}) {
            SCOPED_TRACE(asked);
            const Outcome outcome = fetch(get(asked));
            EXPECT_EQ(outcome.body, std::nullopt);
            EXPECT_NE(outcome.error.value_or(""), "");
        }
    for (const ReceivedRequest& request : server_.received())
        EXPECT_EQ(request.path, "/redirect");
    EXPECT_EQ(fetch(get("HTTP" + host)).body, "nothing");
    EXPECT_EQ(fetch(get(server_.redirectingUrl(server_.url("/echo")))).body, "nothing");
}

TEST_F(NativeURLSession, NothingIsAskedInTheClearAfterTLS) {
    LocalServer secure(LocalServer::Transport::tls);
    LocalServer elsewhere(LocalServer::Transport::plain);
    platform_.addCertificateAuthorities(LocalServer::authority());
    const auto session = platform_.makeURLSession({});
    const std::string intoTheClear = secure.redirectingUrl(elsewhere.url("/echo"));
    for (const std::string& url : {intoTheClear, server_.redirectingUrl(intoTheClear)}) {
        const Outcome outcome = fetch(*session, get(url));
        EXPECT_EQ(outcome.body, std::nullopt) << url;
        EXPECT_NE(outcome.error.value_or(""), "") << url;
    }
    EXPECT_TRUE(elsewhere.received().empty());
    EXPECT_EQ(fetch(*session, get(secure.redirectingUrl(secure.url("/echo")))).body, "nothing");
}

TEST_F(NativeURLSession, APostIsAnsweredWhereItWasSent) {
    LocalServer elsewhere(LocalServer::Transport::plain);
    for (const int status : {301, 302, 303, 307, 308}) {
        const Outcome outcome = fetch(post(server_.redirectingUrl(elsewhere.url("/echo"), status), "sealed"));
        EXPECT_EQ(outcome.body, "") << status;
        EXPECT_EQ(outcome.error, std::nullopt) << status;
    }
    EXPECT_TRUE(elsewhere.received().empty());
}

/// A process of its own, since libcurl reads the variable when it starts.
TEST(NativeURLSessionSecrets, AreNotWrittenToTheFileThatTheEnvironmentNames) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    ::setenv("no_proxy", "*", 1);
    const std::string file = testing::TempDir() + "korvane-tls-secrets";
    ::setenv("SSLKEYLOGFILE", file.c_str(), 1);
    EXPECT_EXIT(
        {
            LocalServer secure(LocalServer::Transport::tls);
            HeadlessPlatform platform;
            platform.addCertificateAuthorities(LocalServer::authority());
            const HttpAnswer answer = HttpClient(secure.url("/echo")).sendCReqData(toBytes("sealed"));
            std::_Exit(answer.data == toBytes("sealed") ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
    ::unsetenv("SSLKEYLOGFILE");
    EXPECT_TRUE(!std::filesystem::exists(file) || readFile(file).empty());
    std::filesystem::remove(file);
}

TEST_F(NativeURLSession, BrokenAndSilentConnectionsAreTransportFailures) {
    const Outcome cut = fetch(get(server_.url("/cut")));
    EXPECT_EQ(cut.body, std::nullopt);
    EXPECT_NE(cut.error.value_or(""), "");
    const std::string gone = LocalServer(LocalServer::Transport::plain).url("/echo");
    EXPECT_THAT(fetch(get(gone)).error.value_or(""), HasSubstr("connect"));
    URLSessionConfiguration configuration;
    configuration.timeoutIntervalForResource = Seconds{0.2};
    const auto session = platform_.makeURLSession(configuration);
    EXPECT_THAT(fetch(*session, get(server_.url("/silence"))).error.value_or(""), HasSubstr("timed out"));
}

TEST_F(NativeURLSession, CancelEndsARunningTaskAtOnceAndEachTaskEndsOnce) {
    const auto running = task(*session_, get(server_.url("/silence")));
    running->resume();
    server_.awaitSilence();
    running->cancel();
    EXPECT_EQ(outcome().error, "cancelled");
    running->cancel();

    constexpr int kRacing = 100;
    for (int index = 0; index < kRacing; ++index) {
        const auto racing = task(*session_, get(server_.url("/empty")));
        racing->resume();
        platform_.dispatch().globalQueue().async([racing] { racing->cancel(); });
        outcome();
    }
    EXPECT_EQ(calls_, 1 + kRacing);
}

TEST(NativeURLSessionEnd, ExchangesUnderWayAndThoseBegunLaterEndWithAnError) {
    ::setenv("no_proxy", "*", 1);
    LocalServer server(LocalServer::Transport::plain);
    std::optional<HttpAnswer> underWay;
    std::optional<HttpAnswer> later;
    {
        HeadlessPlatform platform;
        platform.dispatch().globalQueue().async([&] {
            const HttpClient client(server.url("/silence"));
            underWay = client.sendCReqData(toBytes("sealed"));
            later = client.loadImage(server.url("/silence"));
        });
        server.awaitSilence();
    }
    ASSERT_TRUE(underWay && later);
    EXPECT_NE(underWay->errorDescription.value_or(""), "");
    EXPECT_EQ(later->errorDescription, underWay->errorDescription);
    EXPECT_EQ(server.received().size(), 1U);
}

TEST_F(NativeURLSession, CertificatesAreCheckedAgainstKnownAuthoritiesAndTheHostsName) {
    LocalServer secure(LocalServer::Transport::tls);
    EXPECT_THAT(fetch(post(secure.url("/echo"), "x")).error.value_or(""), HasSubstr("certificate"));
    EXPECT_THAT(fetch(get(server_.redirectingUrl(secure.url("/echo")))).error.value_or(""),
                HasSubstr("certificate"));

    URLSessionConfiguration configuration;
    configuration.additionalCertificateAuthorities = LocalServer::authority();
    const auto trusting = platform_.makeURLSession(configuration);
    EXPECT_EQ(fetch(*trusting, post(secure.url("/echo"), "x")).body, "x");
    const Outcome otherName = fetch(*trusting, get(secure.url("/echo", "localhost")));
    EXPECT_EQ(otherName.body, std::nullopt);
    EXPECT_THAT(otherName.error.value_or(""), HasSubstr("name"));
    EXPECT_NE(fetch(get(secure.url("/echo"))).error.value_or(""), "") << "an open connection was reused";
    EXPECT_EQ(secure.received().size(), 1U);
}

} // namespace
} // namespace korvane
