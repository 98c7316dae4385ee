#include "Ui/Screens/ChallengeOobNativeViewController.h"
#include "Ui/Screens/ChallengeWebViewController.h"
#include "tests/challenge/ChallengeSupport.h"

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ChallengeActionsTest : public ChallengeTest {
protected:
    [[nodiscard]] std::string completed(const std::string& status) const {
        return "completed(" + lowerId() + ", " + status + ")";
    }
};

/// What an action adds to the request that all have in common.
TEST_F(ChallengeActionsTest, RequestsCarryTheirActionAndCount) {
    const auto y = YesNoSelector::Y;
    const struct {
        const char* name;
        std::function<void(Transaction&)> act;
        std::function<void(CReq&)> fill;
    } rows[] = {
        {"resend", [](Transaction& t) { t.resendOtp(); }, [&](CReq& c) { c.resendChallenge = y; }},
        {"data", [](Transaction& t) { t.sendChallengeDataToAcs("1234", std::nullopt); },
         [](CReq& c) { c.challengeDataEntry = "1234"; }},
        {"data and whitelisting", [](Transaction& t) { t.sendChallengeDataToAcs("a,b", YesNoSelector::N); },
         [](CReq& c) {
             c.challengeDataEntry = "a,b";
             c.whitelistingDataEntry = YesNoSelector::N;
         }},
        {"nothing entered", [](Transaction& t) { t.sendChallengeDataToAcs("", std::nullopt); },
         [&](CReq& c) { c.challengeNoEntry = y; }},
        {"continue", [](Transaction& t) { t.sendOobContinue(YesNoSelector::Y); },
         [&](CReq& c) {
             c.oobContinue = true;
             c.whitelistingDataEntry = y;
         }},
        {"page", [](Transaction& t) { t.sendHtmlChallengeDataToAcs("a=1"); },
         [](CReq& c) { c.challengeHTMLDataEntry = "a=1"; }},
        {"cancel", [](Transaction& t) { t.cancelChallenge(); },
         [](CReq& c) { c.challengeCancel = ChallengeCancelationInd::CARDHOLDER_SELECTED_CANCEL; }},
    };
    create();
    parameters->setTreeDSRequestorAppURL("https://shop.example/back");
    start({SimulatedAcs::showing("01")});
    acs.answers = Answers(std::size(rows), SimulatedAcs::showing("01"));
    CReq expected = acs.requests().at(0);
    EXPECT_EQ(expected.threeDSRequestorAppURL, "https://shop.example/back");
    int count = 0;
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        row.act(*peer.transaction);
        CReq wanted = expected;
        wanted.sdkCounterStoA = "00" + std::to_string(++count);
        row.fill(wanted);
        EXPECT_EQ(acs.requests().back(), wanted);
        runFor(1);
    }
    EXPECT_EQ(peer.transaction->challengeData(), "");
    EXPECT_THAT(heard(), ElementsAre("cancelled"));
}

TEST_F(ChallengeActionsTest, ScreensFollowEachOtherToTheEnd) {
    startWithScreens({"01", "02", "03", "04"});
    submit("1234");
    runFor(3);
    const auto single = top<ChallengeSingleSelectNativeViewController>();
    window->layoutIfNeeded();
    tap(*std::static_pointer_cast<ChallengeTableViewCell>(single->tableView->visibleCells().at(1))->button());
    tap(*single->nextButton.get());
    runFor(3);
    tap(*top<ChallengeMultiSelectNativeViewController>()->nextButton.get());
    runFor(3);
    tap(*top<ChallengeOobNativeViewController>()->continueButton.get());
    runFor(3);
    EXPECT_THAT(heard(), ElementsAre(completed("Y")));
    EXPECT_EQ(root(), nullptr);
    ASSERT_EQ(acs.requests().size(), 5U);
    EXPECT_EQ(acs.requests()[2].challengeDataEntry, "mail");
    EXPECT_EQ(acs.requests()[3].challengeNoEntry, YesNoSelector::Y);
    EXPECT_EQ(acs.requests()[4].sdkCounterStoA, "004");
}

TEST_F(ChallengeActionsTest, EveryStatusEndsTheChallengeAndUnknownOnesAsFailures) {
    for (const std::string status : {"Y", "N", "U", "A", "C", "D", "R", "I"}) {
        create();
        start({SimulatedAcs::showing("01"), SimulatedAcs::endingWith(status)});
        submit("1234");
        runFor(5);
        EXPECT_EQ(heard().back(), completed(status));
        EXPECT_EQ(root(), nullptr);
    }
    EXPECT_EQ(heard().size(), 8U);
}

TEST_F(ChallengeActionsTest, LaterFailuresEndTheChallenge) {
    const std::string generic = "The operation couldn\u2019t be completed. (Korvane.SdkError error ";
    const struct {
        const char* name;
        const char* first;
        SimulatedAcs::Answer answer;
        std::string heard;
        std::vector<std::string> codes;
    } rows[] = {
        {"transport",
         "01",
         [](SimulatedAcs&) {
             return ScriptedAnswer{{}, "reset"};
         },
         "runtimeError(-1, reset)",
         {}},
        {"Erro received",
         "01",
         [](SimulatedAcs&) { return ScriptedAnswer{toBytes(R"({"messageType":"Erro","errorCode":"402"})")}; },
         "protocolError(ID, 402, No details)",
         {}},
        {"Erro made",
         "01",
         [](SimulatedAcs& played) {
             JSON json = played.screen("01");
             json["acsCounterAtoS"] = "009";
             return played.respond(json);
         },
         "protocolError(ID, 302, acsCounterAtoS)",
         {"302"}},
        {"page then screen",
         "05",
         SimulatedAcs::showing("01"),
         "runtimeError(-1, Can not create challenge VC: " + generic + "1.))",
         {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        receiver->heard.clear();
        create();
        start({SimulatedAcs::showing(row.first), row.answer});
        const std::size_t before = acs.errors().size();
        peer.transaction->sendChallengeDataToAcs("1", std::nullopt);
        runFor(5);
        std::string expected = row.heard;
        if (const auto at = expected.find("ID"); at != std::string::npos) expected.replace(at, 2, id());
        EXPECT_THAT(heard(), ElementsAre(expected));
        EXPECT_EQ(acs.errors().size() - before, row.codes.size());
        EXPECT_EQ(root(), nullptr);
        runFor(3600);
        EXPECT_EQ(heard().size(), 1U);
    }
}

TEST_F(ChallengeActionsTest, PageChangesInPlaceAndANativeFlowTakesAPage) {
    startWithScreens({"05", "05"});
    const auto page = top<ChallengeWebViewController>();
    page->externalAppWasPresented = true;
    peer.transaction->sendHtmlChallengeDataToAcs("a=1");
    runFor(1);
    EXPECT_EQ(top<ChallengeWebViewController>(), page);
    EXPECT_EQ(page->challengeWebView->loadCount(), 2);
    EXPECT_FALSE(page->externalAppWasPresented);
    host->dismiss(UIAnimated::no);
    runFor(1);

    create();
    startWithScreens({"01", "05"});
    submit("1234");
    runFor(3);
    expectTop<ChallengeWebViewController>();
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(ChallengeActionsTest, CancelWaitsForTheAcsWhichMayNotAnswer) {
    start({SimulatedAcs::showing("01")});
    const Seconds before = platform.now();
    peer.transaction->cancelChallenge();
    EXPECT_EQ((platform.now() - before).count(), 12);
    EXPECT_THAT(heard(), IsEmpty());
    runFor(1);
    EXPECT_EQ(acs.errors().size(), 0U) << "what came of the exchange is dropped";
}

/// The time of one response takes the screen away; there is then nothing left whose going could be told.
TEST_F(ChallengeActionsTest, SilentAcsLaterOnTakesTheScreenAwayAndHearsOfIt) {
    startWithScreens({"04"});
    acs.answers.clear();
    tap(*top<ChallengeOobNativeViewController>()->continueButton.get());
    runFor(10.5);
    EXPECT_NE(root(), nullptr);
    runFor(1);
    EXPECT_EQ(root(), nullptr);
    runFor(3600);
    EXPECT_THAT(errorCodes(), ElementsAre("101"));
    EXPECT_THAT(heard(), IsEmpty());
}

TEST_F(ChallengeActionsTest, CounterGrowsToFourCharacters) {
    startWithScreens({"01"});
    acs.answers = Answers(10, SimulatedAcs::showing("01"));
    for (int count = 0; count < 10; ++count) {
        submit("1");
        runFor(3);
    }
    EXPECT_EQ(acs.requests().back().sdkCounterStoA, "0010");
    expectTop<ChallengeTextNativeViewController>();
}

} // namespace
} // namespace korvane
