#include "Sdk/Exchange/Exchange.h"

#include "Crypt/JWE.h"
#include "Platform/LetterCase.h"
#include "tests/support/Messages.h"
#include "tests/support/PlayedAcs.h"
#include "tests/support/SimulatedPlatform.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

constexpr const char* kCanNotBuild = "Can not build CRes from decrypted data.";

/// Both sides after the agreement on a key, before the first exchange.
class ExchangeTest : public testing::Test {
protected:
    ExchangeTest() {
        exchange_->setTimedOut([this] { ++timeouts_; });
        setParameters(parameters());
        exchange_->openSecureChannel();
        key_ = peerKey(acs_.ephemeral, ECPublicKey::make(asBytes(published_)), kReferenceNumber);
    }

    void setParameters(ChallengeParameters parameters) const {
        exchange_->setChallengeParameters(std::make_shared<ChallengeParameters>(std::move(parameters)));
    }

    /// How often a time-out was told since this was asked last.
    [[nodiscard]] int timeouts() {
        platform_.runUntilIdle();
        return std::exchange(timeouts_, 0);
    }

    [[nodiscard]] ChallengeParameters parameters() const {
        ChallengeParameters parameters = validParameters();
        parameters.setAcsSignedContent(acs_.signedContent());
        return parameters;
    }

    [[nodiscard]] std::string sdkTransID() const { return lowercased(exchange_->sdkTransactionID()); }

    /// A response to the first request that the library accepts.
    [[nodiscard]] JSON cRes() const {
        JSON json = validCResJSON();
        json["acsCounterAtoS"] = "000";
        json["sdkTransID"] = sdkTransID();
        return json;
    }

    [[nodiscard]] JSON cResWith(const char* name, const JSON& value) const {
        JSON json = cRes();
        json[name] = value;
        return json;
    }

    [[nodiscard]] JSON cResWithout(const char* name) const {
        JSON json = cRes();
        json.erase(name);
        return json;
    }

    [[nodiscard]] std::string sealed(const std::string& text) const { return PlayedAcs::sealed(text, key_); }
    [[nodiscard]] std::string sealed(const JSON& json) const { return sealed(json.dump()); }

    void answer(ScriptedAnswer answer) {
        platform_.network().answer = [answer](const URLRequest&) { return answer; };
    }
    void answer(const std::string& body, Seconds delay = Seconds{0}) {
        answer({toBytes(body), std::nullopt, delay});
    }

    [[nodiscard]] CReqSendingResult send() const {
        return exchange_->sendCReq(toBytes("sealed request"), CResPosition::initial);
    }

    [[nodiscard]] Erro erro(int code, const std::string& details) const {
        return {.threeDSServerTransID = kServerTransID,
                .acsTransID = kAcsTransID,
                .errorCode = std::to_string(code),
                .errorComponent = "C",
                .errorDescription = KorvaneError::getErrorByCode(code).description,
                .errorDetail = details,
                .errorMessageType = "CRes",
                .messageType = "Erro",
                .messageVersion = "2.2.0",
                .sdkTransID = sdkTransID()};
    }

    SimulatedPlatform platform_;
    PlayedAcs acs_;
    int timeouts_ = 0;
    std::shared_ptr<Exchange> exchange_ = std::make_shared<Exchange>(
        MessageVersion::v2_2_0, kReferenceNumber, std::make_unique<KeysContainer>(certsWithRoot(acs_.root)));
    const std::string published_ = exchange_->ephemeralPublicKey().value();
    SecretBytes key_;
};

/// An answer and what it comes to. A code of 0 stands for no Erro.
struct AnswerRow {
    const char* name;
    std::string body;
    int code;
    std::string details;
    std::string text;
};

TEST_F(ExchangeTest, FirstRequestIsSealedForTheAcsWithTheValuesOfTheTransaction) {
    const JSON expected{{"threeDSServerTransID", kServerTransID},
                        {"acsTransID", kAcsTransID},
                        {"messageType", "CReq"},
                        {"messageVersion", "2.2.0"},
                        {"sdkTransID", sdkTransID()},
                        {"sdkCounterStoA", "000"}};
    JSON withAppURL = {{"threeDSRequestorAppURL", "https://shop.example/app"}};
    withAppURL.update(expected);
    const std::pair<std::optional<std::string>, JSON> rows[] = {
        {std::nullopt, expected}, {"", expected}, {"https://shop.example/app", withAppURL}};
    for (const auto& [appURL, json] : rows) {
        ChallengeParameters values = parameters();
        values.tdsRequestorAppURL = appURL;
        setParameters(values);
        const JWE jwe(exchange_->getInitCReqData());
        EXPECT_EQ(jwe.header().kid(), kAcsTransID);
        EXPECT_EQ(asText(jwe.decrypt(key_).data()), json.dump());
    }
}

TEST_F(ExchangeTest, EachWrongAnswerBecomesItsErrorAndDescription) {
    std::string repeated = cRes().dump();
    repeated.insert(1, R"("sdkTransID":"a","acsTransID":"b",)");
    JSON imageWithoutHigh = cResWith("psImage", {{"medium", "a"}, {"extraHigh", "b"}});
    const JSON optionOfNumber = cResWith("challengeSelectInfo", JSON::array({{{"a", 1}}}));
    const JSON namelessOption = cResWith("challengeSelectInfo", JSON::array({{{"", 1}}}));
    std::string foreign = sealed(cRes());
    foreign[foreign.size() - 5] = foreign[foreign.size() - 5] == 'A' ? 'B' : 'A';
    const std::string undecodable = "The operation couldn\u2019t be completed. (Korvane.JOSEError error 3.)";

    const AnswerRow rows[] = {
        {"no byte", "", 101, "JWE parse error", "JWE parse error."},
        {"not a JWE", "<html>", 101, "JWE parse error", "JWE parse error."},
        {"not UTF-8", "messageType\":\"Erro\xFF", 101, "JWE parse error", "JWE parse error."},
        {"plain CRes", cRes().dump(), 101, "JWE parse error", "JWE parse error."},
        {"damaged JWE", foreign, 302, undecodable, "Can not decrypt CRes JWE."},
        {"no type", sealed(std::string("{}")), 101, "Invalid Message Type", "Can not recognize messageType."},
        {"CReq", sealed(cResWith("messageType", "CReq")), 101, "Invalid Message Type",
         "Can not recognize messageType."},
        {"repeated members", sealed(repeated), 204, "acsTransID,sdkTransID", "Duplicate keys found."},
        {"missing member", sealed(cResWithout("acsCounterAtoS")), 201, "acsCounterAtoS", kCanNotBuild},
        {"missing inside", sealed(imageWithoutHigh), 201, "psImage,high", kCanNotBuild},
        {"number for text", sealed(cResWith("challengeInfoText", 1)), 203, "challengeInfoText", kCanNotBuild},
        {"number inside", sealed(optionOfNumber), 203, "challengeSelectInfo,Index 0,a", kCanNotBuild},
        {"number without a name", sealed(namelessOption), 203, "challengeSelectInfo,Index 0,", kCanNotBuild},
        {"null where required", sealed(cResWith("acsTransID", nullptr)), 203, "acsTransID", kCanNotBuild},
        {"list", sealed("[" + cRes().dump() + "]"), 203, "", kCanNotBuild},
        {"no JSON", sealed(cRes().dump() + ","), 0, "", kCanNotBuild},
        {"octets that are no text", sealed(R"({"messageType":"CRes","a":")" + std::string("\xFF\"}")), 0, "",
         kCanNotBuild},
        {"unknown screen", sealed(cResWith("acsUiType", "06")), 203, "acsUiType",
         "Got error on CRes validation."},
    };
    for (const AnswerRow& row : rows) {
        SCOPED_TRACE(row.name);
        answer(row.body);
        std::optional<Erro> expected;
        if (row.code != 0) expected = erro(row.code, row.details);
        EXPECT_EQ(send(), (CReqSendingResult{.erro = expected, .errorDescription = row.text}));
        EXPECT_EQ(timeouts(), 0);
    }

    ChallengeParameters incomplete = parameters();
    incomplete.acsTransactionId = std::nullopt;
    setParameters(incomplete);
    for (const AnswerRow& row : rows) {
        SCOPED_TRACE(row.name);
        answer(row.body);
        EXPECT_EQ(send(), CReqSendingResult{.errorDescription = row.text});
    }
}

TEST_F(ExchangeTest, TimesOfAnswersDecideAboutResultAndTimer) {
    const CReqSendingResult accepted{.cres = CRes::decode(cRes().dump())};
    const CReqSendingResult empty{.erro = erro(101, "Invalid Message Type"),
                                  .errorDescription = "Receive empty cRes Data."};
    const Bytes body = toBytes(sealed(cRes()));
    const struct {
        const char* name;
        ScriptedAnswer answer;
        CReqSendingResult expected;
        double seconds;
        bool timesOut;
    } rows[] = {
        {"before the timer", {body, {}, Seconds{9.999}}, accepted, 9.999, false},
        {"after the timer", {body, {}, Seconds{10.001}}, accepted, 10.001, true},
        {"just in time", {body, {}, Seconds{11.999}}, accepted, 11.999, true},
        {"just too late", {body, {}, Seconds{12.001}}, empty, 12, true},
        {"never", {{}, {}, std::nullopt}, empty, 12, true},
        {"neither body nor error", {{}, {}, Seconds{1}}, empty, 1, false},
        {"transport failure", {body, "refused", Seconds{1}}, {.errorDescription = "refused"}, 1, true},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        answer(row.answer);
        const Seconds start = platform_.now();
        EXPECT_EQ(send(), row.expected);
        EXPECT_NEAR((platform_.now() - start).count(), row.seconds, 1e-6);
        EXPECT_EQ(timeouts(), row.timesOut ? 1 : 0);
        EXPECT_EQ(platform_.leftAlive(), LeftAlive{});
    }
}

TEST_F(ExchangeTest, InterruptionDropsWhateverComesAndLeavesTheTimer) {
    const ScriptedAnswer rows[] = {{toBytes(sealed(cRes())), {}, Seconds{6}}, {{}, "refused", Seconds{6}}};
    platform_.dispatch().globalQueue().asyncAfter(
        Seconds{5}, std::make_shared<DispatchWorkItem>([this] { exchange_->interrupt(); }));
    for (const ScriptedAnswer& scripted : rows) {
        answer(scripted);
        EXPECT_EQ(send(), CReqSendingResult{.errorDescription = "Challenge interrupted."});
        EXPECT_EQ(timeouts(), 1);
    }
}

TEST_F(ExchangeTest, TimerOfAnExchangeThatHasGoneDoesNothing) {
    answer({{}, "refused", Seconds{1}});
    static_cast<void>(send());
    exchange_ = nullptr;
    EXPECT_EQ(platform_.leftAlive().timers, 1U);
    EXPECT_EQ(timeouts(), 0);
    EXPECT_EQ(platform_.leftAlive(), LeftAlive{});
}

TEST_F(ExchangeTest, ErrorGoesToTheAcsInTheClear) {
    exchange_->sendErroToAcs(erro(302, "a"));
    const auto& request = platform_.network().exchanges().at(0).request;
    EXPECT_EQ(request.url.absoluteString(), "https://acs.example/challenge");
    EXPECT_EQ(request.httpHeaderFields.at(0).second, "application/jose;charset=UTF-8");
    EXPECT_EQ(Erro::decode(request.httpBody.value()), erro(302, "a"));
}

} // namespace
} // namespace korvane
