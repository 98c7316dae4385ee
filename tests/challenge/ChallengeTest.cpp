#include "Platform/LetterCase.h"
#include "Platform/View/UIApplication.h"
#include "Ui/Screens/ChallengeOobNativeViewController.h"
#include "Ui/Screens/ChallengeSelectNativeViewController.h"
#include "Ui/Screens/ChallengeTextNativeViewController.h"
#include "Ui/Screens/ChallengeWebViewController.h"
#include "tests/challenge/EndingReceiver.h"
#include "tests/challenge/SimulatedApplication.h"
#include "tests/support/RecordingLogger.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using testing::_;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;
using enum UIDeviceOrientation;

/// What the simulation does not look at. How starts, actions, turns and endings follow each other is its
/// part.
class ChallengeTest : public testing::Test, protected SimulatedApplication {
protected:
    ChallengeTest() { create(); }

    /// Whatever a test does, nothing of its challenge lives on.
    ~ChallengeTest() override {
        const std::weak_ptr<Transaction> transaction = peer.transaction;
        peer.transaction = nullptr;
        host->dismiss(UIAnimated::no);
        platform.runUntilIdle();
        EXPECT_TRUE(transaction.expired());
        EXPECT_EQ(platform.leftAlive(), LeftAlive{});
        EXPECT_EQ(strayChanges, 0U);
    }

    /// Starts the challenge and lets three seconds pass.
    void start(std::deque<SimulatedAcs::Answer> answers) {
        acs.answers = std::move(answers);
        peer.transaction->doChallenge(parameters, receiver_, 5);
        runFor(3);
    }
    /// The same with screens of these kinds to follow each other, then the end.
    void startWithScreens(const std::vector<std::string>& uiTypes) {
        std::deque<SimulatedAcs::Answer> answers;
        for (const std::string& uiType : uiTypes)
            answers.push_back(SimulatedAcs::showing(uiType));
        answers.push_back(SimulatedAcs::endingWith("Y"));
        start(std::move(answers));
    }

    void runFor(double seconds) { platform.runFor(Seconds{seconds}); }

    /// The screen that stands; the test fails if it is none of the type.
    template <class Screen>
    [[nodiscard]] std::shared_ptr<Screen> top() const {
        auto screen = root() ? std::dynamic_pointer_cast<Screen>(root()->topViewController()) : nullptr;
        EXPECT_NE(screen, nullptr) << "the top screen is of another kind";
        return screen;
    }

    void tap(UIControl& control) {
        control.sendActions(ControlEvent::touchUpInside);
        runFor(3);
    }
    void turn(UIDeviceOrientation orientation) {
        hold(orientation);
        UIApplication::shared().deviceDidRotate();
        runFor(0.5);
    }

    std::vector<std::string> heard;

private:
    std::shared_ptr<EndingReceiver> receiver_ =
        std::make_shared<EndingReceiver>([this](std::string ending) { heard.push_back(std::move(ending)); });
};

JSON images(const std::string& name) {
    const std::string url = "https://acs.example/" + name;
    return JSON::object({{"medium", url + "-medium.png"},
                         {"high", url + "-high.png"},
                         {"extraHigh", url + "-extraHigh.png"}});
}

TEST_F(ChallengeTest, FirstScreenComesOverTheApplicationWithBothLogos) {
    acs.imageAnswer.body = toBytes("GIF89a\x01\x01");
    start({[](SimulatedAcs& played) {
        JSON json = played.screen("01");
        json["issuerImage"] = images("bank");
        json["psImage"] = images("scheme");
        return played.respond(json);
    }});
    EXPECT_THAT(acs.images(),
                ElementsAre("https://acs.example/scheme-high.png", "https://acs.example/bank-high.png"));
    EXPECT_EQ(top<ChallengeTextNativeViewController>()->challengeInfoHeader->text(), "Confirm your payment");
    EXPECT_EQ(root()->modalPresentationStyle(), UIModalPresentationStyle::fullScreen);
    EXPECT_TRUE(root()->isNavigationBarHidden());
    EXPECT_THAT(heard, IsEmpty());
}

/// The screens keep the transaction, and let go of it at the end, long before the challenge's time is over.
TEST_F(ChallengeTest, ScreensFollowEachOtherToTheEndAndKeepTheTransaction) {
    startWithScreens({"01", "02", "03", "04"});
    const std::string id = lowercased(peer.sdkTransactionID());
    const std::weak_ptr<Transaction> transaction = std::exchange(peer.transaction, nullptr);
    const auto text = top<ChallengeTextNativeViewController>();
    text->otp->setText("1234");
    tap(*text->submitButton.get());
    const auto single = top<ChallengeSingleSelectNativeViewController>();
    window->layoutIfNeeded();
    tap(*std::static_pointer_cast<ChallengeTableViewCell>(single->tableView->visibleCells().at(1))->button());
    tap(*single->nextButton.get());
    ASSERT_FALSE(transaction.expired());
    EXPECT_EQ(transaction.lock()->challengeData(), "mail");
    tap(*top<ChallengeMultiSelectNativeViewController>()->nextButton.get());
    tap(*top<ChallengeOobNativeViewController>()->continueButton.get());
    EXPECT_THAT(heard, ElementsAre("completed(" + id + ", Y)"));
    EXPECT_EQ(root(), nullptr);
    ASSERT_EQ(acs.requests().size(), 5U);
    EXPECT_EQ(acs.requests()[2].challengeDataEntry, "mail");
    EXPECT_EQ(acs.requests()[3].challengeNoEntry, YesNoSelector::Y);
    EXPECT_EQ(acs.requests()[4].sdkCounterStoA, "004");
}

TEST_F(ChallengeTest, PageIsLoadedOnceAndTheNextOneChangesInItsPlace) {
    startWithScreens({"05", "05"});
    const auto page = top<ChallengeWebViewController>();
    EXPECT_EQ(page->challengeWebView->loadCount(), 1);
    page->externalAppWasPresented = true;
    peer.transaction->sendHtmlChallengeDataToAcs("a=1");
    runFor(1);
    EXPECT_EQ(top<ChallengeWebViewController>(), page);
    EXPECT_EQ(page->challengeWebView->loadCount(), 2);
    EXPECT_FALSE(page->externalAppWasPresented);
}

TEST_F(ChallengeTest, TimeoutTakesTheScreenAwayAndIsLogged) {
    startWithScreens({"02"});
    const RecordingLogger log;
    runFor(296);
    EXPECT_THAT(heard, IsEmpty());
    runFor(2);
    EXPECT_THAT(heard, ElementsAre("timedout"));
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
}

TEST_F(ChallengeTest, ChallengeThatFailedIsStartedAnewAndEnds) {
    const std::string content = std::exchange(parameters->acsSignedContent, "no content").value();
    startWithScreens({"04"});
    ASSERT_THAT(heard, ElementsAre(StartsWith("runtimeError(-1, Can not get acsURL")));
    parameters->setAcsSignedContent(content);
    startWithScreens({"04"});
    tap(*top<ChallengeOobNativeViewController>()->continueButton.get());
    EXPECT_THAT(heard, ElementsAre(_, EndsWith(", Y)")));
    EXPECT_EQ(root(), nullptr);
}

/// Holds the work of the challenge's timer up, which writes a line before it tells of the time.
class HoldingLogger final : public IKorvaneLogger {
public:
    HoldingLogger(Dispatch& dispatch, Seconds time) : gate_(dispatch.makeSemaphore(0)), time_(time) {}

    void log(const std::string& message, const char*, const char*, unsigned) override {
        if (message.starts_with("Do challenge")) static_cast<void>(gate_->wait(time_));
    }

private:
    std::shared_ptr<DispatchSemaphore> gate_;
    Seconds time_;
};

/// The answer comes half a second after the timer's work has begun, and the screens take 0.35 s to go.
TEST_F(ChallengeTest, TimeThatIsOverBesideTheEndingIsNotToldAsWell) {
    UIApplication::shared().setPlaysAnimations(true);
    for (const double held : {0.7, 2.0}) {
        SCOPED_TRACE(held);
        heard.clear();
        create();
        startWithScreens({"04"});
        Logger::shared().setDebug(std::make_shared<HoldingLogger>(platform.dispatch(), Seconds{held}));
        runFor(296.5);
        tap(*top<ChallengeOobNativeViewController>()->continueButton.get());
        runFor(3);
        Logger::shared().setDebug(nullptr);
        EXPECT_THAT(heard, ElementsAre(EndsWith(", Y)")));
        EXPECT_THAT(acs.errors(), IsEmpty());
    }
    UIApplication::shared().setPlaysAnimations(false);
}

TEST_F(ChallengeTest, ErroAboutTheTimeDoesNotHoldTheMainQueue) {
    acs.errorAnswer = [](const Erro&) { return ScriptedAnswer{std::nullopt, std::nullopt, std::nullopt}; };
    startWithScreens({"04"});
    runFor(298);
    EXPECT_THAT(heard, ElementsAre("timedout"));
    EXPECT_EQ(acs.errors().size(), 1U);
    EXPECT_EQ(platform.now(), Seconds{301}) << "the test's body stands on the main queue";
}

TEST_F(ChallengeTest, ForeignTextForgesNoLogLineAndIsCutForTheApplication) {
    const struct {
        std::string status;
        std::string logged;
        std::string told;
    } rows[] = {
        {"Y\nforged\u009b", "Y\\u000aforged\\u009b", "Y\nforged\u009b"},
        {std::string(1001, 'x'), std::string(1000, 'x'), std::string(1000, 'x')},
    };
    const std::string text = "Can not recognize transStatus. Got value ";
    for (const auto& row : rows) {
        heard.clear();
        create();
        const RecordingLogger log;
        start({SimulatedAcs::showing("04"), SimulatedAcs::endingWith(row.status)});
        tap(*top<ChallengeOobNativeViewController>()->continueButton.get());
        EXPECT_THAT(heard, ElementsAre("runtimeError(-1, " + text + row.told + ".)"));
        EXPECT_THAT(log.lines(), Contains(EndsWith("processCResResult(_:): " + text + row.logged + ".")));
    }
    heard.clear();
    create();
    const RecordingLogger log;
    parameters->setAcsSignedContent("a.b\nforged");
    start({});
    EXPECT_THAT(log.lines(), Contains(EndsWith(": Acs signed content:\na.b\\u000aforged")));
}

TEST_F(ChallengeTest, TurnsChangePlacesOfTheSameTwoScreensAndWhatWasTypedGoesAlong) {
    startWithScreens({"01"});
    const auto upright = top<ChallengeTextNativeViewController>();
    upright->otp->setText("123");
    for (const auto held : {portraitUpsideDown, faceUp, faceDown, unknown, portrait}) {
        turn(held);
        EXPECT_EQ(top<ChallengeTextNativeViewController>(), upright);
    }
    turn(landscapeLeft);
    const auto lying = top<LandscapeChallengeTextNativeViewController>();
    EXPECT_EQ(lying->otp->text(), "123");
    lying->otp->setText("1234");
    turn(landscapeRight);
    EXPECT_EQ(top<LandscapeChallengeTextNativeViewController>(), lying);
    turn(portrait);
    EXPECT_EQ(top<ChallengeTextNativeViewController>(), upright);
    EXPECT_EQ(upright->otp->text(), "1234");
}

} // namespace
} // namespace korvane
