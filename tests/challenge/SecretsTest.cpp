#include "Crypt/DataExtensions.h"
#include "Sdk/Transaction/TransactionArguments.h"
#include "Ui/Screens/ChallengeTextNativeViewController.h"
#include "tests/challenge/SimulatedApplication.h"
#include "tests/support/MemoryScan.h"

#include <gmock/gmock.h>

#include <array>

#include <sys/wait.h>
#include <unistd.h>

namespace korvane {
namespace {

constexpr std::string_view kCode = "4815162342";
constexpr const char* kHeader = "Said in this test alone";
/// A piece of the message that no text of the screen has in it.
constexpr std::string_view kOfTheMessage = R"("challengeInfoHeader":"Said in this test alone)";

/// The ACS in a process of its own for each request, so that nothing of what it opens and
/// seals is in this one.
class DistantAcs {
public:
    explicit DistantAcs(SimulatedApplication& application)
        : answer_(std::exchange(application.platform.network().answer,
                                [this](const URLRequest& request) { return ask(request); })) {}

private:
    ScriptedAnswer ask(const URLRequest& request) {
        std::array<int, 2> ends{};
        if (pipe(ends.data()) != 0) return {std::nullopt, "no pipe"};
        const pid_t acs = fork();
        if (acs == 0) {
            const Bytes body = answer_(request).body.value();
            _exit(write(ends[1], body.data(), body.size()) == static_cast<ssize_t>(body.size()) ? 0 : 1);
        }
        close(ends[1]);
        Bytes body;
        std::array<std::uint8_t, 4096> part{};
        for (ssize_t got = 0; (got = read(ends[0], part.data(), part.size())) > 0;)
            body.insert(body.end(), part.begin(), part.begin() + got);
        close(ends[0]);
        waitpid(acs, nullptr, 0);
        return {std::move(body)};
    }

    std::function<ScriptedAnswer(const URLRequest&)> answer_;
};

} // namespace

/// Sees the pair that the ACS agrees with, before the agreement.
struct KeysContainerPeer {
    /// In Base64URL.
    [[nodiscard]] static SecretString privateNumber(const KeysContainer& keys) {
        return keys.ephemeralKeyPair_.value().privateKey();
    }
};

namespace {

struct Secrets {
    Bytes contentKey;
    Bytes privateNumber;
    Bytes privateNumberText;
    Bytes code = maskedForScan(asBytes(kCode));
    Bytes message = maskedForScan(asBytes(kOfTheMessage));
};

/// Types the code and sends it, to the end of the challenge and of the transaction.
void playChallenge(Secrets& secrets) {
    SimulatedApplication application;
    auto keys = std::make_unique<KeysContainer>(SimulatedAcs::certificates());
    const KeysContainer& kept = *keys;
    application.take(Transaction::make({.deviceData = "sealed",
                                        .sdkAppID = "application",
                                        .sdkReferenceNum = kReferenceNumber,
                                        .messageVersion = MessageVersion::v2_2_0,
                                        .keysContainer = std::move(keys)}));
    secrets.contentKey = maskedForScan(application.acs.key());
    {
        const SecretString number = KeysContainerPeer::privateNumber(kept);
        secrets.privateNumberText = maskedForScan(asBytes(number.text()));
        Bytes octets = fromBase64URL(number.text()).value();
        secrets.privateNumber = maskedForScan(octets);
        cleanse(octets.data(), octets.size());
    }
    EXPECT_GT(copiesInMemory(secrets.privateNumberText), 0U);
    const DistantAcs distant(application);
    application.acs.answer = [](SimulatedAcs& acs) {
        const bool isFirst = acs.requests().back().sdkCounterStoA == "000";
        JSON json = isFirst ? acs.screen("01") : acs.ending("Y");
        if (isFirst) json["challengeInfoHeader"] = kHeader;
        return ScriptedAnswer{toBytes(acs.sealed(json.dump()))};
    };
    application.start();
    application.platform.runFor(Seconds{3});
    {
        const auto screen = application.top<ChallengeTextNativeViewController>();
        screen->otp->setText(std::string(kCode));
        EXPECT_GT(copiesInMemory(secrets.code), 0U);
        EXPECT_GT(copiesInMemory(secrets.contentKey), 0U);
        screen->submitButton->sendActions(ControlEvent::touchUpInside);
    }
    application.platform.runFor(Seconds{3});
    EXPECT_THAT(application.heard, testing::ElementsAre(testing::EndsWith(", Y)")));
    application.transaction = nullptr;
    application.platform.runUntilIdle();
}

TEST(SecretsInMemory, NoneIsLeftAfterTheEnding) {
    Secrets secrets;
    playChallenge(secrets);
    EXPECT_EQ(copiesInMemory(secrets.code), 0U);
    EXPECT_EQ(copiesInMemory(secrets.privateNumber), 0U);
    EXPECT_EQ(copiesInMemory(secrets.privateNumberText), 0U);
    EXPECT_EQ(copiesInMemory(secrets.contentKey), 0U);
    EXPECT_EQ(copiesInMemory(secrets.message), 0U);
}

} // namespace
} // namespace korvane
