#include "Sdk/Messages/Validator.h"
#include "tests/support/Messages.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

enum class Response { first, later };

/// Judges the JSON of a response with counter 1 in a transaction of version 2.2.0.
std::optional<KorvaneError> judge(const JSON& json, Response response = Response::first) {
    const CRes cres = CRes::decode(json.dump());
    const ChallengeParameters parameters = validParameters();
    return Validator::validateCRes({cres, 1, "2.2.0", parameters, kSdkTransID, response == Response::first});
}

/// A response with members changed; null removes one.
JSON changed(JSON json, const JSON& members) {
    for (const auto& [name, value] : members.items()) {
        if (value.is_null())
            json.erase(name);
        else
            json[name] = value;
    }
    return json;
}

JSON text(const JSON& members) {
    return changed(validCResJSON(), members);
}

JSON final(const JSON& members) {
    return changed(finalCResJSON(), members);
}

std::string repeated(std::size_t count, const std::string& piece = "a") {
    std::string result;
    for (std::size_t index = 0; index < count; ++index)
        result += piece;
    return result;
}

JSON extensions(int count, const JSON& members = JSON::object()) {
    JSON list = JSON::array();
    for (int index = 0; index < count; ++index)
        list.push_back(changed(
            JSON::object(
                {{"criticalityIndicator", false}, {"data", JSON::object()}, {"id", "i"}, {"name", "n"}}),
            members));
    return JSON::object({{"messageExtension", list}});
}

struct Row {
    const char* why;
    JSON json;
    Response response;
    int code;            // 0: accepted
    std::string details; // of codes 201, 202 and 203
};

void expectRows(std::initializer_list<Row> rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.why);
        const auto error = judge(row.json, row.response);
        EXPECT_EQ(error ? error->code : 0, row.code);
        if (error && !row.details.empty()) {
            EXPECT_EQ(error->details, row.details);
        }
    }
}

constexpr auto kFirst = Response::first;
constexpr auto kLater = Response::later;

TEST(Validation, CounterComesBeforeEverything) {
    expectRows({
        {"equal", text({}), kFirst, 0, ""},
        {"the same number in another form", text({{"acsCounterAtoS", "1"}}), kFirst, 0, ""},
        {"a sign", text({{"acsCounterAtoS", "+01"}}), kFirst, 0, ""},
        {"another number, other faults notwithstanding",
         text({{"acsCounterAtoS", "000"}, {"sdkTransID", ""}}), kFirst, 302, "acsCounterAtoS"},
        {"negative", text({{"acsCounterAtoS", "-1"}}), kFirst, 302, ""},
        {"no number", text({{"acsCounterAtoS", "abc"}}), kFirst, 0, ""},
        {"a blank before the number", text({{"acsCounterAtoS", " 2"}}), kFirst, 0, ""},
        {"two signs", text({{"acsCounterAtoS", "+-2"}}), kFirst, 0, ""},
        {"beyond the machine word", text({{"acsCounterAtoS", "99999999999999999999"}}), kFirst, 0, ""},
        {"empty", text({{"acsCounterAtoS", ""}}), kFirst, 201, "acsCounterAtoS"},
    });
    EXPECT_EQ(judge(text({{"acsCounterAtoS", "7"}}))->description,
              "acsCounterAtoS do not match with sdkCounterStoA.");
}

TEST(Validation, RequiredFieldsAreListedInOrder) {
    const JSON html = {{"acsUiType", "05"}, {"acsHTML", "AA"}};
    const JSON oob = {{"acsUiType", "04"}, {"oobContinueLabel", "Continue"}};
    const JSON select = {{"acsUiType", "02"}, {"challengeSelectInfo", JSON::array({{{"a", "A"}}})}};
    expectRows({
        {"all identifiers",
         text({{"threeDSServerTransID", ""},
               {"acsTransID", ""},
               {"sdkTransID", ""},
               {"acsCounterAtoS", ""},
               {"challengeCompletionInd", ""},
               {"messageVersion", ""}}),
         kFirst, 201,
         "threeDSServerTransID,acsTransID,sdkTransID,acsCounterAtoS,challengeCompletionInd,messageVersion"},
        {"a final response needs its status", final({{"transStatus", nullptr}}), kLater, 201, "transStatus"},
        {"a final response with an empty status", final({{"transStatus", ""}}), kLater, 201, "transStatus"},
        {"first without type and status", text({{"acsUiType", nullptr}}), kFirst, 201,
         "acsUiType,acsUiType,transStatus"},
        {"later without type and status", text({{"acsUiType", nullptr}}), kLater, 201,
         "acsUiType,transStatus"},
        {"later without type, with a status", text({{"acsUiType", nullptr}, {"transStatus", "Y"}}), kLater, 0,
         ""},
        {"an empty type", text({{"acsUiType", ""}}), kFirst, 201, "acsUiType"},
        {"an empty status", text({{"transStatus", ""}}), kLater, 201, "transStatus"},
        {"HTML", text(html), kFirst, 0, ""},
        {"HTML without page", text({{"acsUiType", "05"}}), kFirst, 201, "acsHTML"},
        {"HTML with empty page and refresh",
         text({{"acsUiType", "05"}, {"acsHTML", ""}, {"acsHTMLRefresh", ""}}), kFirst, 201,
         "acsHTML,acsHTMLRefresh"},
        {"out of band", text(oob), kFirst, 0, ""},
        {"out of band without texts", text(changed(oob, {{"challengeInfoHeader", ""}})), kFirst, 201,
         "challengeInfoHeader"},
        {"out of band without label", text({{"acsUiType", "04"}, {"challengeInfoHeader", ""}}), kFirst, 201,
         "oobContinueLabel"},
        {"a text screen without its texts",
         text({{"challengeInfoHeader", nullptr}, {"challengeInfoLabel", ""}, {"challengeInfoText", nullptr}}),
         kFirst, 201, "challengeInfoHeader,challengeInfoLabel,challengeInfoText"},
        {"a text screen without button and texts",
         text({{"submitAuthenticationLabel", ""}, {"challengeInfoHeader", ""}}), kFirst, 201,
         "submitAuthenticationLabel"},
        {"single select", text(select), kFirst, 0, ""},
        {"multi select without choices", text({{"acsUiType", "03"}}), kFirst, 201, "challengeSelectInfo"},
        {"single select with an empty list",
         text({{"acsUiType", "02"}, {"challengeSelectInfo", JSON::array()}}), kFirst, 201,
         "challengeSelectInfo"},
        {"an unknown type asks for nothing here",
         text({{"acsUiType", "09"}, {"submitAuthenticationLabel", nullptr}}), kFirst, 203, "acsUiType"},
    });
}

TEST(Validation, TransactionIdentifiersAreComparedExactly) {
    const std::string upper = "B2385523-A66C-4907-AC3C-91848E8C0067";
    expectRows({
        {"3DS server", text({{"threeDSServerTransID", kAcsTransID}}), kFirst, 301, ""},
        {"ACS", text({{"acsTransID", kServerTransID}}), kFirst, 301, ""},
        {"SDK in upper case", text({{"sdkTransID", upper}}), kFirst, 301, ""},
    });
    EXPECT_EQ(judge(text({{"sdkTransID", upper}})), KorvaneError::getErrorByCode(301));

    const CRes cres = validCRes();
    ChallengeParameters parameters = validParameters();
    parameters.acsTransactionId.reset();
    EXPECT_EQ(Validator::validateCRes({cres, 1, "2.2.0", parameters, kSdkTransID, true})->code, 301)
        << "an absent value";
    ChallengeParameters odd = validParameters();
    odd.set3DSServerTransactionId("no-uuid");
    const CRes oddCRes = CRes::decode(text({{"threeDSServerTransID", "no-uuid"}}).dump());
    EXPECT_EQ(Validator::validateCRes({oddCRes, 1, "2.2.0", odd, kSdkTransID, true})->details,
              "threeDSServerTransID");
}

TEST(Validation, TextLengthsHaveBothSides) {
    const std::pair<const char*, std::size_t> limits[] = {
        {"challengeInfoHeader", 45},    {"oobAppURL", 256},       {"oobAppLabel", 256},
        {"resendInformationLabel", 45}, {"oobContinueLabel", 45}, {"submitAuthenticationLabel", 45},
        {"whitelistingInfoText", 64}};
    for (const auto& [name, longest] : limits) {
        SCOPED_TRACE(name);
        // A family of three joined to one is one character.
        for (const std::string piece : {"a", "\u00e9", "\U0001F468\u200D\U0001F469\u200D\U0001F467"}) {
            EXPECT_FALSE(judge(text({{name, repeated(longest, piece)}})));
            EXPECT_EQ(judge(text({{name, repeated(longest + 1, piece)}}))->details, name);
        }
        EXPECT_FALSE(judge(final({{name, repeated(longest + 1)}}), kLater))
            << "final responses have no such rule";
    }
    for (const char* name : {"acsHTML", "acsHTMLRefresh"}) {
        SCOPED_TRACE(name);
        EXPECT_FALSE(judge(text({{name, repeated(100000)}})));
        EXPECT_EQ(judge(text({{name, repeated(100001)}}))->details, name);
        EXPECT_EQ(judge(text({{name, "a+b"}}))->details, name);
    }
}

TEST(Validation, ValuesAreJudgedInOrder) {
    expectRows({
        {"all at once",
         text({{"acsHTMLRefresh", "?"},
               {"acsUiType", "06"},
               {"challengeInfoHeader", ""},
               {"oobAppURL", ""},
               {"oobAppLabel", ""},
               {"resendInformationLabel", ""},
               {"acsHTML", "?"},
               {"oobContinueLabel", ""},
               {"submitAuthenticationLabel", ""},
               {"whitelistingInfoText", ""},
               {"transStatus", "Y"},
               {"messageVersion", "2.1.0"},
               {"challengeInfoTextIndicator", ""},
               {"challengeCompletionInd", "X"}}),
         kFirst, 203,
         "acsHTMLRefresh,acsUiType,challengeInfoHeader,oobAppURL,oobAppLabel,resendInformationLabel,acsHTML,"
         "oobContinueLabel,submitAuthenticationLabel,whitelistingInfoText,transStatus,messageVersion,"
         "challengeInfoTextIndicator,challengeCompletionInd"},
        {"a completion that is neither Y nor N", text({{"challengeCompletionInd", "X"}}), kFirst, 203,
         "challengeCompletionInd"},
        {"a warning mark that is neither", text({{"challengeInfoTextIndicator", "y"}}), kFirst, 203,
         "challengeInfoTextIndicator"},
        {"another version", text({{"messageVersion", "2.1.0"}}), kFirst, 203, "messageVersion"},
        {"a status with the first response", text({{"transStatus", "Y"}}), kFirst, 203, "transStatus"},
        {"a status with a later one", text({{"transStatus", "Y"}}), kLater, 0, ""},
        {"final", final({}), kLater, 0, ""},
        {"final as the first response", final({}), kFirst, 203, "transStatus"},
        {"final of another version", final({{"messageVersion", "2.1.0"}}), kLater, 203, "messageVersion"},
    });
}

TEST(Validation, ExtensionsAreLimitedAndNeverCritical) {
    // {"k":"..."} around the value takes eight characters.
    const auto data = [](std::size_t length) {
        return JSON::object({{"data", {{"k", repeated(length - 8)}}}});
    };
    const JSON bad = {{"id", repeated(65)}, {"name", repeated(65)}, {"data", data(8060)["data"]}};
    expectRows({
        {"ten", text(extensions(10)), kFirst, 0, ""},
        {"eleven", text(extensions(11)), kFirst, 203, "messageExtension"},
        {"eleven of a final response", final(extensions(11)), kLater, 0, ""},
        {"longest data", text(extensions(1, data(8059))), kFirst, 0, ""},
        {"data too long", text(extensions(1, data(8060))), kFirst, 203, "messageExtension.data"},
        {"longest id and name", text(extensions(1, {{"id", repeated(64)}, {"name", repeated(64)}})), kFirst,
         0, ""},
        {"each name once", final(extensions(3, bad)), kLater, 203,
         "messageExtension.data,messageExtension.id,messageExtension.name"},
        {"critical", text(extensions(2, {{"criticalityIndicator", true}})), kFirst, 202, "i,i"},
        {"critical after all else",
         text(changed(extensions(1, {{"criticalityIndicator", true}}), {{"messageVersion", "1"}})), kFirst,
         203, "messageVersion"},
    });
}

} // namespace
} // namespace korvane
