#pragma once

#include "Platform/View/UIWindow.h"
#include "Ui/Screens/ChallengeTextNativeViewController.h"
#include "tests/challenge/simulation/Chance.h"

#include <memory>
#include <string>

namespace korvane::simulation {

/// Touches what is on the window, as a finger would.
class Fingers {
public:
    explicit Fingers(UIWindow& window) : window_(window) {}

    /// Touches the middle of a control, or what lies over it there. What is out of sight is scrolled to.
    /// @return whether the control had the touch.
    bool touch(UIView& view, ChallengeViewController& on);

    /// Touches the field, types as many keys of the keyboard, and puts the keyboard away.
    /// @return what the keys say that they type.
    [[nodiscard]] std::string typeKeys(ChallengeTextNativeViewController& on, Chance& chance,
                                       std::size_t count);

private:
    [[nodiscard]] bool reaches(const UIView& view) const;
    void scrollTo(const UIView& view, UIScrollView& scroll) const;
    void tap(CGPoint point);

    UIWindow& window_;
    std::uint64_t finger_ = 0;
};

} // namespace korvane::simulation
