#pragma once

#include "Platform/Qt/KorvaneWindow.h"
#include "Platform/Qt/QtPlatform.h"
#include "tests/Ui/Gallery.h"

#include <QPointingDevice>

#include <functional>
#include <set>

namespace korvane {

/// A telephone that is drawn: screens come over its root in a challenge's stack, and
/// fingers touch the window.
class QtScreenTest : public testing::Test {
protected:
    explicit QtScreenTest(CGSize screen = {390, 844});
    ~QtScreenTest() override;

    void resize(const GalleryScreen& to);
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
    std::shared_ptr<ChallengeRootNavigationController> stack;
    std::shared_ptr<FakeActions> actions = std::make_shared<FakeActions>();
};

} // namespace korvane
