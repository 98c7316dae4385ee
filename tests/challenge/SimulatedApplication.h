#pragma once

#include "Platform/View/UIWindow.h"
#include "Sdk/Service/ThreeDS2Service.h"
#include "Ui/Screens/ChallengeRootNavigationController.h"
#include "tests/support/SimulatedAcs.h"
#include "tests/support/SimulatedPlatform.h"

#include <functional>
#include <string>
#include <vector>

namespace korvane {

/// An application with a window on a simulated telephone, one transaction, and the ACS of its challenge.
class SimulatedApplication {
public:
    explicit SimulatedApplication(std::uint64_t seed = 1,
                                  UIDeviceOrientation held = UIDeviceOrientation::portrait);
    SimulatedApplication(const SimulatedApplication&) = delete;
    SimulatedApplication& operator=(const SimulatedApplication&) = delete;
    ~SimulatedApplication();

    /// Creates the transaction, and the parameters of its challenge.
    void create(const std::string& messageVersion = "2.2.0");
    /// The same with a transaction that was made elsewhere.
    void take(std::shared_ptr<Transaction> made);
    /// Starts the challenge.
    void start(std::int64_t minutes = 5);
    /// How the device is held from now on; nobody is told.
    void hold(UIDeviceOrientation orientation);
    /// The container of the screens, while it stands.
    [[nodiscard]] std::shared_ptr<ChallengeRootNavigationController> root() const {
        return std::dynamic_pointer_cast<ChallengeRootNavigationController>(host->presentedViewController());
    }
    /// The screen that stands, if it is of the type.
    template <class Screen>
    [[nodiscard]] std::shared_ptr<Screen> top() const {
        return root() ? std::dynamic_pointer_cast<Screen>(root()->topViewController()) : nullptr;
    }

    SimulatedPlatform platform;
    SimulatedAcs acs{platform};
    std::shared_ptr<UIWindow> window;
    std::shared_ptr<UIViewController> host;
    std::shared_ptr<ChallengeParameters> parameters;
    std::shared_ptr<Transaction> transaction;
    /// Lives as long as the challenge does: the application itself lets go of it.
    std::weak_ptr<void> receiver;
    /// The endings, each as a text such as "completed(id, Y)".
    std::vector<std::string> heard;
    /// Called with each.
    std::function<void(const std::string& ending)> hear = [this](const std::string& ending) {
        heard.push_back(ending);
    };
    /// Changes of the window's tree that came from another than the main queue.
    std::size_t strayChanges = 0;

private:
    ThreeDS2Service service_;
};

} // namespace korvane
