#pragma once

#include "Platform/View/UITouch.h"

#include <functional>

namespace korvane {

/// Watches the fingers on a view and on everything in it. Main queue only.
class UIGestureRecognizer : public NSObject {
public:
    explicit UIGestureRecognizer(std::function<void()> action) : action_(std::move(action)) {}

    /// Whether the touched view hears of a cancellation in place of the end of what was recognised.
    [[nodiscard]] bool cancelsTouchesInView() const noexcept { return cancelsTouchesInView_; }
    void setCancelsTouchesInView(bool cancels) { cancelsTouchesInView_ = cancels; }
    [[nodiscard]] bool isEnabled() const noexcept { return isEnabled_; }
    void setEnabled(bool isEnabled) { isEnabled_ = isEnabled; }
    /// Leaves fingers out that came down where the filter says no.
    void setShouldReceive(std::function<bool(const UITouch&)> filter) { shouldReceive_ = std::move(filter); }
    [[nodiscard]] bool receives(const UITouch& touch) const {
        return isEnabled_ && (!shouldReceive_ || shouldReceive_(touch));
    }

    /// One finger did something; `view` is the recogniser's.
    /// @return whether that completes the gesture; its action is then to be performed.
    [[nodiscard]] virtual bool recognizes(const UITouch& touch, const UIView& view) = 0;

    /// Runs the action; it may end the recogniser.
    void perform() {
        const auto action = action_;
        if (action) action();
    }

private:
    std::function<void()> action_;
    std::function<bool(const UITouch&)> shouldReceive_;
    bool cancelsTouchesInView_ = true;
    bool isEnabled_ = true;
};

/// A finger that comes down in the view and goes up near where it came down.
class UITapGestureRecognizer final : public UIGestureRecognizer {
public:
    using UIGestureRecognizer::UIGestureRecognizer;

    [[nodiscard]] bool recognizes(const UITouch& touch, const UIView& view) override;

private:
    std::uint64_t finger_ = 0;
    bool isTracking_ = false;
    CGPoint start_;
};

} // namespace korvane
