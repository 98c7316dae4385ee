#pragma once

#include "Platform/Dispatch.h"
#include "Platform/Export.h"
#include "Platform/View/UIResponder.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

namespace korvane {

class UIWindow;

enum class UIApplicationState { active, inactive, background };

/// The application as its user sees it: its windows, who is typed into, whether it is in front. One per
/// platform, which its views do not outlive. Main queue only.
class KORVANE_EXPORT UIApplication {
public:
    static constexpr std::string_view willResignActiveNotification =
        "UIApplicationWillResignActiveNotification";
    static constexpr std::string_view didBecomeActiveNotification =
        "UIApplicationDidBecomeActiveNotification";

    /// The one of the process's platform.
    [[nodiscard]] static UIApplication& shared();

    UIApplication() = default;
    UIApplication(const UIApplication&) = delete;
    UIApplication& operator=(const UIApplication&) = delete;

    /// The windows that were made visible, the key window last.
    [[nodiscard]] const std::vector<std::shared_ptr<UIWindow>>& windows() const noexcept { return windows_; }
    /// Null without windows.
    [[nodiscard]] std::shared_ptr<UIWindow> keyWindow() const;
    /// Takes a window off the screen; nobody but its other owners holds it from then on.
    void remove(const std::shared_ptr<UIWindow>& window);

    /// Receives text, or null.
    [[nodiscard]] std::shared_ptr<UIResponder> firstResponder() const { return firstResponder_.lock(); }

    /// How large the user wants text: a factor of fonts' sizes, at first 1. Any thread.
    [[nodiscard]] double textScale() const noexcept { return textScale_; }
    /// Lays out every window anew.
    void setTextScale(double scale);

    // From the renderer, or from what stands for the user.

    [[nodiscard]] UIApplicationState state() const noexcept { return state_; }
    /// The user leaves or comes back: posts the notification of that, once each time.
    void willResignActive();
    void didBecomeActive();
    /// The device was turned: windows take the screen's bounds as they are now, then the device's
    /// notification of its orientation is posted.
    void deviceDidRotate();

    /// Whether a renderer plays animations, so that completions wait for their time. Off without a renderer:
    /// completions run as soon as the main queue comes to them.
    void setPlaysAnimations(bool plays) { playsAnimations_ = plays; }
    /// Whether what draws the views has an engine for web pages; at first it counts as having one. Any thread.
    [[nodiscard]] bool showsPages() const noexcept { return showsPages_; }
    void setShowsPages(bool shows) { showsPages_ = shows; }
    /// Runs work from the main queue when an animation of that length has been played.
    void afterAnimation(Seconds length, std::function<void()> work) const;

    /// The length of the platform's own changes of screens.
    static constexpr Seconds kTransition{0.35};

private:
    friend class Platform;
    friend class UIResponder;
    friend class UITextField;
    friend class UIWindow;

    void makeKey(const std::shared_ptr<UIWindow>& window);
    void setFirstResponder(const std::shared_ptr<UIResponder>& responder);
    /// Shows what a responder wants to be typed on; null, or one that wants nothing, hides it.
    void showInput(const UIResponder* responder);
    /// The end of the platform comes: nothing is shown any more.
    void end();

    std::vector<std::shared_ptr<UIWindow>> windows_;
    std::weak_ptr<UIResponder> firstResponder_;
    UIApplicationState state_ = UIApplicationState::active;
    std::atomic<double> textScale_{1};
    std::atomic<bool> showsPages_{true};
    bool playsAnimations_ = false;
    std::weak_ptr<UIWindow> inputWindow_; // shows an input view
};

} // namespace korvane
