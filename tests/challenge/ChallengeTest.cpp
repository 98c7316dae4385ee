#include "Platform/View/UIApplication.h"
#include "Ui/Screens/ChallengeOobNativeViewController.h"
#include "Ui/Screens/ChallengeTextNativeViewController.h"
#include "Ui/Screens/ChallengeWebViewController.h"
#include "tests/challenge/SimulatedApplication.h"
#include "tests/support/RecordingLogger.h"

#include <gmock/gmock.h>

#include <array>

namespace korvane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;

/// What the simulation does not look at. How starts, actions, turns and endings follow
/// each other is its part.
class ChallengeTest : public testing::Test, protected SimulatedApplication {
protected:
    /// Whatever a test does, nothing of its challenge lives on.
    ~ChallengeTest() override {
        transaction = nullptr;
        host->dismiss(UIAnimated::no);
        platform.runUntilIdle();
        EXPECT_EQ(platform.leftAlive(), LeftAlive{});
        EXPECT_EQ(strayChanges, 0U);
    }

    /// Starts a challenge of screens of these kinds, to end with a status, and lets three seconds pass.
    void start(const std::vector<std::string>& uiTypes, const std::string& status = "Y",
               const JSON& membersOfFirst = JSON::object()) {
        heard.clear();
        if (!parameters) create();
        acs.answer = [=](SimulatedAcs& played) {
            const std::size_t number = played.requests().size();
            JSON message =
                number <= uiTypes.size() ? played.screen(uiTypes[number - 1]) : played.ending(status);
            if (number == 1) message.update(membersOfFirst);
            return ScriptedAnswer{toBytes(played.sealed(message.dump()))};
        };
        SimulatedApplication::start();
        runFor(3);
    }

    void runFor(double seconds) { platform.runFor(Seconds{seconds}); }

    void goOn() {
        top<ChallengeOobNativeViewController>()->continueButton->sendActions(ControlEvent::touchUpInside);
        runFor(3);
    }
};

constexpr const char* kImages = R"({
    "issuerImage": {"medium": "https://acs.example/1", "high": "https://acs.example/bank", "extraHigh": ""},
    "psImage": {"medium": "", "high": "https://acs.example/scheme", "extraHigh": "https://acs.example/3"}})";

TEST_F(ChallengeTest, FirstScreenComesOverTheApplicationWithBothLogos) {
    acs.imageAnswer.body = toBytes("GIF89a\x01\x01");
    start({"01"}, "Y", JSON::parse(kImages));
    EXPECT_THAT(acs.images(), ElementsAre("https://acs.example/scheme", "https://acs.example/bank"));
    EXPECT_EQ(top<ChallengeTextNativeViewController>()->challengeInfoHeader->text(), "Confirm your payment");
    EXPECT_EQ(root()->modalPresentationStyle(), UIModalPresentationStyle::fullScreen);
    EXPECT_TRUE(root()->navigationBar()->isHidden());
}

TEST_F(ChallengeTest, PageIsLoadedOnceAndTheNextOneChangesInItsPlace) {
    start({"05", "05"});
    const auto page = top<ChallengeWebViewController>();
    EXPECT_EQ(page->challengeWebView->loadCount(), 1);
    page->externalAppWasPresented = true;
    root()->transaction->sendHtmlChallengeDataToAcs("a=1");
    runFor(1);
    EXPECT_EQ(top<ChallengeWebViewController>(), page);
    EXPECT_EQ(page->challengeWebView->loadCount(), 2);
    EXPECT_FALSE(page->externalAppWasPresented);
}

TEST_F(ChallengeTest, PageWithoutAnEngineEndsTheChallengeWithATextThatSaysSo) {
    UIApplication::shared().setShowsPages(false);
    for (const std::vector<std::string>& uiTypes : {std::vector<std::string>{"05"}, {"04", "05"}}) {
        create();
        start(uiTypes);
        if (uiTypes.size() == 2) goOn();
        EXPECT_THAT(heard, ElementsAre("runtimeError(-1, The bank asks with a web page, and this application "
                                       "was built without an engine for them.)"));
        EXPECT_EQ(root(), nullptr);
    }
}

TEST_F(ChallengeTest, ErroAboutTheTimeDoesNotHoldTheMainQueue) {
    acs.errorAnswer = [](const Erro&) { return ScriptedAnswer{std::nullopt, std::nullopt, std::nullopt}; };
    start({"04"});
    runFor(298);
    EXPECT_EQ(acs.errors().size(), 1U);
    EXPECT_EQ(platform.now(), Seconds{301}) << "the test's body stands on the main queue";
}

TEST_F(ChallengeTest, ForeignTextForgesNoLogLineAndIsCutForTheApplication) {
    const std::string text = "Can not recognize transStatus. Got value ";
    const std::string most(1000, 'x');
    const RecordingLogger log;
    for (const auto& [status, logged, told] :
         {std::array<std::string, 3>{"Y\nforged\u009b", "Y\\u000aforged\\u009b", "Y\nforged\u009b"},
          {most + "x", most, most}}) {
        create();
        start({"04"}, status);
        goOn();
        EXPECT_THAT(heard, ElementsAre("runtimeError(-1, " + text + told + ".)"));
        EXPECT_THAT(log.lines(), Contains(EndsWith("processCResResult(_:): " + text + logged + ".")));
    }
    create();
    parameters->setAcsSignedContent("a.b\nforged");
    start({});
    EXPECT_THAT(log.lines(), Contains(EndsWith(": Acs signed content:\na.b\\u000aforged")));
}

} // namespace
} // namespace korvane
