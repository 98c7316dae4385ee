#pragma once

#include "Platform/Export.h"
#include "Platform/View/UIFocusSystem.h"
#include "Platform/View/UIView.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace korvane {

class UIViewController;

/// The root of a tree of views: it takes touches, lays itself out before it is drawn, and tells its renderer
/// that there is something new. Main queue only.
class KORVANE_EXPORT UIWindow : public UIView {
public:
    /// As large as the main screen.
    UIWindow();
    explicit UIWindow(const CGRect& frame);
    ~UIWindow() override;

    [[nodiscard]] UIViewKind kind() const noexcept override { return UIViewKind::window; }

    [[nodiscard]] const std::shared_ptr<UIViewController>& rootViewController() const noexcept {
        return root_;
    }
    /// Shows a controller in place of the present one. Null shows none.
    void setRootViewController(std::shared_ptr<UIViewController> controller);
    /// Shows the window and makes it the application's key window, which holds it from then on.
    void makeKeyAndVisible();

    // What the window is shown on, from the renderer.

    /// How far the system covers the window.
    [[nodiscard]] UIEdgeInsets safeAreaInsets() const override { return safeArea_; }
    void setSafeAreaInsets(const UIEdgeInsets& insets);
    [[nodiscard]] const UITraitCollection& traits() const noexcept { return traits_; }
    void setTraits(const UITraitCollection& traits);

    // Touches, from the renderer.

    /// One finger's news: its number, which is its own while it is down, and its place in the window.
    struct TouchPoint {
        std::uint64_t identifier = 0;
        UITouchPhase phase = UITouchPhase::began;
        CGPoint location;
    };

    /// News of one moment. Each touched view hears of all its fingers of one phase at once; the phases come
    /// in their order. A finger that comes down twice has gone up unseen: its first coming is cancelled. One
    /// that moves without being down is ignored.
    void sendTouches(const std::vector<TouchPoint>& points);
    void sendTouch(const TouchPoint& point) { sendTouches({point}); }
    /// Takes all fingers away, or those on one view and in it: nobody will hear of their going up.
    void cancelTouches(const UIView* onView = nullptr);
    /// What assistive technology does with a view: a tap in its middle, once it has been brought into sight
    /// and a keyboard that lies over it has gone. What lies over it otherwise keeps the tap from it.
    void press(UIView& view);

    /// Where keys act.
    [[nodiscard]] UIFocusSystem& focusSystem() noexcept { return focus_; }

    // Frames.

    /// Called once when there is something new to draw, and again only after `frameTaken()`. The renderer
    /// calls `layoutIfNeeded()`, reads the tree, and says so.
    void setFrameRequest(std::function<void()> request) { frameRequest_ = std::move(request); }
    void frameTaken() { hasFrameRequest_ = false; }

    /// Every controller's view fills the window, and an input view lies at its foot.
    void layoutSubviews() override;
    /// Where the input view lies, or would lie; empty without one.
    [[nodiscard]] CGRect inputFrame() const;

protected:
    void treeNeedsLayout() override;
    void treeDidChange() override;

private:
    friend class UIApplication;
    friend class UIFocusSystem;

    using Recognizers = std::vector<std::shared_ptr<UIGestureRecognizer>>;

    [[nodiscard]] std::shared_ptr<UITouch> touch(const TouchPoint& point);
    void cancel(const UITouches& touches);
    void hear(UITouchPhase phase, const UITouches& touches);
    void deliver(UITouchPhase phase, const UITouches& touches);
    [[nodiscard]] static Recognizers recognize(const UITouches& touches);
    [[nodiscard]] bool reaches(const UIView& view);
    void showInput(const std::shared_ptr<UIView>& input);
    void layOutInput();
    void becomeVisible();
    void clear();

    std::shared_ptr<UIViewController> root_;
    UIEdgeInsets safeArea_;
    UITraitCollection traits_;
    CGSize sizeOfContent_; // the window's, when its content was last laid out
    UITouches touches_;    // of the fingers that are down
    std::function<void()> frameRequest_;
    bool hasFrameRequest_ = false;
    bool hasLayoutRequest_ = false;
    bool isVisible_ = false;
    bool isInputSized_ = false; // the input view came with a height of its own
    std::shared_ptr<UIView> input_;
    UIFocusSystem focus_{*this};
};

} // namespace korvane
