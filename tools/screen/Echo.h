#pragma once

#include "Ui/Screens/ChallengeActions.h"

#include <functional>
#include <memory>

namespace korvane::screen {

/// A transaction that sends nothing: it says on standard output what a screen would have sent, a JSON object a
/// line, and lets the screen go on.
class Echo final : public ChallengeActions {
public:
    /// @param done  runs on the main queue after each action that sends.
    explicit Echo(std::function<void()> done) : done_(std::move(done)) {}

    void resendOtp() override;
    void sendChallengeDataToAcs(const std::string& data,
                                std::optional<YesNoSelector> whitelistingDataEntry) override;
    void sendOobContinue(std::optional<YesNoSelector> whitelistingDataEntry) override;
    void sendHtmlChallengeDataToAcs(const std::string& data) override;
    void cancelChallenge() override;
    void sendRuntimeErrorToApp(const std::string& text) override;
    [[nodiscard]] std::shared_ptr<SpinnerProducerProtocol> spinnerProducer() const override {
        return nullptr;
    }

private:
    void goOn() const;

    const std::function<void()> done_;
};

} // namespace korvane::screen
