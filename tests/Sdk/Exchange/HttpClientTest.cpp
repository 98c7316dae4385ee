#include "Sdk/Exchange/HttpClient.h"

#include "Sdk/Events/SdkError.h"
#include "tests/support/Failures.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/SimulatedPlatform.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::Pair;

const std::string kAcsURL = "https://acs.example/challenge";
const Bytes kBody = toBytes("a.b.c.d.e");

class HttpClientTest : public testing::Test {
protected:
    void answerWith(ScriptedAnswer answer) {
        platform_.network().answer = [answer](const URLRequest&) { return answer; };
    }

    const SimulatedExchange& exchange(std::size_t index = 0) {
        return platform_.network().exchanges().at(index);
    }

    SimulatedPlatform platform_;
    HttpClient client_{kAcsURL};
};

TEST_F(HttpClientTest, SessionAndRequestsCarryTheirLimitsAndHeaders) {
    EXPECT_EQ(platform_.network().sessions().at(0).timeoutIntervalForResource, Seconds{60});
    EXPECT_EQ(platform_.network().sessions().at(0).requestCachePolicy,
              URLRequestCachePolicy::reloadIgnoringLocalCacheData);
    client_.sendErroData(kBody);
    static_cast<void>(client_.loadImage("https://acs.example/logo.png"));
    const URLRequest& post = exchange(0).request;
    EXPECT_EQ(post.url.absoluteString(), kAcsURL);
    EXPECT_EQ(post.httpMethod, "POST");
    EXPECT_THAT(post.httpHeaderFields, ElementsAre(Pair("Content-Type", "application/jose;charset=UTF-8")));
    EXPECT_EQ(post.httpBody, kBody);
    EXPECT_EQ(post.timeoutInterval, Seconds{60});
    EXPECT_EQ(post.cachePolicy, URLRequestCachePolicy::useProtocolCachePolicy);

    const URLRequest& image = exchange(1).request;
    EXPECT_EQ(image.url.absoluteString(), "https://acs.example/logo.png");
    EXPECT_EQ(image.httpMethod, "GET");
    EXPECT_TRUE(image.httpHeaderFields.empty());
    EXPECT_EQ(image.httpBody, std::nullopt);
}

TEST_F(HttpClientTest, LateAnswerFindsItsPlaceWhenTheClientHasGone) {
    answerWith({toBytes("jwe"), {}, std::nullopt});
    auto client = std::make_unique<HttpClient>(kAcsURL);
    bool hasReturned = false;
    platform_.dispatch().globalQueue().async([&] {
        static_cast<void>(client->sendCReqData(kBody));
        client.reset();
        hasReturned = true;
    });
    EXPECT_TRUE(platform_.runUntil([&] { return hasReturned; }));
    EXPECT_EQ(platform_.leftAlive().items, 1U);
    platform_.runUntilIdle();
    EXPECT_EQ(platform_.leftAlive(), LeftAlive{});
}

TEST_F(HttpClientTest, AddressThatIsNoUrlSendsNothing) {
    const HttpClient client("https://acs.example/a b");
    EXPECT_EQ(client.createAcsRequest(kBody), std::nullopt);
    EXPECT_EQ(client.sendCReqData(kBody), HttpAnswer{});
    client.sendErroData(kBody);

    const RecordingLogger logger;
    EXPECT_RAISES_SAYING(SdkErrorCase::InvalidInputException, "Can not create imageUrl.",
                         client.loadImage("no url"));
    EXPECT_THAT(
        logger.lines(),
        ElementsAre("Sdk/Exchange/HttpClient.cpp createLoadImageRequest(_:): Can not create imageUrl."));
    EXPECT_TRUE(platform_.network().exchanges().empty());
    EXPECT_EQ(platform_.now(), Seconds{0});
}

} // namespace
} // namespace korvane
