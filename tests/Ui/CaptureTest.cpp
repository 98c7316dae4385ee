#include "tests/Ui/ScreenSupport.h"

namespace korvane {
namespace {

class Capture : public ScreenTest {
protected:
    ~Capture() override {
        isEnablePreventScreenCapture = true;
        isEnablePreventScreenRecording = true;
    }
    void setCaptured(bool isCaptured) {
        platform.script().isCaptured = isCaptured;
        NotificationCenter::defaultCenter().post({UIScreen::capturedDidChangeNotification});
    }
    [[nodiscard]] bool isCovered() const {
        for (const auto& view : window->subviews())
            for (const auto& inner : view->subviews())
                if (inner->kind() == UIViewKind::visualEffect) return true;
        return false;
    }
    static double maskOf(const UIView& view) {
        return view.layer().value(std::string(CALayer::kCaptureMask)).value_or(0);
    }
};

TEST_F(Capture, ScreensLeaveThemselvesOutOfPicturesWhileTheSwitchIsOn) {
    EXPECT_EQ(maskOf(*show(screenCRes(UiType::OOB))->view()), 18);
    isEnablePreventScreenCapture = false;
    const auto open = show(screenCRes(UiType::OOB));
    EXPECT_EQ(maskOf(*open->view()), 0);
    EXPECT_TRUE(open->prevention.isPreventScreenCapture()) << "the wish is kept all the same";
}

TEST_F(Capture, ARecordingCoversTheScreenAsLongAsItRuns) {
    const auto screen = show(screenCRes(UiType::OOB));
    EXPECT_FALSE(isCovered());
    setCaptured(true);
    EXPECT_TRUE(isCovered());
    setCaptured(false);
    EXPECT_FALSE(isCovered());
    setCaptured(true);
    stack->setViewControllers({std::make_shared<UIViewController>()}, UIAnimated::no);
    settle();
    EXPECT_FALSE(isCovered()) << "a screen that is gone covers nothing";
    setCaptured(true);
    EXPECT_FALSE(isCovered());
}

TEST_F(Capture, AScreenThatAppearsDuringARecordingIsCoveredFromTheStart) {
    platform.script().isCaptured = true;
    const auto screen = show(screenCRes(UiType::OOB));
    EXPECT_TRUE(isCovered());
}

TEST_F(Capture, WithTheSwitchOffARecordingCoversNothing) {
    isEnablePreventScreenRecording = false;
    const auto screen = show(screenCRes(UiType::OOB));
    setCaptured(true);
    EXPECT_FALSE(isCovered());
    EXPECT_TRUE(screen->prevention.isPreventScreenRecording());
}

} // namespace
} // namespace korvane
