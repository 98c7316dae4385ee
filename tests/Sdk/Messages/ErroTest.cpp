#include "Sdk/Messages/Erro.h"
#include "Platform/JSONDecoding.h"
#include "Sdk/Events/SdkError.h"
#include "Sdk/Messages/ChallengeParameters.h"
#include "tests/support/Failures.h"
#include "tests/support/RecordingLogger.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

TEST(ErroMessages, AnySubsetOfFieldsIsTakenAndKeepsItsOrder) {
    const std::string all =
        R"({"threeDSServerTransID":"1","acsTransID":"2","dsTransID":"3","errorCode":"4","errorComponent":"5",)"
        R"("errorDescription":"6","errorDetail":"","errorMessageType":"8","messageType":"9","messageVersion":"10",)"
        R"("sdkTransID":"11"})";
    EXPECT_EQ(Erro::decode(asBytes(all)).jsonString(), all);
    EXPECT_EQ(Erro::decode(asBytes(R"({"unknown":1})")).jsonString(), "{}");
    EXPECT_EQ(Erro::decode(asBytes(R"({"errorCode":null,"errorCode":"7"})")).errorCode, "7");
    for (const char* json : {R"({"errorCode":203})", "[]"})
        EXPECT_RAISES(DecodingErrorCase::typeMismatch, Erro::decode(asBytes(json)));
}

TEST(ErroMessages, PublicFormFillsWhatIsAbsentAndNamesTheAcsTransaction) {
    const auto told = [](const Erro& erro) {
        const ErrorMessage message = convertErroToErrorMessage(erro);
        return message.getErrorCode() + "|" + message.getErrorDescription() + "|" +
               message.getErrorDetails() + "|" + message.getTransactionID();
    };
    EXPECT_EQ(told({}), "-2|Unknown error|No details|");
    const std::string json =
        R"({"acsTransID":"acs","errorCode":"x","errorDescription":"text","errorDetail":""})";
    EXPECT_EQ(told(Erro::decode(asBytes(json))), "x|text||acs");
}

TEST(ChallengeParameterGetters, TellAbsentFieldsOnly) {
    const RecordingLogger log;
    const ChallengeParameters absent;
    const std::pair<const std::string& (ChallengeParameters::*)() const, const char*> rows[] = {
        {&ChallengeParameters::get3DSServerTransactionId, "tdssTransId is empty."},
        {&ChallengeParameters::getAcsTransactionId, "acsTransactionId is empty."},
        {&ChallengeParameters::getAcsRefNumber, "acsRefNumber is empty."},
        {&ChallengeParameters::getAcsSignedContent, "acsSignedContent is empty."},
        {&ChallengeParameters::getTreeDSRequestorAppURL, "tdsRequestorAppURL is empty."},
    };
    for (const auto& row : rows) {
        EXPECT_RAISES_SAYING(SdkErrorCase::InvalidInputException, row.second, (absent.*row.first)());
        EXPECT_THAT(log.lines().back(), testing::EndsWith(row.second));
    }
    ChallengeParameters empty;
    empty.setTreeDSRequestorAppURL("");
    EXPECT_EQ(empty.getTreeDSRequestorAppURL(), "");
}

} // namespace
} // namespace korvane
