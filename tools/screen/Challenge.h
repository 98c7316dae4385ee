#pragma once

#include "Sdk/Service/ThreeDS2Service.h"
#include "Ui/Customisation/Theme.h"
#include "tools/challenge/Authentication.h"
#include "tools/screen/Options.h"

#include <functional>
#include <memory>
#include <string>

namespace korvane::screen {

/// A whole challenge against a running ACS, by the library itself: its screens appear in the window that
/// stands. Main queue only.
class Challenge final : public ChallengeStatusReceiver, public std::enable_shared_from_this<Challenge> {
public:
    /// How it ended.
    struct Ending {
        /// What the library told, as in "completed"; empty for a failure before the challenge.
        std::string event;
        /// A sentence.
        std::string text;
    };

    /// @param wire   hears of the platform's answers.
    /// @param ended  hears the ending, once.
    Challenge(AcsOptions options, Theme theme, std::shared_ptr<const challenge::Wire> wire,
              std::function<void(const Ending&)> ended);

    void begin();

    void completed(const CompletionEvent& event) override;
    void cancelled() override;
    void timedout() override;
    void protocolError(const ProtocolErrorEvent& event) override;
    void runtimeError(const RuntimeErrorEvent& event) override;

private:
    void takeReply(const challenge::ServerReply& reply);
    void end(const std::string& event, const std::string& text);

    const AcsOptions options_;
    const Theme theme_;
    const std::shared_ptr<const challenge::Wire> wire_;
    std::function<void(const Ending&)> ended_;
    ThreeDS2Service service_;
    std::shared_ptr<Transaction> transaction_;
};

} // namespace korvane::screen
