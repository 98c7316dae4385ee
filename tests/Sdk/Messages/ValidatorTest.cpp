#include "Sdk/Messages/Validator.h"
#include "tests/support/Messages.h"

#include <gmock/gmock.h>

#include <sstream>

namespace korvane {
namespace {

/// Which response a row is about: the first or a later one with a text screen, or the one
/// that ends the challenge.
enum Response { first, later, last };

/// Judges a response in a transaction of version 2.2.0 whose counter stands at 1.
std::optional<KorvaneError> judge(const JSON& json, Response response = first,
                                  const ChallengeParameters& parameters = validParameters(),
                                  int counter = 1) {
    const CRes cres = CRes::decode(json.dump());
    return Validator::validateCRes({cres, counter, "2.2.0", parameters, kSdkTransID, response == first});
}

/// A valid response with changes between bars: "name=" and a text or JSON list, or "-" and the
/// name of what is absent.
JSON changed(Response response, const std::string& changes) {
    JSON json = response == last ? finalCResJSON() : validCResJSON();
    std::istringstream each(changes);
    for (std::string change; std::getline(each, change, '|');) {
        const std::size_t equals = change.find('=');
        const std::string value = change.substr(equals + 1);
        if (change.starts_with('-'))
            json.erase(change.substr(1));
        else
            json[change.substr(0, equals)] = value.starts_with('[') ? JSON::parse(value) : JSON(value);
    }
    return json;
}

std::string repeated(std::size_t count, const std::string& piece = "a") {
    std::string result;
    for (std::size_t index = 0; index < count; ++index)
        result += piece;
    return result;
}

/// A response's changes, the code that it is refused with (0: accepted), and the details
/// where they are its own.
struct Row {
    Response response;
    std::string changes;
    int code = 0;
    std::string details{};
};

void expectRows(std::initializer_list<Row> rows) {
    for (const Row& row : rows) {
        SCOPED_TRACE(row.changes);
        KorvaneError expected = KorvaneError::getErrorByCode(row.code);
        if (row.code == 302) expected.description = "acsCounterAtoS do not match with sdkCounterStoA.";
        if (!row.details.empty()) expected.details = row.details;
        EXPECT_EQ(judge(changed(row.response, row.changes), row.response),
                  row.code == 0 ? std::nullopt : std::optional(expected));
    }
}

TEST(Validation, CounterIsANumberThatMustBeEqual) {
    expectRows({
        {first, "acsCounterAtoS=+01"},
        {first, "acsCounterAtoS=000", 302, "acsCounterAtoS"},
        {first, "acsCounterAtoS=-1", 302, "acsCounterAtoS"},
        // What is no number is no fault.
        {first, "acsCounterAtoS=abc"},
        {first, "acsCounterAtoS=+-2"},
        {first, "acsCounterAtoS=99999999999999999999"},
    });
    EXPECT_EQ(judge(changed(later, "acsCounterAtoS=0010"), later, validParameters(), 10), std::nullopt);
}

TEST(Validation, RequiredFieldsAreListedInOrder) {
    const std::string texts = "challengeInfoHeader=|challengeInfoLabel=|-challengeInfoText";
    const std::string identifiers = "threeDSServerTransID=|acsTransID=|sdkTransID=|acsCounterAtoS=|"
                                    "challengeCompletionInd=|messageVersion=";
    expectRows({
        {first, identifiers, 201,
         "threeDSServerTransID,acsTransID,sdkTransID,acsCounterAtoS,challengeCompletionInd,messageVersion"},
        {last, "-transStatus", 201, "transStatus"},
        {first, "-acsUiType", 201, "acsUiType,acsUiType,transStatus"},
        {later, "-acsUiType", 201, "acsUiType,transStatus"},
        {later, "-acsUiType|transStatus=Y"},
        {later, "transStatus=", 201, "transStatus"},
        // A page.
        {first, "acsUiType=05|acsHTML=AA|-submitAuthenticationLabel"},
        {first, "acsUiType=05|acsHTML=|acsHTMLRefresh=", 201, "acsHTML,acsHTMLRefresh"},
        // Out of band; without the button, the texts are not looked at.
        {first, "acsUiType=04|oobContinueLabel=Next|-challengeInfoLabel"},
        {first, "acsUiType=04|oobContinueLabel=Next|" + texts, 201, "challengeInfoHeader,challengeInfoText"},
        {first, "acsUiType=04|oobContinueLabel=|" + texts, 201, "oobContinueLabel"},
        // A text, and the same with choices.
        {first, texts, 201, "challengeInfoHeader,challengeInfoLabel,challengeInfoText"},
        {first, "-submitAuthenticationLabel|" + texts, 201, "submitAuthenticationLabel"},
        {first, R"(acsUiType=02|challengeSelectInfo=[{"a":"A"}])"},
        {first, "acsUiType=02|challengeSelectInfo=[]|" + texts, 201,
         "challengeInfoHeader,challengeInfoLabel,challengeInfoText,challengeSelectInfo"},
        {first, "acsUiType=03|-submitAuthenticationLabel", 201,
         "submitAuthenticationLabel,challengeSelectInfo"},
        // What is no type asks for nothing here.
        {first, "acsUiType=09|" + texts + "|challengeInfoHeader=a", 203, "acsUiType"},
    });
}

TEST(Validation, FirstStageThatFindsAFaultDecides) {
    JSON json =
        changed(first, "acsCounterAtoS=002|challengeInfoText=|sdkTransID=x|messageVersion=2.1.0|"
                       R"(messageExtension=[{"criticalityIndicator":true,"data":{},"id":"","name":""}])");
    const std::tuple<int, const char*, const char*> stages[] = {{302, "acsCounterAtoS", "001"},
                                                                {201, "challengeInfoText", "text"},
                                                                {301, "sdkTransID", kSdkTransID},
                                                                {203, "messageVersion", "2.2.0"},
                                                                {202, "acsUiType", "01"}};
    for (const auto& [code, name, good] : stages) {
        EXPECT_EQ(judge(json).value().code, code);
        json[name] = good;
    }
}

TEST(Validation, TransactionIdentifiersAreComparedExactlyAndThenMustBeUUIDs) {
    expectRows({
        {first, "threeDSServerTransID=" + std::string(kAcsTransID), 301},
        {first, "acsTransID=" + std::string(kServerTransID), 301},
        {first, "sdkTransID=B2385523-A66C-4907-AC3C-91848E8C0067", 301},
    });
    for (const std::string id :
         {"no-uuid", "8a880dc0-d2d2-4067-bcb1-b08d1690b26g", "8a880dc0d-2d2-4067-bcb1-b08d1690b26e"}) {
        ChallengeParameters odd = validParameters();
        odd.set3DSServerTransactionId(id);
        odd.setAcsTransactionId(id);
        for (const Response response : {later, last}) {
            const JSON json = changed(response, "threeDSServerTransID=" + id + "|acsTransID=" + id);
            EXPECT_EQ(judge(json, response, odd).value().details, "threeDSServerTransID,acsTransID");
        }
    }
}

TEST(Validation, TextLengthsHaveBothSides) {
    const std::pair<std::string, std::size_t> limits[] = {
        {"challengeInfoHeader=", 45},    {"oobAppURL=", 256},       {"oobAppLabel=", 256},
        {"resendInformationLabel=", 45}, {"oobContinueLabel=", 45}, {"submitAuthenticationLabel=", 45},
        {"whitelistingInfoText=", 64},   {"acsHTML=", 100000},      {"acsHTMLRefresh=", 100000}};
    // A family of three joined to one is one character; a page is Base64URL.
    const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
    for (const auto& [name, longest] : limits)
        for (const std::string& piece : {std::string("a"), longest > 256 ? "b" : family}) {
            const std::string tooLong = name + repeated(longest + 1, piece);
            expectRows({{first, name + repeated(longest, piece)},
                        {first, tooLong, 203, name.substr(0, name.size() - 1)},
                        {last, tooLong}});
        }
}

TEST(Validation, ValuesAreListedInOrder) {
    expectRows({
        {first,
         "acsHTMLRefresh=?|acsUiType=06|challengeInfoHeader=|oobAppURL=|oobAppLabel=|resendInformationLabel=|"
         "acsHTML=a+b|oobContinueLabel=|submitAuthenticationLabel=|whitelistingInfoText=|transStatus=Y|"
         "messageVersion=2.1.0|challengeInfoTextIndicator=|challengeCompletionInd=X",
         203,
         "acsHTMLRefresh,acsUiType,challengeInfoHeader,oobAppURL,oobAppLabel,resendInformationLabel,acsHTML,"
         "oobContinueLabel,submitAuthenticationLabel,whitelistingInfoText,transStatus,messageVersion,"
         "challengeInfoTextIndicator,challengeCompletionInd"},
        {first, "challengeInfoTextIndicator=y", 203, "challengeInfoTextIndicator"},
        {later, "transStatus=Y"},
        {last, ""},
        {last, "messageVersion=2.1.0", 203, "messageVersion"},
        {first, "challengeCompletionInd=Y|transStatus=Y", 203, "transStatus"},
    });
}

TEST(Validation, ExtensionsAreLimitedAndNeverCritical) {
    const auto list = [](std::size_t count, std::size_t length, std::size_t dataLength, bool isCritical) {
        const JSON each{{"criticalityIndicator", isCritical},
                        {"data", {{"k", repeated(dataLength - 8)}}}, // {"k":""} around it takes eight
                        {"id", repeated(length)},
                        {"name", repeated(length)}};
        return "messageExtension=" + JSON(std::vector<JSON>(count, each)).dump();
    };
    const std::string names = "messageExtension.data,messageExtension.id,messageExtension.name";
    expectRows({
        {first, list(10, 64, 8059, false)},
        {first, list(11, 64, 8059, false), 203, "messageExtension"},
        {last, list(11, 64, 8059, false)},
        {first, list(3, 65, 8060, false), 203, names},
        {last, list(3, 65, 8060, false), 203, names},
        {first, list(2, 1, 8, true), 202, "a,a"},
    });
}

} // namespace
} // namespace korvane
