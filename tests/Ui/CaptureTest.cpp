#include "tests/Ui/ScreenSupport.h"

namespace korvane {
namespace {

class Capture : public ScreenTest {
protected:
    ~Capture() override { isEnablePreventScreenRecording = true; }
    /// Whether the window is covered once a recording has begun or ended.
    [[nodiscard]] bool isCovered(bool isCaptured) {
        platform.script().isCaptured = isCaptured;
        NotificationCenter::defaultCenter().post({UIScreen::capturedDidChangeNotification});
        for (const auto& view : window->subviews())
            for (const auto& inner : view->subviews())
                if (inner->kind() == UIViewKind::visualEffect) return true;
        return false;
    }
};

TEST_F(Capture, ARecordingCoversTheScreensWhileTheSwitchIsOn) {
    platform.script().isCaptured = true;
    show(screenCRes(UiType::OOB));
    EXPECT_TRUE(isCovered(true)) << "from the start";
    EXPECT_FALSE(isCovered(false));
    EXPECT_TRUE(isCovered(true));
    stack->setViewControllers({std::make_shared<UIViewController>()}, UIAnimated::no);
    settle();
    EXPECT_FALSE(isCovered(true)) << "a screen that is gone covers nothing";
    isEnablePreventScreenRecording = false;
    show(screenCRes(UiType::OOB));
    EXPECT_FALSE(isCovered(true));
}

} // namespace
} // namespace korvane
