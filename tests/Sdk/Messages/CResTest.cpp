#include "tests/support/Failures.h"
#include "tests/support/Messages.h"
#include "tests/support/RecordingLogger.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using testing::ElementsAre;

/// The path that decoding fails with, and its kind.
std::pair<DecodingErrorCase, std::vector<std::string>> failureOf(const std::string& json) {
    try {
        static_cast<void>(CRes::decode(json));
    } catch (const DecodingError& error) {
        return {error.kind(), error.codingPath()};
    }
    ADD_FAILURE() << "decoded: " << json;
    return {};
}

TEST(CResReading, EveryFieldIsTaken) {
    JSON json = validCResJSON();
    const std::vector<std::string> texts{"acsHTML",
                                         "acsHTMLRefresh",
                                         "acsUiType",
                                         "challengeInfoHeader",
                                         "challengeInfoLabel",
                                         "challengeInfoText",
                                         "challengeInfoTextIndicator",
                                         "expandInfoLabel",
                                         "expandInfoText",
                                         "oobAppURL",
                                         "oobAppLabel",
                                         "oobContinueLabel",
                                         "resendInformationLabel",
                                         "submitAuthenticationLabel",
                                         "whitelistingInfoText",
                                         "whyInfoLabel",
                                         "whyInfoText",
                                         "transStatus",
                                         "challengeAddInfo"};
    for (const std::string& name : texts)
        json[name] = name;
    json["challengeSelectInfo"] = JSON::array({{{"a", "A"}}, {{"b", "B"}, {"c", "C"}}});
    json["issuerImage"] = JSON::object({{"medium", "m"}, {"high", "h"}, {"extraHigh", "e"}});
    json["psImage"] = json["issuerImage"];
    json["messageExtension"] =
        JSON::array({{{"criticalityIndicator", false}, {"data", {{"k", "v"}}}, {"id", "i"}, {"name", "n"}}});
    json["unknown"] = 7;
    const CRes cres = CRes::decode(json.dump());
    EXPECT_EQ(cres.threeDSServerTransID, kServerTransID);
    EXPECT_EQ(cres.acsTransID, kAcsTransID);
    EXPECT_EQ(cres.sdkTransID, kSdkTransID);
    EXPECT_EQ(cres.acsCounterAtoS, "001");
    EXPECT_EQ(cres.challengeCompletionInd, "N");
    EXPECT_EQ(cres.messageType, "CRes");
    EXPECT_EQ(cres.messageVersion, "2.2.0");
    const std::optional<std::string> taken[] = {cres.acsHTML,
                                                cres.acsHTMLRefresh,
                                                cres.acsUiType,
                                                cres.challengeInfoHeader,
                                                cres.challengeInfoLabel,
                                                cres.challengeInfoText,
                                                cres.challengeInfoTextIndicator,
                                                cres.expandInfoLabel,
                                                cres.expandInfoText,
                                                cres.oobAppURL,
                                                cres.oobAppLabel,
                                                cres.oobContinueLabel,
                                                cres.resendInformationLabel,
                                                cres.submitAuthenticationLabel,
                                                cres.whitelistingInfoText,
                                                cres.whyInfoLabel,
                                                cres.whyInfoText,
                                                cres.transStatus,
                                                cres.challengeAddInfo};
    EXPECT_TRUE(std::equal(texts.begin(), texts.end(), std::begin(taken), std::end(taken),
                           [](const std::string& name, const auto& text) { return text == name; }));
    EXPECT_THAT(cres.challengeSelectInfo.value(),
                ElementsAre(StringTable{{"a", "A"}}, StringTable{{"b", "B"}, {"c", "C"}}));
    EXPECT_EQ(cres.psImage, (ImageUrls{"m", "h", "e"}));
    EXPECT_EQ(cres.issuerImage->json(), R"({"medium":"m","high":"h","extraHigh":"e"})");
    EXPECT_EQ(cres.messageExtension->at(0), (MessageExtensionAttribute{false, {{"k", "v"}}, "i", "n"}));
}

TEST(CResReading, RepeatedNamesAreToldBeforeAnyField) {
    const RecordingLogger log;
    std::string json = validCResJSON().dump();
    json.insert(1,
                R"("sdkTransID":7,"transStatus":1,"transStatus":2,"acsUiType":[],"unknown":1,"unknown":2,)");
    const auto failure = raisedBy<ParsingErrorCase>([&] { return CRes::decode(json); });
    ASSERT_TRUE(failure);
    const std::string names = "acsUiType,sdkTransID,transStatus";
    EXPECT_EQ(failure->description(), names);
    EXPECT_THAT(log.lines(), ElementsAre("Sdk/Messages/CRes.cpp init(from:): Duplicate key: " + names));
}

TEST(CResReading, UnknownAndInnerRepeatsAreNotLookedFor) {
    std::string json = validCResJSON().dump();
    json.insert(1,
                R"("unknown":1,"unknown":2,"psImage":{"high":"1","high":"2","medium":"","extraHigh":""},)");
    EXPECT_EQ(CRes::decode(json).psImage->high, "2");
}

TEST(CResReading, FirstFaultInReadingOrderIsNamed) {
    const auto with = [](const std::string& name, const JSON& value) {
        JSON json = validCResJSON();
        json[name] = value;
        return json;
    };
    using enum DecodingErrorCase;
    const JSON image = JSON::object({{"medium", "m"}, {"high", "h"}});
    const JSON extension = JSON::object({{"data", JSON::object()}, {"id", ""}, {"name", ""}});
    const struct {
        JSON json;
        DecodingErrorCase kind;
        std::vector<std::string> path;
    } rows[] = {
        {with("challengeInfoText", 1), typeMismatch, {"challengeInfoText"}},
        {with("challengeCompletionInd", true), typeMismatch, {"challengeCompletionInd"}},
        {with("messageVersion", nullptr), valueNotFound, {"messageVersion"}},
        {with("issuerImage", image), keyNotFound, {"issuerImage", "extraHigh"}},
        {with("issuerImage", "url"), typeMismatch, {"issuerImage"}},
        {with("challengeSelectInfo", JSON::array({{{"a", 1}}})),
         typeMismatch,
         {"challengeSelectInfo", "Index 0", "a"}},
        {with("challengeSelectInfo", JSON::object()), typeMismatch, {"challengeSelectInfo"}},
        {with("messageExtension", JSON::array({extension})),
         keyNotFound,
         {"messageExtension", "Index 0", "criticalityIndicator"}},
    };
    for (const auto& row : rows)
        EXPECT_EQ(failureOf(row.json.dump()), std::pair(row.kind, row.path));

    JSON json = validCResJSON();
    json.erase("sdkTransID");
    EXPECT_THAT(failureOf(json.dump()).second, ElementsAre("sdkTransID"));
    json.erase("threeDSServerTransID");
    EXPECT_THAT(failureOf(json.dump()).second, ElementsAre("threeDSServerTransID"));
    json = with("transStatus", 1);
    json["challengeAddInfo"] = 1;
    EXPECT_THAT(failureOf(json.dump()).second, ElementsAre("transStatus"))
        << "the last two are read in turned order";
    EXPECT_EQ(failureOf("{").first, dataCorrupted);
    EXPECT_EQ(failureOf("[]").first, typeMismatch);
}

TEST(CResReading, NullCountsAsAbsentWhereAFieldIsOptional) {
    JSON json = validCResJSON();
    for (const char* name : {"issuerImage", "messageExtension", "challengeSelectInfo", "transStatus"})
        json[name] = nullptr;
    const CRes cres = CRes::decode(json.dump());
    EXPECT_FALSE(cres.issuerImage);
    EXPECT_FALSE(cres.messageExtension);
    EXPECT_FALSE(cres.challengeSelectInfo);
    EXPECT_FALSE(cres.transStatus);
}

} // namespace
} // namespace korvane
