#include "Sdk/Messages/Erro.h"
#include "Platform/JSONDecoding.h"
#include "Sdk/Events/SdkError.h"
#include "Sdk/Messages/ChallengeParameters.h"
#include "tests/support/Failures.h"

#include <gtest/gtest.h>

namespace korvane {
namespace {

TEST(ErroMessages, AnySubsetOfFieldsIsTakenAndKeepsItsOrder) {
    const std::string all =
        R"({"threeDSServerTransID":"1","acsTransID":"2","dsTransID":"3","errorCode":"4","errorComponent":"5",)"
        R"("errorDescription":"6","errorDetail":"","errorMessageType":"8","messageType":"9","messageVersion":"10",)"
        R"("sdkTransID":"11"})";
    EXPECT_EQ(Erro::decode(asBytes(all)).jsonString(), all);
    EXPECT_EQ(Erro::decode(asBytes(R"({"errorCode":null,"unknown":1})")).jsonString(), "{}");
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
    EXPECT_EQ(told({.acsTransID = "acs", .errorCode = "x", .errorDescription = "text", .errorDetail = ""}),
              "x|text||acs");
}

TEST(ChallengeParameterGetters, RaiseForWhatIsAbsentAndNotForWhatIsEmpty) {
    ChallengeParameters parameters;
    EXPECT_RAISES_SAYING(SdkErrorCase::InvalidInputException, "acsSignedContent is empty.",
                         parameters.getAcsSignedContent());
    parameters.setAcsSignedContent("");
    EXPECT_EQ(parameters.getAcsSignedContent(), "");
}

} // namespace
} // namespace korvane
