#pragma once

#include "Platform/Export.h"
#include "Platform/View/UIView.h"

#include <functional>
#include <vector>

namespace korvane {

/// What a control reports: a finger that came down on it has gone up on it.
enum class ControlEvent { touchUpInside };

/// What a control looks like; the first that holds of disabled, highlighted, selected counts.
enum class ControlState { normal, highlighted, selected, disabled };

inline constexpr std::size_t kControlStates = 4;

/// A view that reports what is done to it. Main queue only.
class KORVANE_EXPORT UIControl : public UIView {
public:
    using Action = std::function<void(UIControl& sender)>;

    /// Adds an action to an event. It must not hold the control or what holds it (see `weakly`).
    void addTarget(ControlEvent event, Action action);
    void addTarget(ControlEvent event, std::function<void()> action);
    /// Removes all actions of an event; a cell that is used again does so before it adds its own.
    void removeTargets(ControlEvent event);
    /// Performs the actions of an event in the order in which they were added.
    void sendActions(ControlEvent event);

    [[nodiscard]] bool isEnabled() const noexcept { return isEnabled_; }
    void setEnabled(bool isEnabled);
    [[nodiscard]] bool isSelected() const noexcept { return isSelected_; }
    void setSelected(bool isSelected);
    [[nodiscard]] bool isHighlighted() const noexcept { return isHighlighted_; }
    /// Overrides call this one and then look at `isHighlighted()`.
    virtual void setHighlighted(bool isHighlighted);
    [[nodiscard]] ControlState state() const noexcept;
    /// Whether a finger is on the control.
    [[nodiscard]] bool isTracking() const noexcept { return isTracking_; }

    [[nodiscard]] bool canBecomeFocused() const override { return isEnabled_ && isUserInteractionEnabled(); }
    [[nodiscard]] std::shared_ptr<UIView> hitTest(CGPoint point) override;
    void touchesBegan(const UITouches& touches) override;
    void touchesMoved(const UITouches& touches) override;
    void touchesEnded(const UITouches& touches) override;
    void touchesCancelled(const UITouches& touches) override;

    [[nodiscard]] UIAccessibilityState accessibilityState() const override {
        return {isEnabled_, isSelected_, std::nullopt};
    }

protected:
    /// A control that is shown no more has lost the finger that was on it.
    void didMoveToWindow() override;
    /// The state is another one.
    virtual void stateDidChange() {}

private:
    struct Target {
        ControlEvent event;
        Action action;
    };

    void setState(bool& flag, bool value);
    [[nodiscard]] bool isWithinReach(const UITouches& touches) const;

    std::vector<Target> targets_;
    bool isEnabled_ = true;
    bool isSelected_ = false;
    bool isHighlighted_ = false;
    bool isTracking_ = false;
};

} // namespace korvane
