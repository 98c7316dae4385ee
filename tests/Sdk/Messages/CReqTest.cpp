#include "Sdk/Messages/CReq.h"
#include "tests/support/Failures.h"

#include <gtest/gtest.h>

namespace korvane {
namespace {

const std::string kBareJson = R"({"threeDSServerTransID":"server","acsTransID":"acs","messageType":"CReq",)"
                              R"("messageVersion":"2.2.0","sdkTransID":"sdk","sdkCounterStoA":"000"})";
const std::string kFullJson =
    R"({"threeDSRequestorAppURL":"https://app/a\"b","threeDSServerTransID":"server","acsTransID":"acs",)"
    R"("challengeCancel":"08","challengeDataEntry":"","challengeHTMLDataEntry":"a=1","challengeNoEntry":"Y",)"
    R"("challengeWindowSize":"05","messageExtension":)"
    R"([{"criticalityIndicator":true,"data":{"k":"v"},"id":"id","name":"name"}],"messageType":"CReq",)"
    R"("messageVersion":"2.2.0","oobContinue":true,"resendChallenge":"N","sdkTransID":"sdk",)"
    R"("sdkCounterStoA":"000","whitelistingDataEntry":"Y"})";

TEST(CReqJson, HasWhatIsThereInDeclarationOrder) {
    CReq creq;
    creq.threeDSServerTransID = "server";
    creq.acsTransID = "acs";
    creq.messageVersion = "2.2.0";
    creq.sdkTransID = "sdk";
    creq.sdkCounterStoA = counterText(0);
    EXPECT_EQ(creq.jsonString().text(), kBareJson);
    EXPECT_EQ(CReq::decode(asBytes(kBareJson)), creq);

    creq.threeDSRequestorAppURL = "https://app/a\"b";
    creq.challengeCancel = ChallengeCancelationInd::TRANSACTION_TIMED_OUT_AT_SDK;
    creq.challengeDataEntry = "";
    creq.challengeHTMLDataEntry = "a=1";
    creq.challengeNoEntry = YesNoSelector::Y;
    creq.challengeWindowSize = ChallengeWindowSize::FULL_SCREEN;
    creq.messageExtension = {{true, {{"k", "v"}}, "id", "name"}};
    creq.oobContinue = true;
    creq.resendChallenge = YesNoSelector::N;
    creq.whitelistingDataEntry = YesNoSelector::Y;
    EXPECT_EQ(creq.jsonString().text(), kFullJson);
    EXPECT_EQ(CReq::decode(asBytes(kFullJson)), creq);
}

TEST(CReqJson, UnknownValuesAndMissingFieldsAreRefused) {
    EXPECT_RAISES_SAYING(DecodingErrorCase::keyNotFound, "\"threeDSServerTransID\" is missing.",
                         CReq::decode(asBytes("{}")));
    // There is no second reason to cancel.
    const std::pair<const char*, const char*> rows[] = {
        {R"("08")", R"("02")"}, {R"("05")", R"("06")"}, {R"("Y")", R"("y")"}};
    for (const auto& [known, unknown] : rows) {
        std::string json = kFullJson;
        json.replace(json.find(known), std::string_view(known).size(), unknown);
        EXPECT_RAISES(DecodingErrorCase::dataCorrupted, CReq::decode(asBytes(json)));
    }
}

TEST(CReqCounter, GrowsBeyondThreeCharacters) {
    const std::pair<int, const char*> rows[] = {{0, "000"}, {9, "009"}, {10, "0010"}, {100, "00100"}};
    for (const auto& [counter, text] : rows)
        EXPECT_EQ(counterText(counter), text);
}

} // namespace
} // namespace korvane
