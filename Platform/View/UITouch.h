#pragma once

#include "Platform/CGGeometry.h"
#include "Platform/Export.h"
#include "Platform/View/NSObject.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace korvane {

class UIView;
class UIWindow;

enum class UITouchPhase { began, moved, ended, cancelled };

/// One finger from its coming down to its going up: the same object all the while. Main queue only.
class KORVANE_EXPORT UITouch final : public NSObject {
public:
    UITouch(std::uint64_t identifier, CGPoint location, std::weak_ptr<UIView> view)
        : identifier_(identifier), location_(location), view_(std::move(view)) {}

    /// The renderer's number of the finger.
    [[nodiscard]] std::uint64_t identifier() const noexcept { return identifier_; }
    [[nodiscard]] UITouchPhase phase() const noexcept { return phase_; }
    /// The place in a view's coordinates; in the window's without a view.
    [[nodiscard]] CGPoint location(const UIView* inView) const;
    /// The view that was hit when the finger came down, whatever it is over now.
    [[nodiscard]] std::shared_ptr<UIView> view() const { return view_.lock(); }

private:
    friend class UIWindow;

    std::uint64_t identifier_;
    UITouchPhase phase_ = UITouchPhase::began;
    CGPoint location_;
    std::weak_ptr<UIView> view_;
    /// The finger was taken away: its view has heard of the cancellation and hears no more.
    bool isTaken_ = false;
};

using UITouches = std::vector<std::shared_ptr<UITouch>>;

} // namespace korvane
