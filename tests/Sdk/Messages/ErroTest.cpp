#include "Sdk/Messages/Erro.h"
#include "Platform/JSONDecoding.h"
#include "Sdk/Events/SdkError.h"
#include "Sdk/Messages/ChallengeParameters.h"
#include "tests/support/Failures.h"
#include "tests/support/RecordingLogger.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

TEST(ErroMessages, AnySubsetOfFieldsIsTaken) {
    EXPECT_EQ(Erro::decode(asBytes(R"({"unknown":1})")), Erro());
    const std::string json =
        R"({"threeDSServerTransID":"1","acsTransID":"2","dsTransID":"3","errorCode":"4","errorComponent":"5",)"
        R"("errorDescription":"6","errorDetail":"","errorMessageType":"8","messageType":"9","messageVersion":"10",)"
        R"("sdkTransID":"11"})";
    EXPECT_EQ(Erro::decode(asBytes(json)).jsonString(), json)
        << "members keep their order, and an empty text stays";
    EXPECT_EQ(Erro::decode(asBytes(R"({"errorCode":null,"errorCode":"7"})")).errorCode, "7");
    EXPECT_RAISES(DecodingErrorCase::typeMismatch, Erro::decode(asBytes(R"({"errorCode":203})")));
    EXPECT_RAISES(DecodingErrorCase::typeMismatch, Erro::decode(asBytes("[]")));
    EXPECT_EQ(Erro().jsonString(), "{}");
}

TEST(ErroMessages, PublicFormFillsWhatIsAbsent) {
    const ErrorMessage fallback = convertErroToErrorMessage({});
    EXPECT_EQ(fallback.getErrorCode(), "-2");
    EXPECT_EQ(fallback.getErrorDescription(), "Unknown error");
    EXPECT_EQ(fallback.getErrorDetails(), "No details");
    EXPECT_EQ(fallback.getTransactionID(), "");
    Erro erro;
    erro.errorDetail = "";
    erro.acsTransID = "acs";
    erro.sdkTransID = "sdk";
    EXPECT_EQ(convertErroToErrorMessage(erro).getErrorDetails(), "");
    EXPECT_EQ(convertErroToErrorMessage(erro).getTransactionID(), "acs");
}

TEST(ChallengeParameterGetters, TellAbsentFieldsOnly) {
    const RecordingLogger log;
    ChallengeParameters parameters;
    const struct {
        const std::string& (ChallengeParameters::*get)() const;
        void (ChallengeParameters::*set)(std::string);
        const char* text;
    } rows[] = {
        {&ChallengeParameters::get3DSServerTransactionId, &ChallengeParameters::set3DSServerTransactionId,
         "tdssTransId is empty."},
        {&ChallengeParameters::getAcsTransactionId, &ChallengeParameters::setAcsTransactionId,
         "acsTransactionId is empty."},
        {&ChallengeParameters::getAcsRefNumber, &ChallengeParameters::setAcsRefNumber,
         "acsRefNumber is empty."},
        {&ChallengeParameters::getAcsSignedContent, &ChallengeParameters::setAcsSignedContent,
         "acsSignedContent is empty."},
        {&ChallengeParameters::getTreeDSRequestorAppURL, &ChallengeParameters::setTreeDSRequestorAppURL,
         "tdsRequestorAppURL is empty."},
    };
    for (const auto& row : rows) {
        EXPECT_RAISES_SAYING(SdkErrorCase::InvalidInputException, row.text, (parameters.*row.get)());
        EXPECT_THAT(log.lines().back(), testing::EndsWith(row.text));
        (parameters.*row.set)("");
        EXPECT_EQ((parameters.*row.get)(), "");
    }
}

} // namespace
} // namespace korvane
