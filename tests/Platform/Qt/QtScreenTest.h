#pragma once

#include "Platform/Qt/KorvaneWindow.h"
#include "Platform/Qt/QtPlatform.h"
#include "tests/Ui/ScreenSupport.h"

#include <QPointingDevice>

#include <array>
#include <functional>
#include <set>

namespace korvane {

/// A telephone as it is held, with what its system covers.
struct Telephone {
    const char* name;
    CGSize size;
    UIEdgeInsets safeArea;
};

constexpr std::array<Telephone, 4> kTelephones{{{"320 x 568", {320, 568}, {20, 0, 0, 0}},
                                                {"390 x 844", {390, 844}, {47, 0, 34, 0}},
                                                {"568 x 320", {568, 320}, {}},
                                                {"844 x 390", {844, 390}, {0, 47, 21, 47}}}};

template <class... Views>
bool isAny(const UIView& view) {
    return ((dynamic_cast<const Views*>(&view) != nullptr) || ...);
}

/// A telephone that is drawn: screens come over its root in a challenge's stack, and
/// fingers touch the window.
class QtScreenTest : public testing::Test {
protected:
    QtScreenTest();
    ~QtScreenTest() override;

    void resize(const Telephone& to);
    /// Makes the screens of a response and shows the one for the present orientation.
    std::shared_ptr<ChallengeViewController> show(const CRes& cRes);
    template <class Screen>
    std::shared_ptr<Screen> showAs(const CRes& cRes) {
        return std::dynamic_pointer_cast<Screen>(show(cRes));
    }

    /// Runs the event loop until something holds.
    /// @return whether it did, within ten seconds.
    [[nodiscard]] static bool waitFor(const std::function<bool()>& condition);
    /// Runs the event loop until nothing is due any more: no job, no layout, no movement.
    void settle();

    /// The views that are seen; controls, keys and texts count as one, whatever they are made of.
    [[nodiscard]] static std::vector<const UIView*> leavesOf(const UIView& view);
    /// The texts that a view shows, as they are drawn.
    [[nodiscard]] std::vector<QQuickItem*> textsOf(const UIView& view) const;
    /// A view's middle, in the scene.
    [[nodiscard]] QPoint middleOf(const UIView& view) const;
    /// One finger comes down, moves or goes up, as an event of the window.
    void finger(int identifier, QEventPoint::State state, QPoint place);
    void tap(const UIView& view);

    QtPlatform platform;
    KorvaneWindow scene;
    KorvaneHost* const host = &scene.host();
    std::unique_ptr<QPointingDevice> glass;
    std::set<int> fingersDown;
    /// The look of the screens that are shown from now on; null for the library's own.
    std::shared_ptr<const UiCustomization> customization;
    std::shared_ptr<ChallengeRootNavigationController> stack;
    std::shared_ptr<FakeActions> actions = std::make_shared<FakeActions>();
};

} // namespace korvane
