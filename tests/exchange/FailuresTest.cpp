#include "tests/support/Failures.h"
#include "Crypt/JOSEError.h"
#include "Sdk/Events/SdkError.h"
#include "tests/exchange/AcsProcess.h"
#include "tests/exchange/AppSide.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <set>

namespace korvane {
namespace {

using testing::IsEmpty;
using testing::Not;
using testing::Optional;
using testing::SizeIs;

/// Code, description and detail of an Erro that the library makes.
struct Fault {
    const char* code;
    const char* description;
    const char* detail;
};

struct FailureRow {
    const char* scenario;
    std::optional<Fault> fault;
    const char* errorDescription;
};

constexpr const char* kNotRecognised = "Message not recognised";
constexpr const char* kMissing =
    "A message element required as defined in Table A.1 is missing from the message.";
constexpr const char* kExtension = "Critical message extension not recognised.";
constexpr const char* kWrongForm =
    "Data element not in the required format or value is invalid as defined in Table A.1";
constexpr const char* kTwice = "Valid data element presents more than once in the message.";
constexpr const char* kForeign = "Transaction ID received is not valid for the receiving component.";
constexpr const char* kNotDecrypted =
    "Data could not be decrypted by the receiving system due to technical or other reason.";
constexpr const char* kMiscounted = "acsCounterAtoS do not match with sdkCounterStoA.";

constexpr const char* kRejected = "Got error on CRes validation.";
constexpr const char* kNotBuilt = "Can not build CRes from decrypted data.";
constexpr const char* kNoMessage = "JWE parse error.";

const FailureRow kFailures[]{
    {"faultNotJWE", Fault{"101", kNotRecognised, "JWE parse error"}, kNoMessage},
    // Bytes are there, if none: not the answer that failed to come.
    {"faultEmptyBody", Fault{"101", kNotRecognised, "JWE parse error"}, kNoMessage},
    // The status does not count.
    {"faultHttp500", Fault{"101", kNotRecognised, "JWE parse error"}, kNoMessage},
    {"faultUnknownType", Fault{"101", kNotRecognised, "Invalid Message Type"},
     "Can not recognize messageType."},
    {"faultMissingField", Fault{"201", kMissing, "challengeCompletionInd"}, kNotBuilt},
    {"faultMissingNestedField", Fault{"201", kMissing, "issuerImage,extraHigh"}, kNotBuilt},
    {"faultCriticalExtension", Fault{"202", kExtension, "A999999999-7"}, kRejected},
    {"faultBadType", Fault{"203", kWrongForm, "challengeInfoText"}, kNotBuilt},
    {"faultBadField", Fault{"203", kWrongForm, "challengeInfoTextIndicator"}, kRejected},
    {"faultRepeatedKey", Fault{"204", kTwice, "acsTransID"}, "Duplicate keys found."},
    {"faultForeignTransactionID", Fault{"301", kForeign, "The Transaction ID received was invalid."},
     kRejected},
    {"faultWrongKey",
     Fault{"302", kNotDecrypted, "The operation couldn\u2019t be completed. (Korvane.JOSEError error 3.)"},
     "Can not decrypt CRes JWE."},
    {"faultWrongCounter", Fault{"302", kMiscounted, "acsCounterAtoS"}, kRejected},
    {"faultNotJSON", std::nullopt, kNotBuilt},
    {"faultUndecodableErro", std::nullopt, "Can not decode Erro from received data."},
};

/// The two that the ACS sends, which go no further.
const char* const kReceived[]{"faultPlainErro", "faultSealedErro"};

/// Tests of their own.
const char* const kOthers[]{"faultBadSignature", "faultForeignRoot", "faultConnectionClosed", "faultNoAnswer",
                            "faultSlowAnswer"};

Erro erroAbout(const Fault& fault, const JSON& answer, const AuthenticationRequestParameters& request) {
    return {.threeDSServerTransID = answer["threeDSServerTransID"].get<std::string>(),
            .acsTransID = answer["acsTransID"].get<std::string>(),
            .errorCode = fault.code,
            .errorComponent = "C",
            .errorDescription = fault.description,
            .errorDetail = fault.detail,
            .errorMessageType = "CRes",
            .messageType = "Erro",
            .messageVersion = request.getMessageVersion(),
            .sdkTransID = request.getSDKTransactionID()};
}

JSON membersOf(const Erro& erro) {
    const auto member = [](const std::optional<std::string>& value) { return value ? JSON(*value) : JSON(); };
    return {{"threeDSServerTransID", member(erro.threeDSServerTransID)},
            {"acsTransID", member(erro.acsTransID)},
            {"dsTransID", member(erro.dsTransID)},
            {"errorCode", member(erro.errorCode)},
            {"errorComponent", member(erro.errorComponent)},
            {"errorDescription", member(erro.errorDescription)},
            {"errorDetail", member(erro.errorDetail)},
            {"errorMessageType", member(erro.errorMessageType)},
            {"messageType", member(erro.messageType)},
            {"messageVersion", member(erro.messageVersion)},
            {"sdkTransID", member(erro.sdkTransID)}};
}

/// A result field by field, as a mismatch is to show it.
JSON fieldsOf(const CReqSendingResult& result) {
    return {{"hasCRes", result.cres.has_value()},
            {"erro", result.erro ? membersOf(*result.erro) : JSON()},
            {"receivedError", result.receivedError},
            {"errorDescription", result.errorDescription ? JSON(*result.errorDescription) : JSON()}};
}

/// The ACS, and the application with its parameters.
struct Meeting {
    explicit Meeting(const std::string& scenario)
        : acs(pki().path(), scenario), app(acs.listening(), {}), answer(app.authenticate()) {}

    CReqSendingResult firstExchange() {
        app.openSecureChannel();
        return app.sendFirstCReq();
    }

    AcsEnding end() {
        AcsEnding ending = acs.stop();
        EXPECT_EQ(ending.exitCode, 0);
        return ending;
    }

    /// Sends the Erro and expects that the ACS reads the same fields, after the request and the CReq; or that
    /// it gets nothing more where there is none.
    void expectReported(const std::optional<Erro>& erro) {
        if (erro) app.sendErroToAcs(*erro);
        const auto received = end().messages("received");
        ASSERT_EQ(received.size(), erro ? 3U : 2U);
        if (!erro) return;
        JSON members = membersOf(*erro);
        // What is absent is not written.
        members.erase("dsTransID");
        EXPECT_EQ(received[2], members);
    }

    static const TemporaryFolder& pki() {
        static const TemporaryFolder folder;
        return folder;
    }

    AcsProcess acs;
    AppSide app;
    JSON answer;
};

TEST(AcsExchange, EveryFaultOfAnAnswerHasItsResultAndItsErro) {
    for (const FailureRow& row : kFailures) {
        SCOPED_TRACE(row.scenario);
        Meeting meeting(row.scenario);
        CReqSendingResult expected{.errorDescription = row.errorDescription};
        if (row.fault) expected.erro = erroAbout(*row.fault, meeting.answer, meeting.app.request());
        const CReqSendingResult result = meeting.firstExchange();
        EXPECT_EQ(fieldsOf(result), fieldsOf(expected));
        EXPECT_FALSE(meeting.app.transaction().hasCResTimer());
        meeting.expectReported(result.erro);
    }
}

TEST(AcsExchange, AnErroOfTheAcsIsTakenAsItIs) {
    for (const char* scenario : kReceived) {
        SCOPED_TRACE(scenario);
        Meeting meeting(scenario);
        const CReqSendingResult result = meeting.firstExchange();
        const auto sent = meeting.end().messages("sent");
        ASSERT_THAT(sent, SizeIs(2));
        ASSERT_EQ(sent[1].value("messageType", ""), "Erro");
        JSON members = sent[1];
        EXPECT_EQ(members["errorComponent"], "A");
        EXPECT_EQ(members["sdkTransID"], meeting.app.request().getSDKTransactionID());
        members["dsTransID"] = nullptr;
        const JSON expected = {{"hasCRes", false},
                               {"erro", members},
                               {"receivedError", true},
                               {"errorDescription", "Receive Erro message instead of CRes."}};
        EXPECT_EQ(nlohmann::json(fieldsOf(result)), nlohmann::json(expected));
    }
}

/// The CReq goes out on the connection of the authentication request, and must not be sent once more on
/// another: a POST is not to be repeated unasked (RFC 9110 section 9.2.2), and an ACS takes it as out of
/// step.
TEST(AcsExchange, AConnectionThatClosesIsToldInTheWordsOfTheTransportAndNothingIsRepeated) {
    Meeting meeting("faultConnectionClosed");
    const CReqSendingResult result = meeting.firstExchange();
    EXPECT_TRUE(meeting.app.transaction().hasCResTimer());
    EXPECT_THAT(result.errorDescription, Optional(Not(IsEmpty())));
    EXPECT_EQ(fieldsOf(result), fieldsOf({.errorDescription = result.errorDescription}));
    meeting.expectReported(std::nullopt);
}

// The next two wait for real, each in a process of its own.

TEST(AcsExchange, AnAnswerThatDoesNotComeIsGivenUpAfterTwelveSeconds) {
    Meeting meeting("faultNoAnswer");
    const CReqSendingResult expected{.erro = erroAbout({"101", kNotRecognised, "Invalid Message Type"},
                                                       meeting.answer, meeting.app.request()),
                                     .errorDescription = "Receive empty cRes Data."};
    const CReqSendingResult result = meeting.firstExchange();
    EXPECT_EQ(fieldsOf(result), fieldsOf(expected));
    EXPECT_TRUE(meeting.app.transaction().takesTimeoutSignal());
    meeting.expectReported(result.erro);
}

TEST(AcsExchange, AnAnswerAfterElevenSecondsIsAcceptedAfterItsTimeRanOut) {
    Meeting meeting("faultSlowAnswer");
    const CReqSendingResult result = meeting.firstExchange();
    EXPECT_TRUE(result.cres);
    EXPECT_EQ(result, CReqSendingResult{.cres = result.cres});
    EXPECT_TRUE(meeting.app.transaction().takesTimeoutSignal());
    meeting.expectReported(std::nullopt);
}

TEST(AcsExchange, ContentWhoseSignatureIsBadOpensNoChannel) {
    Meeting meeting("faultBadSignature");
    EXPECT_TRUE(raises(JOSEErrorCase::signatureInvalid, [&] {
        meeting.app.openSecureChannel();
        return true;
    }));
    meeting.end();
}

TEST(AcsExchange, ContentUnderAForeignRootOpensNoChannel) {
    Meeting meeting("faultForeignRoot");
    EXPECT_TRUE(raises(
        SdkErrorCase::SDKRuntimeException,
        [&] {
            meeting.app.openSecureChannel();
            return true;
        },
        "SecTrust cert chain validation fail."));
    meeting.end();
}

TEST(AcsExchange, EveryFaultScenarioHasItsTest) {
    std::set<std::string> played(std::begin(kReceived), std::end(kReceived));
    played.insert(std::begin(kOthers), std::end(kOthers));
    for (const FailureRow& row : kFailures)
        played.insert(row.scenario);
    std::set<std::string> shipped;
    for (const auto& file : std::filesystem::directory_iterator(KORVANE_SCENARIOS))
        if (const std::string name = file.path().stem().string(); name.starts_with("fault"))
            shipped.insert(name);
    EXPECT_EQ(played, shipped);
}

} // namespace
} // namespace korvane
