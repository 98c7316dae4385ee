#include "Crypt/JWS.h"
#include "Ui/Screens/ChallengeWebViewController.h"
#include "tests/challenge/ChallengeSupport.h"
#include "tests/support/RecordingLogger.h"

namespace korvane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class ChallengeStart : public ChallengeTest {
protected:
    static JSON images(const std::string& name) {
        return JSON::object({{"medium", "https://acs.example/" + name + "-medium.png"},
                             {"high", "https://acs.example/" + name + "-high.png"},
                             {"extraHigh", "https://acs.example/" + name + "-extraHigh.png"}});
    }
    static SimulatedAcs::Answer withMember(const char* name, JSON value, const char* uiType = "01") {
        return [=](SimulatedAcs& played) {
            JSON json = played.screen(uiType);
            json[name] = value;
            return played.respond(json);
        };
    }
};

TEST_F(ChallengeStart, FirstScreenComesOverTheApplicationWithBothLogos) {
    acs.imageAnswer.body = toBytes("GIF89a\x01\x01");
    start({[](SimulatedAcs& played) {
        JSON json = played.screen("01");
        json["issuerImage"] = images("bank");
        json["psImage"] = images("scheme");
        return played.respond(json);
    }});
    EXPECT_THAT(acs.images(),
                ElementsAre("https://acs.example/scheme-high.png", "https://acs.example/bank-high.png"));
    ASSERT_EQ(acs.requests().size(), 1U);
    EXPECT_EQ(acs.requests()[0].sdkCounterStoA, "000");
    const auto screen = top<ChallengeTextNativeViewController>();
    EXPECT_EQ(screen->challengeInfoHeader->text(), "Confirm your payment");
    EXPECT_EQ(root()->modalPresentationStyle(), UIModalPresentationStyle::fullScreen);
    EXPECT_TRUE(root()->isNavigationBarHidden());
    EXPECT_THAT(heard(), IsEmpty());
}

/// A start that fails, in the words for the application and the codes for the ACS.
struct FailureRow {
    const char* name;
    std::function<void(ChallengeParameters&)> spoil;
    SimulatedAcs::Answer answer;
    std::string heard;
    std::vector<std::string> codes = {};
};

class ChallengeStartFailures : public ChallengeStart {
protected:
    void expect(const FailureRow& row) {
        create();
        const std::size_t before = acs.errors().size();
        if (row.spoil) row.spoil(*parameters);
        start({row.answer ? row.answer : SimulatedAcs::showing("01")});
        std::string expected = row.heard;
        if (const auto at = expected.find("ID"); at != std::string::npos) expected.replace(at, 2, id());
        EXPECT_THAT(heard(), ElementsAre(expected));
        std::vector<std::string> codes = errorCodes();
        codes.erase(codes.begin(), codes.begin() + static_cast<std::ptrdiff_t>(before));
        EXPECT_EQ(codes, row.codes);
        EXPECT_EQ(root(), nullptr);
        runFor(3600);
        EXPECT_EQ(heard().size(), 1U) << "the timer of the challenge ran on";
    }
};

TEST_F(ChallengeStartFailures, EachIsToldOnceAndEndsTheTimer) {
    const std::string generic = "The operation couldn\u2019t be completed. (Korvane.";
    const std::string noContent = "runtimeError(-1, Can not get acsURL from AcsSignedContent: ";
    const std::string notVerified = "runtimeError(-1, Can not verification AcsSignedContent: ";
    const TestIdentity stranger = selfSigned({});
    const FailureRow rows[] = {
        {"no content",
         [](auto& values) { values.acsSignedContent.reset(); },
         {},
         noContent + "InvalidInputException: acsSignedContent is empty.)"},
        {"content that is no JWS",
         [](auto& values) { values.acsSignedContent = "a.b"; },
         {},
         noContent + generic + "JOSEError error 5.))"},
        {"signature that does not verify",
         [](auto& values) {
             std::string& content = *values.acsSignedContent;
             content[content.size() - 9] = content[content.size() - 9] == 'A' ? 'B' : 'A';
         },
         {},
         notVerified + generic + "JOSEError error 9.))",
         {"302"}},
        {"chain of strangers",
         [&](auto& values) {
             const JWS jws(*values.acsSignedContent);
             values.acsSignedContent = PlayedAcs::signedBy(stranger, {stranger.base64()},
                                                           JSON::parse(asText(jws.payload().data())));
         },
         {},
         notVerified + "SecTrust cert chain validation fail.)",
         {"302"}},
        {"no identifier of the ACS",
         [](auto& values) { values.acsTransactionId.reset(); },
         {},
         "runtimeError(-1, Can not get init CReq data: " + generic + "SdkError error 0.))"},
        {"transport failure",
         {},
         [](SimulatedAcs&) {
             return ScriptedAnswer{{}, "no route"};
         },
         "runtimeError(-1, no route)"},
        {"Erro of the ACS",
         {},
         [](SimulatedAcs&) { return ScriptedAnswer{toBytes(R"({"messageType":"Erro","errorCode":"305"})")}; },
         "protocolError(ID, 305, No details)"},
        {"answer that is no JWE",
         {},
         [](SimulatedAcs&) { return ScriptedAnswer{toBytes("x")}; },
         "protocolError(ID, 101, JWE parse error)",
         {"101"}},
        {"message that is no JSON",
         {},
         [](SimulatedAcs& played) {
             return ScriptedAnswer{toBytes(played.sealed(R"({"messageType":"CRes",)"))};
         },
         "runtimeError(-1, Can not build CRes from decrypted data.)"},
        {"logo without an address",
         {},
         withMember("psImage", JSON::object({{"medium", ""}, {"high", "a b"}, {"extraHigh", ""}})),
         "runtimeError(-1, Can not process init CReq: " + generic + "SdkError error 0.))"},
        {"page that cannot be decoded",
         {},
         withMember("acsHTML", "A", "05"),
         "runtimeError(-1, Got error on challenge VC init from CRes: " + generic + "SdkError error 5.))"},
    };
    for (const FailureRow& row : rows) {
        SCOPED_TRACE(row.name);
        receiver->heard.clear();
        expect(row);
    }
}

TEST_F(ChallengeStart, ScreenOfTheFirstResponseIgnoresWhatTheFactoryCannotShow) {
    startWithScreens({"05"});
    EXPECT_EQ(top<ChallengeWebViewController>()->challengeWebView->loadCount(), 1);
}

/// Without a screen a time-out interrupts nothing: what comes later is shown all the same.
TEST_F(ChallengeStart, TimeoutBeforeTheFirstScreenIsToldAndTheAnswerStillCounts) {
    start({[](SimulatedAcs& played) { return played.respond(played.screen("01"), Seconds{5}); }}, 0);
    EXPECT_THAT(heard(), ElementsAre("timedout"));
    runFor(10);
    EXPECT_THAT(heard(), ElementsAre("timedout"));
    EXPECT_THAT(errorCodes(), IsEmpty());
    expectTop<ChallengeTextNativeViewController>();
}

TEST_F(ChallengeStart, TimeoutWithAScreenTakesItAwayAndTellsTheAcs) {
    startWithScreens({"02"});
    const auto screen = top<ChallengeSingleSelectNativeViewController>();
    const RecordingLogger log;
    runFor(296);
    EXPECT_THAT(heard(), IsEmpty());
    runFor(2);
    EXPECT_THAT(heard(), ElementsAre("timedout"));
    EXPECT_THAT(errorCodes(), ElementsAre("402"));
    EXPECT_EQ(root(), nullptr);
    const std::string site = "Sdk/Transaction/ChallengeStart.cpp "
                             "doChallenge(challengeParameters:challengeStatusReceiver:timeout:): ";
    EXPECT_THAT(log.lines(), Contains(site + "Do challenge with parmeters tdsServerTransactionId=" +
                                      parameters->get3DSServerTransactionId() +
                                      ", acsTransactionId=" + parameters->getAcsTransactionId() +
                                      ", acsRefNumber=3DS_LOA_ACS_TEST, tdsRequestorAppURL=nil"));
    EXPECT_THAT(log.lines(), Contains(site + "Timeout expiry reached for the transaction as defined in "
                                             "Section 5.5."));
    peer.transaction->sendOobContinue(std::nullopt);
    EXPECT_EQ(acs.requests().size(), 1U);
    EXPECT_THAT(heard(), ElementsAre("timedout"));
}

TEST_F(ChallengeStart, TransactionLivesAsLongAsItsScreens) {
    startWithScreens({"01"});
    const std::weak_ptr<Transaction> weak = peer.transaction;
    peer.transaction = nullptr;
    EXPECT_FALSE(weak.expired());
    submit("1234");
    runFor(5);
    EXPECT_EQ(heard().size(), 1U);
    EXPECT_TRUE(weak.expired());
}

} // namespace
} // namespace korvane
