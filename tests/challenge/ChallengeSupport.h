#pragma once

#include "Platform/View/UIApplication.h"
#include "Platform/View/UIWindow.h"
#include "Sdk/Service/ThreeDS2Service.h"
#include "Ui/Screens/ChallengeSelectNativeViewController.h"
#include "Ui/Screens/ChallengeTextNativeViewController.h"
#include "tests/challenge/EndingReceiver.h"
#include "tests/support/SimulatedAcs.h"
#include "tests/support/SimulatedPlatform.h"
#include "tests/support/TransactionPeer.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

namespace korvane {

/// Keeps what it hears.
class HearingReceiver final : public EndingReceiver {
public:
    std::vector<std::string> heard;

private:
    void hear(std::string ending) override { heard.push_back(std::move(ending)); }
};

/// An application with a window on a simulated telephone, one transaction, and the ACS of its challenge.
class ChallengeTest : public testing::Test {
protected:
    using Answers = std::deque<SimulatedAcs::Answer>;

    ChallengeTest();
    ~ChallengeTest() override;

    /// Creates the transaction, and the parameters of its challenge.
    void create(const std::string& messageVersion = "2.2.0");
    /// Creates it where that has not happened, starts its challenge, and lets three seconds pass.
    void start(Answers answers, std::int64_t minutes = 5);
    /// Starts the challenge with screens of these kinds to follow each other, then its end.
    void startWithScreens(const std::vector<std::string>& uiTypes);

    void runFor(double seconds) { platform.runFor(Seconds{seconds}); }

    [[nodiscard]] std::shared_ptr<ChallengeRootNavigationController> root() const {
        return std::dynamic_pointer_cast<ChallengeRootNavigationController>(host->presentedViewController());
    }
    [[nodiscard]] std::size_t stackDepth() const { return root() ? root()->viewControllers().size() : 0; }
    /// The screen that stands; the test fails if it is none of the type.
    template <class Screen>
    [[nodiscard]] std::shared_ptr<Screen> top() const {
        auto screen = root() ? std::dynamic_pointer_cast<Screen>(root()->topViewController()) : nullptr;
        EXPECT_NE(screen, nullptr) << "the top screen is of another kind";
        return screen;
    }

    template <class Screen>
    void expectTop() const {
        static_cast<void>(top<Screen>());
    }

    static void tap(UIControl& control) { control.sendActions(ControlEvent::touchUpInside); }
    /// Types a code and submits it.
    void submit(const std::string& code);
    void turn(UIDeviceOrientation orientation);

    [[nodiscard]] std::string lowerId() const;
    [[nodiscard]] const std::string& id() const { return peer.sdkTransactionID(); }
    [[nodiscard]] const std::vector<std::string>& heard() const { return receiver->heard; }
    /// The codes of the errors that reached the ACS.
    [[nodiscard]] std::vector<std::string> errorCodes() const;

    SimulatedPlatform platform;
    SimulatedAcs acs{platform};
    std::shared_ptr<UIWindow> window;
    std::shared_ptr<UIViewController> host;
    std::shared_ptr<HearingReceiver> receiver = std::make_shared<HearingReceiver>();
    std::shared_ptr<ChallengeParameters> parameters;
    TransactionPeer peer;

private:
    class Certificates;

    ThreeDS2Service service_;
};

} // namespace korvane
