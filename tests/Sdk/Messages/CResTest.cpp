#include "Platform/Text.h"
#include "tests/support/Failures.h"
#include "tests/support/Messages.h"
#include "tests/support/RecordingLogger.h"

#include <gmock/gmock.h>

#include <sstream>

namespace korvane {
namespace {

using testing::ElementsAre;

/// Of the texts that a response need not have, all but "transStatus".
constexpr const char* kOptionalTexts =
    "acsHTML,acsHTMLRefresh,acsUiType,challengeInfoHeader,challengeInfoLabel,challengeInfoText,"
    "challengeInfoTextIndicator,expandInfoLabel,expandInfoText,oobAppURL,oobAppLabel,oobContinueLabel,"
    "resendInformationLabel,submitAuthenticationLabel,whitelistingInfoText,whyInfoLabel,whyInfoText,"
    "challengeAddInfo";

/// A response with every field, each text being its own name.
JSON fullJSON() {
    JSON json = finalCResJSON();
    std::istringstream names(kOptionalTexts);
    for (std::string name; std::getline(names, name, ',');)
        json[name] = name;
    json["challengeSelectInfo"] = JSON::array({{{"a", "A"}}, {{"b", "B"}, {"c", "C"}}});
    json["issuerImage"] = JSON::object({{"medium", "m"}, {"high", "h"}, {"extraHigh", "e"}});
    json["psImage"] = JSON::object({{"medium", "n"}, {"high", "i"}, {"extraHigh", "f"}});
    json["messageExtension"] =
        JSON::array({{{"criticalityIndicator", false}, {"data", {{"k", "v"}}}, {"id", "i"}, {"name", "n"}}});
    return json;
}

TEST(CResReading, EveryFieldIsTaken) {
    JSON json = fullJSON();
    json["unknown"] = 7;
    const CRes cres = CRes::decode(json.dump());
    EXPECT_EQ(
        joined({*cres.acsHTML, *cres.acsHTMLRefresh, *cres.acsUiType, *cres.challengeInfoHeader,
                *cres.challengeInfoLabel, *cres.challengeInfoText, *cres.challengeInfoTextIndicator,
                *cres.expandInfoLabel, *cres.expandInfoText, *cres.oobAppURL, *cres.oobAppLabel,
                *cres.oobContinueLabel, *cres.resendInformationLabel, *cres.submitAuthenticationLabel,
                *cres.whitelistingInfoText, *cres.whyInfoLabel, *cres.whyInfoText, *cres.challengeAddInfo}),
        kOptionalTexts);
    EXPECT_EQ(joined({cres.threeDSServerTransID, cres.acsTransID, cres.sdkTransID}),
              joined({kServerTransID, kAcsTransID, kSdkTransID}));
    EXPECT_EQ(joined({cres.acsCounterAtoS, cres.challengeCompletionInd, cres.messageType, cres.messageVersion,
                      *cres.transStatus}),
              "001,Y,CRes,2.2.0,Y");
    EXPECT_THAT(cres.challengeSelectInfo.value(),
                ElementsAre(StringTable{{"a", "A"}}, StringTable{{"b", "B"}, {"c", "C"}}));
    EXPECT_EQ(cres.issuerImage->json(), R"({"medium":"m","high":"h","extraHigh":"e"})");
    EXPECT_EQ(cres.psImage, (ImageUrls{"n", "i", "f"}));
    EXPECT_EQ(cres.messageExtension->at(0), (MessageExtensionAttribute{false, {{"k", "v"}}, "i", "n"}));
    json["messageExtension"][0].erase("criticalityIndicator");
    EXPECT_RAISES(DecodingErrorCase::keyNotFound, CRes::decode(json.dump()));
}

TEST(CResReading, NullCountsAsAbsentWhereAFieldIsOptional) {
    const JSON full = fullJSON();
    JSON json = validCResJSON();
    for (const auto& [name, value] : full.items())
        if (!json.contains(name)) json[name] = nullptr;
    EXPECT_EQ(CRes::decode(json.dump()), validCRes());
}

TEST(CResReading, RepeatedNamesOfFieldsAreToldBeforeAnyField) {
    const RecordingLogger log;
    const std::string json = validCResJSON().dump().substr(1);
    const std::string names = "acsUiType,sdkTransID,transStatus,challengeAddInfo";
    const auto failure = raisedBy<ParsingErrorCase>([&] {
        return CRes::decode(R"({"challengeAddInfo":1,"challengeAddInfo":2,"sdkTransID":7,)"
                            R"("transStatus":1,"transStatus":2,"acsUiType":[],)" +
                            json);
    });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->description(), names);
    EXPECT_THAT(log.lines(), ElementsAre("Sdk/Messages/CRes.cpp init(from:): Duplicate key: " + names));
    // Others, and those inside a field, are not looked for.
    const std::string image = R"("psImage":{"high":"1","high":"2","medium":"","extraHigh":""},)";
    EXPECT_EQ(CRes::decode(R"({"unknown":1,"unknown":2,)" + image + json).psImage->high, "2");
}

} // namespace
} // namespace korvane
