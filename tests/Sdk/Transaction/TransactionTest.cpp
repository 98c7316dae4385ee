#include "Sdk/Transaction/Transaction.h"

#include "Sdk/Transaction/TransactionArguments.h"
#include "tests/support/PlayedAcs.h"
#include "tests/support/SimulatedPlatform.h"

#include <gmock/gmock.h>

#include <optional>

namespace korvane {
namespace {

using testing::MatchesRegex;

class TransactionTest : public testing::Test {
protected:
    [[nodiscard]] std::shared_ptr<Transaction> makeTransaction() const {
        return Transaction::make({.deviceData = "sealed device",
                                  .sdkAppID = "application",
                                  .sdkReferenceNum = "reference",
                                  .messageVersion = MessageVersion::v2_1_0,
                                  .keysContainer = std::make_unique<KeysContainer>(certsWithRoot(root_))});
    }

    std::optional<SimulatedPlatform> platform_{std::in_place};
    TestIdentity root_ = selfSigned(authority("Root"));
};

TEST_F(TransactionTest, AuthenticationRequestIsTheSameAtEachCallAndSharesNothingWithAnother) {
    const auto transaction = makeTransaction();
    const auto first = transaction->getAuthenticationRequestParameters();
    EXPECT_EQ(first.getDeviceData(), "sealed device");
    EXPECT_EQ(first.getSDKReferenceNumber(), "reference");
    EXPECT_EQ(first.getMessageVersion(), "2.1.0");
    EXPECT_EQ(first.getSDKAppID(), "application");
    EXPECT_THAT(first.getSDKTransactionID(), MatchesRegex("[0-9a-f]{8}(-[0-9a-f]{4}){3}-[0-9a-f]{12}"));
    EXPECT_EQ(JSON::parse(first.getSDKEphemeralPublicKey())["crv"], "P-256");

    transaction->close();
    const auto second = transaction->getAuthenticationRequestParameters();
    EXPECT_EQ(second.getSDKTransactionID(), first.getSDKTransactionID());
    EXPECT_EQ(second.getSDKEphemeralPublicKey(), first.getSDKEphemeralPublicKey());
    const auto other = makeTransaction()->getAuthenticationRequestParameters();
    EXPECT_NE(other.getSDKTransactionID(), first.getSDKTransactionID());
    EXPECT_NE(other.getSDKEphemeralPublicKey(), first.getSDKEphemeralPublicKey());
}

TEST_F(TransactionTest, WhatWasEnteredIsKeptThoughItsRequestCannotBeBuilt) {
    auto exchange = std::make_shared<Exchange>(MessageVersion::v2_1_0, "reference",
                                               std::make_unique<KeysContainer>(certsWithRoot(root_)));
    const auto flow = ChallengeFlow::make(std::move(exchange), {});
    flow->sendChallengeDataToAcs("1234", std::nullopt);
    EXPECT_EQ(flow->challengeData(), "1234");
    platform_->runUntilIdle();
}

TEST_F(TransactionTest, ScreensMayBeLetGoAfterTheirPlatform) {
    auto screens = std::make_shared<ScreenStack>([] { return true; });
    screens->hold(
        std::make_shared<ViewControllerContainer>(CRes{}, false, ViewControllerContainer::ControllersMap{}));
    platform_.reset();
    screens.reset();
}

} // namespace
} // namespace korvane
