#include "Platform/Text.h"
#include "tests/support/Failures.h"
#include "tests/support/Messages.h"
#include "tests/support/RecordingLogger.h"

#include <gmock/gmock.h>

#include <sstream>

namespace korvane {
namespace {

using testing::ElementsAre;

/// The kind of failure that decoding ends with, and its path.
std::pair<DecodingErrorCase, std::string> failureOf(const std::string& json) {
    try {
        static_cast<void>(CRes::decode(json));
    } catch (const DecodingError& error) {
        return {error.kind(), joined(error.codingPath())};
    }
    ADD_FAILURE() << "decoded: " << json;
    return {};
}

/// The texts that a response need not have.
const std::pair<const char*, std::optional<std::string> CRes::*> kOptionalTexts[] = {
    {"acsHTML", &CRes::acsHTML},
    {"acsHTMLRefresh", &CRes::acsHTMLRefresh},
    {"acsUiType", &CRes::acsUiType},
    {"challengeInfoHeader", &CRes::challengeInfoHeader},
    {"challengeInfoLabel", &CRes::challengeInfoLabel},
    {"challengeInfoText", &CRes::challengeInfoText},
    {"challengeInfoTextIndicator", &CRes::challengeInfoTextIndicator},
    {"expandInfoLabel", &CRes::expandInfoLabel},
    {"expandInfoText", &CRes::expandInfoText},
    {"oobAppURL", &CRes::oobAppURL},
    {"oobAppLabel", &CRes::oobAppLabel},
    {"oobContinueLabel", &CRes::oobContinueLabel},
    {"resendInformationLabel", &CRes::resendInformationLabel},
    {"submitAuthenticationLabel", &CRes::submitAuthenticationLabel},
    {"whitelistingInfoText", &CRes::whitelistingInfoText},
    {"whyInfoLabel", &CRes::whyInfoLabel},
    {"whyInfoText", &CRes::whyInfoText},
    {"transStatus", &CRes::transStatus},
    {"challengeAddInfo", &CRes::challengeAddInfo},
};

/// A response with every field.
JSON fullJSON() {
    JSON json = validCResJSON();
    for (const auto& [name, field] : kOptionalTexts)
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
    for (const auto& [name, field] : kOptionalTexts)
        EXPECT_EQ(cres.*field, name);
    EXPECT_EQ(joined({cres.threeDSServerTransID, cres.acsTransID, cres.sdkTransID}),
              joined({kServerTransID, kAcsTransID, kSdkTransID}));
    EXPECT_EQ(
        joined({cres.acsCounterAtoS, cres.challengeCompletionInd, cres.messageType, cres.messageVersion}),
        "001,N,CRes,2.2.0");
    EXPECT_THAT(cres.challengeSelectInfo.value(),
                ElementsAre(StringTable{{"a", "A"}}, StringTable{{"b", "B"}, {"c", "C"}}));
    EXPECT_EQ(cres.issuerImage->json(), R"({"medium":"m","high":"h","extraHigh":"e"})");
    EXPECT_EQ(cres.psImage, (ImageUrls{"n", "i", "f"}));
    EXPECT_EQ(cres.messageExtension->at(0), (MessageExtensionAttribute{false, {{"k", "v"}}, "i", "n"}));
}

TEST(CResReading, FirstFaultInReadingOrderIsNamed) {
    std::istringstream order(
        "threeDSServerTransID acsCounterAtoS acsTransID acsHTML acsHTMLRefresh acsUiType "
        "challengeCompletionInd "
        "challengeInfoHeader challengeInfoLabel challengeInfoText challengeInfoTextIndicator "
        "challengeSelectInfo "
        "expandInfoLabel expandInfoText issuerImage messageExtension messageType messageVersion oobAppURL "
        "oobAppLabel oobContinueLabel psImage resendInformationLabel sdkTransID submitAuthenticationLabel "
        "whitelistingInfoText whyInfoLabel whyInfoText transStatus challengeAddInfo");
    const JSON full = fullJSON();
    JSON json = full;
    for (const auto& [name, value] : full.items())
        json[name] = 7;
    for (std::string name; order >> name; json[name] = full[name])
        EXPECT_EQ(failureOf(json.dump()), std::pair(DecodingErrorCase::typeMismatch, name));
    EXPECT_EQ(json, full);
}

TEST(CResReading, FaultsAreNamedByTheirKindAndPlace) {
    using enum DecodingErrorCase;
    const std::tuple<const char*, const char*, DecodingErrorCase, const char*> rows[] = {
        {"messageVersion", "null", valueNotFound, ""},
        {"issuerImage", R"({"medium":"m","high":"h"})", keyNotFound, ",extraHigh"},
        {"challengeSelectInfo", R"([{"a":1}])", typeMismatch, ",Index 0,a"},
        {"challengeSelectInfo", "{}", typeMismatch, ""},
        {"messageExtension", R"([{"data":{},"id":"","name":""}])", keyNotFound,
         ",Index 0,criticalityIndicator"},
    };
    for (const auto& [name, value, kind, inside] : rows) {
        JSON json = validCResJSON();
        json[name] = JSON::parse(value);
        EXPECT_EQ(failureOf(json.dump()), std::pair(kind, name + std::string(inside)));
    }
    JSON json = validCResJSON();
    json.erase("sdkTransID");
    EXPECT_EQ(failureOf(json.dump()), std::pair(keyNotFound, std::string("sdkTransID")));
    EXPECT_EQ(failureOf("{").first, dataCorrupted);
    EXPECT_EQ(failureOf("[]").first, typeMismatch);
}

TEST(CResReading, NullCountsAsAbsentWhereAFieldIsOptional) {
    const JSON full = fullJSON();
    JSON json = validCResJSON();
    for (const auto& [name, value] : full.items())
        if (!json.contains(name)) json[name] = nullptr;
    EXPECT_EQ(CRes::decode(json.dump()), validCRes());
}

TEST(CResReading, RepeatedNamesAreToldBeforeAnyField) {
    const RecordingLogger log;
    std::string json = validCResJSON().dump();
    json.insert(1,
                R"("sdkTransID":7,"transStatus":1,"transStatus":2,"acsUiType":[],"unknown":1,"unknown":2,)");
    const std::string names = "acsUiType,sdkTransID,transStatus";
    const auto failure = raisedBy<ParsingErrorCase>([&] { return CRes::decode(json); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->description(), names);
    EXPECT_THAT(log.lines(), ElementsAre("Sdk/Messages/CRes.cpp init(from:): Duplicate key: " + names));
}

TEST(CResReading, UnknownAndInnerRepeatsAreNotLookedFor) {
    std::string json = validCResJSON().dump();
    json.insert(1,
                R"("unknown":1,"unknown":2,"psImage":{"high":"1","high":"2","medium":"","extraHigh":""},)");
    EXPECT_EQ(CRes::decode(json).psImage->high, "2");
}

} // namespace
} // namespace korvane
