#pragma once

#include "Ui/Screens/ChallengeNativeViewController.h"
#include "Ui/Screens/ChallengeRootNavigationController.h"
#include "Ui/Screens/ChallengeSelectNativeViewController.h"
#include "Ui/Screens/ChallengeWebViewController.h"
#include "tests/challenge/simulation/Fingers.h"
#include "tests/challenge/simulation/Model.h"
#include "tests/support/SimulatedPlatform.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace korvane::simulation {

/// Looks at the screen from time to time, compares it with the model's, and does something to it, which the
/// model is told. Lives until the simulation has ended; main queue only.
class Cardholder {
public:
    /// What is wrong, and what is done, in words.
    using Say = std::function<void(const std::string& text)>;

    Cardholder(const Plan& plan, SimulatedPlatform& platform, Model& model, UIWindow& window);
    Cardholder(const Cardholder&) = delete;
    Cardholder& operator=(const Cardholder&) = delete;

    Say complain;
    Say tell;

    void begin() { lookLater(Time{0}); }

    /// How many objects that were seen on the screen are still there.
    [[nodiscard]] std::size_t seenAlive() const;

private:
    void look();
    void lookLater(Time atLeast);
    void compare();
    void act();
    void actOn(ChallengeViewController& screen);
    void actOnNative(ChallengeNativeViewController& screen);
    void actOnText(ChallengeTextNativeViewController& screen);
    void actOnList(ChallengeSelectNativeViewController& screen);
    void actOnPage(ChallengeWebViewController& screen);

    /// Presses a control; the model hears of each press that has an effect.
    void press(UIControl& control, ChallengeViewController& on, const std::string& name,
               const std::function<void()>& effect);
    void typeOn(ChallengeTextNativeViewController& screen);
    void cancel(ChallengeViewController& screen);
    void leaveAndReturn();
    void openSection(ChallengeNativeViewController& screen);
    void post(ChallengeWebViewController& page, const URLRequest& request,
              const std::optional<std::optional<std::string>>& effect);

    [[nodiscard]] std::shared_ptr<ChallengeRootNavigationController> root() const;
    [[nodiscard]] std::shared_ptr<ChallengeViewController> top() const;
    [[nodiscard]] std::optional<Model::Shown> shown() const;
    [[nodiscard]] bool isPatient() const;
    [[nodiscard]] Time now() const;

    const Plan& plan_;
    SimulatedPlatform& platform_;
    Model& model_;
    UIWindow& window_;
    Fingers fingers_;
    Chance chance_;
    Time due_{0};
    int looks_ = 0;
    int emptyLooks_ = 0;
    std::weak_ptr<ChallengeViewController> known_;
    Time knownSince_{0};
    std::vector<std::weak_ptr<void>> seen_;
};

} // namespace korvane::simulation
