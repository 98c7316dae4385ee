#include "Sdk/Messages/CReq.h"
#include "tests/support/Failures.h"

#include <gtest/gtest.h>

namespace korvane {
namespace {

/// Every field, in declaration order.
const std::string kFullJson =
    R"({"threeDSRequestorAppURL":"https://app/a\"b","threeDSServerTransID":"server","acsTransID":"acs",)"
    R"("challengeCancel":"08","challengeDataEntry":"","challengeHTMLDataEntry":"a=1","challengeNoEntry":"Y",)"
    R"("challengeWindowSize":"05","messageExtension":)"
    R"([{"criticalityIndicator":true,"data":{"k":"v"},"id":"id","name":"name"}],"messageType":"CReq",)"
    R"("messageVersion":"2.2.0","oobContinue":true,"resendChallenge":"N","sdkTransID":"sdk",)"
    R"("sdkCounterStoA":"000","whitelistingDataEntry":"Y"})";

TEST(CReqJson, IsReadAndWrittenWithWhatIsThere) {
    const CReq creq = CReq::decode(asBytes(kFullJson));
    EXPECT_EQ(creq.challengeCancel, ChallengeCancelationInd::TRANSACTION_TIMED_OUT_AT_SDK);
    EXPECT_EQ(creq.challengeWindowSize, ChallengeWindowSize::FULL_SCREEN);
    EXPECT_EQ(creq.oobContinue, true);
    EXPECT_EQ(creq.jsonString().text(), kFullJson);
    const std::string bare = R"({"threeDSServerTransID":"server","acsTransID":"acs","messageType":"CReq",)"
                             R"("messageVersion":"2.2.0","sdkTransID":"sdk","sdkCounterStoA":"000"})";
    EXPECT_EQ(CReq::decode(asBytes(bare)).jsonString().text(), bare);
    EXPECT_RAISES(DecodingErrorCase::keyNotFound, CReq::decode(asBytes("{}")));
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
