#pragma once

#include "Platform/Export.h"
#include "Platform/NotificationCenter.h"
#include "Platform/View/UIViewController.h"
#include "Platform/View/UIVisualEffectView.h"

#include <atomic>
#include <memory>

namespace korvane {

/// Whether challenge screens may leave themselves out of pictures of the screen, and whether they may cover
/// themselves while it is recorded. True unless an application decides otherwise. Any thread.
inline std::atomic<bool> isEnablePreventScreenCapture{true};
inline std::atomic<bool> isEnablePreventScreenRecording{true};

/// Keeps one controller's screen out of pictures and recordings. A member of its controller. Main queue only.
class KORVANE_EXPORT PreventScreenRecording {
public:
    explicit PreventScreenRecording(UIViewController& controller) : controller_(controller) {}
    PreventScreenRecording(const PreventScreenRecording&) = delete;
    PreventScreenRecording& operator=(const PreventScreenRecording&) = delete;
    ~PreventScreenRecording();

    [[nodiscard]] bool isPreventScreenCapture() const noexcept { return isPreventScreenCapture_; }
    /// Hides the controller's view and its stack's bar from pictures, or shows them again, as the switch for
    /// all screens says.
    void setPreventScreenCapture(bool isPrevented);

    [[nodiscard]] bool isPreventScreenRecording() const noexcept { return isPreventScreenRecording_; }
    /// Watches for recordings, the one that is running included, or no more.
    void setPreventScreenRecording(bool isPrevented);

    /// Covers the screen if it is being recorded, else uncovers it.
    void preventScreenRecording();
    /// Covers the window with a blurred picture of itself.
    void blurScreen(UIBlurEffectStyle style = UIBlurEffectStyle::regular);
    void removeBlurScreen();

private:
    UIViewController& controller_;
    bool isPreventScreenCapture_ = false;
    bool isPreventScreenRecording_ = false;
    NotificationObserver observer_;
    std::shared_ptr<UIView> screen_; // what covers the window
};

} // namespace korvane
