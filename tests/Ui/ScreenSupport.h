#pragma once

#include "Platform/NotificationCenter.h"
#include "Platform/View/UIApplication.h"
#include "Platform/View/UIWindow.h"
#include "Ui/Screens/ChallengeRootNavigationController.h"
#include "Ui/Screens/ChallengeTextNativeViewController.h"
#include "Ui/Screens/VCFactory.h"
#include "tests/support/RecordingLogger.h"
#include "tests/support/SimulatedPlatform.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

namespace korvane {

/// A transaction that only keeps what it was asked for, each as "operation(values) on queue".
class FakeActions final : public ChallengeActions {
public:
    void resendOtp() override { add("resendOtp()"); }
    void sendChallengeDataToAcs(const std::string& data, std::optional<YesNoSelector> whitelisting) override {
        add("data(" + data + answer(whitelisting) + ")");
    }
    void sendOobContinue(std::optional<YesNoSelector> whitelisting) override {
        add("oobContinue(" + answer(whitelisting) + ")");
    }
    void sendHtmlChallengeDataToAcs(const std::string& data) override { add("html(" + data + ")"); }
    void cancelChallenge() override { add("cancel()"); }
    void sendRuntimeErrorToApp(const std::string& text) override { add("runtimeError(" + text + ")"); }
    [[nodiscard]] std::shared_ptr<SpinnerProducerProtocol> spinnerProducer() const override {
        return producer;
    }

    std::vector<std::string> calls;
    std::shared_ptr<SpinnerProducerProtocol> producer;

private:
    static std::string answer(std::optional<YesNoSelector> whitelisting) {
        return whitelisting ? "/" + std::string(rawValue(*whitelisting)) : "";
    }
    void add(const std::string& call) {
        const bool isMain = Platform::current().dispatch().mainQueue().isCurrent();
        calls.push_back(call + (isMain ? " on main" : " on global"));
    }
};

/// Responses with everything that a kind of screen can show, and with the longest texts.
[[nodiscard]] CRes screenCRes(UiType kind);
[[nodiscard]] CRes longCRes(UiType kind);

/// A text in Base64URL, as the ACS sends pages.
[[nodiscard]] std::string encodedPage(std::string_view page);

/// A control of a screen, by its name in the storyboard; throws if there is none.
[[nodiscard]] UIView& viewNamed(const UIView& screen, std::string_view name);

/// A telephone of 390 by 844 points with the library's resources and a window; screens come over its root in
/// a challenge's stack.
class ScreenTest : public testing::Test {
protected:
    ScreenTest();
    ~ScreenTest() override;

    /// With the look and the places below.
    [[nodiscard]] VCFactory factory() const { return {nullptr, nullptr, look, places}; }

    /// Makes the screens of a response and shows one of them.
    template <class Screen = ChallengeNativeViewController>
    std::shared_ptr<Screen> show(const CRes& cRes, Orientation orientation = Orientation::PORTRAIT) {
        return show<Screen>(factory().getViewControllerContainer(cRes), orientation);
    }
    template <class Screen = ChallengeNativeViewController>
    std::shared_ptr<Screen> show(const ViewControllerContainer& container,
                                 Orientation orientation = Orientation::PORTRAIT) {
        auto screen = std::dynamic_pointer_cast<Screen>(container.controllersMap().at(orientation));
        present(screen);
        return screen;
    }
    void present(const std::shared_ptr<UIViewController>& screen);
    /// Lets everything happen that is due within two seconds, and lays out.
    void settle();
    static void tap(UIControl& control) { control.sendActions(ControlEvent::touchUpInside); }
    /// Turns the screen before the window is made: for landscape screens.
    void resize(CGSize screen, UIEdgeInsets safeArea = {});

    SimulatedPlatform platform;
    std::shared_ptr<UIWindow> window;
    std::shared_ptr<UIViewController> host;
    std::shared_ptr<ChallengeRootNavigationController> stack;
    std::shared_ptr<FakeActions> actions = std::make_shared<FakeActions>();
    std::shared_ptr<UiCustomization> look;
    std::shared_ptr<UiCustomizationConstraints> places;
};

} // namespace korvane
