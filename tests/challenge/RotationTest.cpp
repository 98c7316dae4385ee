#include "tests/challenge/ChallengeSupport.h"

namespace korvane {
namespace {

using enum UIDeviceOrientation;

class Rotation : public ChallengeTest {
protected:
    [[nodiscard]] bool isLandscape() const {
        return std::dynamic_pointer_cast<LandscapeChallengeTextNativeViewController>(
                   root()->topViewController()) != nullptr;
    }
    [[nodiscard]] std::string typed() const { return top<ChallengeTextNativeViewController>()->otp->text(); }
};

TEST_F(Rotation, ScreensChangePlacesAndWhatWasTypedGoesAlong) {
    startWithScreens({"01"});
    const auto portrait = top<ChallengeTextNativeViewController>();
    portrait->otp->setText("123");
    turn(landscapeLeft);
    EXPECT_TRUE(isLandscape());
    EXPECT_EQ(stackDepth(), 2U);
    EXPECT_EQ(typed(), "123");
    top<ChallengeTextNativeViewController>()->otp->setText("1234");
    turn(landscapeRight);
    EXPECT_EQ(stackDepth(), 2U) << "the other side is no other orientation";
    turn(UIDeviceOrientation::portrait);
    EXPECT_EQ(top<ChallengeTextNativeViewController>(), portrait);
    EXPECT_EQ(stackDepth(), 1U);
    EXPECT_EQ(typed(), "1234");
}

TEST_F(Rotation, OtherWaysToHoldTheDeviceChangeNothing) {
    startWithScreens({"01"});
    for (const auto held : {portraitUpsideDown, faceUp, faceDown, unknown, UIDeviceOrientation::portrait}) {
        turn(held);
        EXPECT_EQ(stackDepth(), 1U);
        EXPECT_FALSE(isLandscape());
    }
}

TEST_F(Rotation, FirstScreenIsTheOneThatFitsByThen) {
    platform.script().orientation = landscapeLeft;
    startWithScreens({"01"});
    EXPECT_TRUE(isLandscape());
}

TEST_F(Rotation, TurningDuringAnExchangeIsMadeGoodByTheNextScreen) {
    start({SimulatedAcs::showing("02"),
           [](SimulatedAcs& played) { return played.respond(played.screen("01"), Seconds{5}); }});
    tap(*top<ChallengeSingleSelectNativeViewController>()->nextButton.get());
    peer.transaction->sendChallengeDataToAcs("phone", std::nullopt);
    platform.script().orientation = landscapeLeft;
    UIApplication::shared().deviceDidRotate();
    runFor(1);
    EXPECT_TRUE(isLandscape());
    EXPECT_EQ(stackDepth(), 1U);
}

/// The stack is new, but what is remembered of the old one is not: the next turn pops, and there is nothing
/// to pop.
TEST_F(Rotation, FirstTurnAfterANewScreenMayFindNothingToPop) {
    startWithScreens({"01", "01"});
    turn(landscapeLeft);
    EXPECT_EQ(stackDepth(), 2U);
    submit("1");
    runFor(3);
    EXPECT_EQ(stackDepth(), 1U);
    EXPECT_TRUE(isLandscape());
    turn(UIDeviceOrientation::portrait);
    EXPECT_TRUE(isLandscape());
    turn(landscapeLeft);
    EXPECT_EQ(stackDepth(), 1U) << "this very screen is on top";
    turn(UIDeviceOrientation::portrait);
    EXPECT_FALSE(isLandscape());
}

TEST_F(Rotation, NothingTurnsAfterAnErrorEnded) {
    start({SimulatedAcs::showing("01"), [](SimulatedAcs&) { return ScriptedAnswer{{}, "reset"}; }});
    submit("1");
    runFor(3);
    EXPECT_EQ(heard().size(), 1U);
    turn(landscapeLeft);
    EXPECT_EQ(root(), nullptr);
}

} // namespace
} // namespace korvane
