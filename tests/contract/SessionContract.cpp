#include "tests/contract/Filling.h"
#include "tests/support/CannedServer.h"
#include "tests/support/LocalServer.h"

#include <atomic>

namespace korvane {
namespace {

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

bool isFailure(const Outcome& outcome) {
    return !outcome.body && !outcome.error.value_or("").empty();
}

class Exchanges : public Contract {
protected:
    explicit Exchanges(std::optional<Part> needed = {}) : Contract(needed) {}

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

    /// A session that trusts the tests' server beside the system's authorities.
    [[nodiscard]] std::shared_ptr<URLSession> trusting() {
        URLSessionConfiguration configuration;
        configuration.additionalCertificateAuthorities = LocalServer::authority();
        return platform().makeURLSession(configuration);
    }

    LocalServer server_{LocalServer::Transport::plain};
    std::shared_ptr<URLSession> session_ = platform().makeURLSession({});
    std::shared_ptr<DispatchSemaphore> ended_ = dispatch().makeSemaphore(0);
    Outcome last_;
    std::atomic<int> calls_{0};
};

KORVANE_CONTRACT(SessionContract, Exchanges);
KORVANE_CONTRACT(NetworkContract, Exchanges, Part::network);
KORVANE_CONTRACT(NetworkEndContract, Exchanges, Part::afterlife);

TEST_P(SessionContract, EachTaskEndsOnceHoweverOftenItIsResumedAndCancelled) {
    const auto answered = task(*session_, get(server_.url("/echo")));
    answered->resume();
    answered->resume();
    EXPECT_EQ(outcome().body, "nothing");
    answered->cancel();
    const auto early = task(*session_, get(server_.url("/echo")));
    early->cancel();
    EXPECT_EQ(outcome().error, "cancelled");
    early->resume();
    const auto running = task(*session_, get(server_.url("/silence")));
    running->resume();
    if (!filling().absence(Part::network)) server_.awaitSilence();
    running->cancel();
    EXPECT_EQ(outcome().error, "cancelled");
    running->cancel();

    constexpr int kRacing = 100;
    for (int index = 0; index < kRacing; ++index) {
        const auto racing = task(*session_, get(server_.url("/echo")));
        racing->resume();
        dispatch().globalQueue().async([racing] { racing->cancel(); });
        outcome();
    }
    EXPECT_EQ(ended_->wait(Seconds{0.05}), DispatchTimeoutResult::timedOut) << "a second ending";
    EXPECT_EQ(calls_, 3 + kRacing);
}

TEST_P(SessionContract, WhatIsNotAnsweredInTimeAndWhatIsNoHttpFails) {
    URLSessionConfiguration configuration;
    configuration.timeoutIntervalForResource = Seconds{0.2};
    const Seconds start = dispatch().now();
    EXPECT_TRUE(isFailure(fetch(*platform().makeURLSession(configuration), get(server_.url("/silence")))));
    EXPECT_GE((dispatch().now() - start).count(), 0.2);
    for (const char* url : {"file:///etc/passwd", "ftp://127.0.0.1/", "httpx://127.0.0.1/", "127.0.0.1/echo"})
        EXPECT_TRUE(isFailure(fetch(get(url)))) << url;
}

TEST_P(NetworkContract, MethodHeadersAndBodyReachTheServerAndItsBodyComesBack) {
    URLRequest request = post(server_.url("/echo"), std::string("a\0=\xff", 4));
    request.httpHeaderFields = {{"Content-Type", "application/jose;charset=UTF-8"}, {"X-Other", "1, 2"}};
    EXPECT_EQ(fetch(request).body, std::string("a\0=\xff", 4));
    EXPECT_EQ(fetch(get(server_.url("/echo"))).body, "nothing");
    EXPECT_EQ(fetch(get(server_.url("/broken"))).body, "broken") << "whatever the status";
    request.httpHeaderFields = {{"X-Name", "value\r\nX-Smuggled: yes"}};
    EXPECT_TRUE(isFailure(fetch(request)));

    const auto received = server_.received();
    ASSERT_EQ(received.size(), 3U);
    EXPECT_EQ(received[0].method, "POST");
    EXPECT_EQ(received[0].headers.at("content-type"), "application/jose;charset=UTF-8");
    EXPECT_EQ(received[0].headers.at("x-other"), "1, 2");
    EXPECT_EQ(received[0].headers.count("cookie") + received[0].headers.count("expect"), 0U);
    EXPECT_EQ(received[1].method, "GET");
}

/// The wait is longer than the server keeps a connection that nothing is asked on.
TEST_P(NetworkContract, APostTakesAFreshConnectionWhereTheKeptOneHasIdled) {
    for (const auto transport : {LocalServer::Transport::plain, LocalServer::Transport::tls}) {
        LocalServer server(transport);
        const auto session = trusting();
        ASSERT_EQ(fetch(*session, post(server.url("/echo"), "first")).body, "first");
        EXPECT_EQ(ended_->wait(LocalServer::kKeepAlive * 2.5), DispatchTimeoutResult::timedOut);
        EXPECT_EQ(fetch(*session, post(server.url("/echo"), "second")).body, "second");
        const auto received = server.received();
        ASSERT_EQ(received.size(), 2U);
        EXPECT_NE(received[0].port, received[1].port);
    }
}

TEST_P(NetworkContract, BodiesOfMoreThan16MiBAreATransportFailure) {
    const auto sized = [&](std::size_t bytes) {
        return fetch(get(server_.url("/size?bytes=" + std::to_string(bytes))));
    };
    EXPECT_EQ(sized(kMostResponseBytes).body.value_or("").size(), kMostResponseBytes);
    EXPECT_TRUE(isFailure(sized(kMostResponseBytes + 1)));
}

TEST_P(NetworkContract, HeadAndTrailersOfMoreThan64KiBAreATransportFailure) {
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
        EXPECT_EQ(isFailure(outcome), !isTaken);
    }
}

TEST_P(NetworkContract, WhatIsNeitherHttpNorHttpsAndWhatNamesAUserIsRefusedInRedirectsToo) {
    const std::string host = server_.url("/echo").substr(std::string("http").size());
    const std::string place = host.substr(std::string("://").size());
    for (const std::string& url : {std::string("file:///etc/passwd"), "ftp" + host, "dict" + host,
                                   "http://ada:secret@" + place, "http://ada@" + place})
        for (const std::string& asked : {url, server_.redirectingUrl(url)})
            EXPECT_TRUE(isFailure(fetch(get(asked)))) << asked;
    for (const ReceivedRequest& request : server_.received())
        EXPECT_EQ(request.path, "/redirect");
    EXPECT_EQ(fetch(get("HTTP" + host)).body, "nothing");
    EXPECT_EQ(fetch(get(server_.redirectingUrl(server_.url("/echo")))).body, "nothing");
}

TEST_P(NetworkContract, NothingIsAskedInTheClearAfterTLS) {
    LocalServer secure(LocalServer::Transport::tls);
    LocalServer elsewhere(LocalServer::Transport::plain);
    const auto session = trusting();
    const std::string intoTheClear = secure.redirectingUrl(elsewhere.url("/echo"));
    for (const std::string& url : {intoTheClear, server_.redirectingUrl(intoTheClear)})
        EXPECT_TRUE(isFailure(fetch(*session, get(url)))) << url;
    EXPECT_TRUE(elsewhere.received().empty());
    EXPECT_EQ(fetch(*session, get(secure.redirectingUrl(secure.url("/echo")))).body, "nothing");
}

TEST_P(NetworkContract, APostIsAnsweredWhereItWasSent) {
    LocalServer elsewhere(LocalServer::Transport::plain);
    for (const int status : {301, 302, 303, 307, 308}) {
        const Outcome outcome = fetch(post(server_.redirectingUrl(elsewhere.url("/echo"), status), "sealed"));
        EXPECT_EQ(outcome.body, "") << status;
        EXPECT_EQ(outcome.error, std::nullopt) << status;
    }
    EXPECT_TRUE(elsewhere.received().empty());
}

TEST_P(NetworkContract, BrokenConnectionsAreTransportFailures) {
    EXPECT_TRUE(isFailure(fetch(get(server_.url("/cut")))));
    const std::string gone = LocalServer(LocalServer::Transport::plain).url("/echo");
    EXPECT_TRUE(isFailure(fetch(get(gone))));
}

TEST_P(NetworkEndContract, ExchangesUnderWayAndThoseBegunLaterEndWithAnErrorBeforeTheQueuesDo) {
    std::optional<Outcome> underWay, later;
    dispatch().globalQueue().async([&] {
        underWay = fetch(get(server_.url("/silence")));
        later = fetch(get(server_.url("/silence")));
    });
    server_.awaitSilence();
    filling().end();
    ASSERT_TRUE(underWay && later);
    EXPECT_TRUE(isFailure(*underWay) && isFailure(*later));
    EXPECT_EQ(server_.received().size(), 1U);
}

TEST_P(NetworkContract, CertificatesAreCheckedAgainstKnownAuthoritiesAndTheHostsName) {
    LocalServer secure(LocalServer::Transport::tls);
    EXPECT_TRUE(isFailure(fetch(post(secure.url("/echo"), "x"))));
    EXPECT_TRUE(isFailure(fetch(get(server_.redirectingUrl(secure.url("/echo"))))));
    const auto session = trusting();
    EXPECT_EQ(fetch(*session, post(secure.url("/echo"), "x")).body, "x");
    EXPECT_TRUE(isFailure(fetch(*session, get(secure.url("/echo", "localhost")))));
    EXPECT_TRUE(isFailure(fetch(get(secure.url("/echo"))))) << "an open connection was reused";
    EXPECT_EQ(secure.received().size(), 1U);
}

} // namespace
} // namespace korvane
