#include "Sdk/Messages/CReq.h"
#include "tests/support/Failures.h"
#include "tests/support/Messages.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

CReq plainRequest() {
    CReq creq;
    creq.threeDSServerTransID = kServerTransID;
    creq.acsTransID = kAcsTransID;
    creq.messageVersion = "2.2.0";
    creq.sdkTransID = kSdkTransID;
    creq.sdkCounterStoA = counterText(0);
    return creq;
}

std::vector<std::string> memberNames(const std::string& json) {
    std::vector<std::string> names;
    JSONSerialization::forEachMember(json,
                                     [&names](std::string_view name, JSON&&) { names.emplace_back(name); });
    return names;
}

TEST(CReqWriting, AbsentFieldsAreLeftOut) {
    EXPECT_THAT(memberNames(plainRequest().jsonString()),
                testing::ElementsAre("threeDSServerTransID", "acsTransID", "messageType", "messageVersion",
                                     "sdkTransID", "sdkCounterStoA"));
}

TEST(CReqWriting, EveryFieldStandsInDeclarationOrder) {
    CReq creq = plainRequest();
    creq.threeDSRequestorAppURL = "https://app/a\"b";
    creq.challengeCancel = ChallengeCancelationInd::TRANSACTION_TIMED_OUT_AT_SDK;
    creq.challengeDataEntry = "";
    creq.challengeHTMLDataEntry = "a=1";
    creq.challengeNoEntry = YesNoSelector::Y;
    creq.challengeWindowSize = ChallengeWindowSize::FULL_SCREEN;
    creq.messageExtension = {{true, {{"k", "v"}}, "id", "name"}, {}};
    creq.oobContinue = true;
    creq.resendChallenge = YesNoSelector::N;
    creq.whitelistingDataEntry = YesNoSelector::Y;
    const std::string json = creq.jsonString();
    EXPECT_THAT(memberNames(json),
                testing::ElementsAre("threeDSRequestorAppURL", "threeDSServerTransID", "acsTransID",
                                     "challengeCancel", "challengeDataEntry", "challengeHTMLDataEntry",
                                     "challengeNoEntry", "challengeWindowSize", "messageExtension",
                                     "messageType", "messageVersion", "oobContinue", "resendChallenge",
                                     "sdkTransID", "sdkCounterStoA", "whitelistingDataEntry"));
    const JSON value = JSONSerialization::jsonObject(json).value();
    EXPECT_EQ(value["challengeCancel"], "08");
    EXPECT_EQ(value["challengeDataEntry"], "");
    EXPECT_EQ(value["challengeWindowSize"], "05");
    EXPECT_EQ(value["oobContinue"], true);
    EXPECT_EQ(value["messageExtension"][0],
              JSON::object(
                  {{"criticalityIndicator", true}, {"data", {{"k", "v"}}}, {"id", "id"}, {"name", "name"}}));
    EXPECT_EQ(CReq::decode(asBytes(json)), creq);
}

TEST(CReqReading, UnknownValuesAndMissingFieldsAreNamed) {
    EXPECT_RAISES_SAYING(DecodingErrorCase::keyNotFound, "\"threeDSServerTransID\" is missing.",
                         CReq::decode(asBytes("{}")));
    CReq creq = plainRequest();
    creq.challengeNoEntry = YesNoSelector::Y;
    std::string json = creq.jsonString();
    json.replace(json.find("\"Y\""), 3, "\"y\"");
    EXPECT_RAISES(DecodingErrorCase::dataCorrupted, CReq::decode(asBytes(json)));
}

TEST(CReqCounter, GrowsBeyondThreeCharacters) {
    const std::pair<int, const char*> rows[] = {{0, "000"}, {9, "009"}, {10, "0010"}, {100, "00100"}};
    for (const auto& [counter, text] : rows)
        EXPECT_EQ(counterText(counter), text);
}

TEST(CancelReasons, HaveNoSecond) {
    EXPECT_EQ(fromRawValue<ChallengeCancelationInd>("02"), std::nullopt);
    EXPECT_EQ(rawValue(ChallengeCancelationInd::UNKNOWN), "07");
    EXPECT_EQ(rawValue(ChallengeCancelationInd::CARDHOLDER_SELECTED_CANCEL), "01");
}

} // namespace
} // namespace korvane
