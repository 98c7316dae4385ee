#pragma once

#include "Platform/Dispatch.h"
#include "Platform/NotificationCenter.h"
#include "Platform/SharedField.h"
#include "Platform/UIDevice.h"
#include "Ui/Screens/ChallengeActions.h"
#include "Ui/Screens/ChallengeRootNavigationController.h"
#include "Ui/Screens/ViewControllerContainer.h"

#include <array>
#include <atomic>
#include <functional>
#include <memory>

namespace korvane {

/// The screens of one challenge as they stand: the twins of the last response, the container that is
/// presented, and the turning of the device, which brings one twin in the other's place. Main queue only, but
/// for the handling of a turn, which comes on a serial queue and waits for the main queue; that one never
/// waits for it.
class ScreenStack final : public std::enable_shared_from_this<ScreenStack> {
public:
    /// The device's orientations at which the screens turn.
    static constexpr std::array<UIDeviceOrientation, 3> supportedOrientations{
        UIDeviceOrientation::landscapeLeft, UIDeviceOrientation::landscapeRight,
        UIDeviceOrientation::portrait};

    /// @param mayTurn  asked at each turn, on the queue of the turns.
    explicit ScreenStack(std::function<bool()> mayTurn);
    ScreenStack(const ScreenStack&) = delete;
    ScreenStack& operator=(const ScreenStack&) = delete;
    /// Any queue: what was held of screens goes on the main queue.
    ~ScreenStack();

    /// The twins of a response, which are not shown yet. Null stands for none.
    void hold(std::shared_ptr<const ViewControllerContainer> twins);
    /// The twin that fits the device as it is held, to be shown first: a page has one for all orientations.
    /// @throws SdkError InvalidInputException, logged, if there is none.
    [[nodiscard]] std::shared_ptr<ChallengeViewController> firstController();
    /// The twin of a later response; null if there is none.
    [[nodiscard]] std::shared_ptr<ChallengeViewController> nextController();

    /// Presents the first screen, and hears of turns from now on.
    /// @param transaction  what the screens act on, kept alive by them.
    void present(std::shared_ptr<ChallengeViewController> controller,
                 std::shared_ptr<ChallengeActions> transaction);
    /// Puts a screen in place of whatever stands.
    void replace(const std::shared_ptr<ChallengeViewController>& controller);
    /// Takes the screens away; `completion` comes when they have gone, and never if there are none.
    void dismiss(std::function<void()> completion);
    void hideSpinner();
    void removeOrientationListener() { orientationListener_.reset(); }

    [[nodiscard]] bool stands() const { return !challengeRootVC_.expired(); }
    /// The uppermost screen, if it is one of this class.
    template <class Controller>
    [[nodiscard]] std::shared_ptr<Controller> topController() const {
        const auto root = challengeRootVC_.lock();
        return root ? std::dynamic_pointer_cast<Controller>(root->topViewController()) : nullptr;
    }

private:
    [[nodiscard]] std::shared_ptr<ChallengeViewController> controllerFor(Orientation orientation) const;
    void readOrientation();
    void addOrientationListener();
    void didRotate();
    void handleRotation();
    void swapOrientations();
    void pushOtherOrientation();
    void popOtherOrientation();

    const std::function<bool()> mayTurn_;
    std::weak_ptr<ChallengeRootNavigationController> challengeRootVC_;
    SharedField<const ViewControllerContainer> lastCResViewControllerContainer_;
    /// Whether both orientations' screens are on the stack. New screens do not change it.
    bool allPossibleControllersInStack_ = false;
    std::atomic<Orientation> lastPresentedOrientation_{Orientation::PORTRAIT};
    const std::shared_ptr<DispatchQueue> changeOrientationQueue_;
    NotificationObserver orientationListener_;
};

} // namespace korvane
