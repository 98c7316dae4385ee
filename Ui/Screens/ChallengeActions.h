#pragma once

#include "Sdk/Messages/MessageValues.h"
#include "Ui/Screens/ProgressDialog.h"

#include <memory>
#include <optional>
#include <string>

namespace korvane {

/// What the screens of a challenge can have done: the transaction, as they see it. The actions that send
/// something block their thread for the whole exchange; each screen's class says on which queue it acts.
class ChallengeActions {
public:
    virtual ~ChallengeActions() = default;

    /// Asks the ACS for another code.
    virtual void resendOtp() = 0;
    /// Sends what the cardholder entered or chose; an empty text says that nothing was entered.
    virtual void sendChallengeDataToAcs(const std::string& data,
                                        std::optional<YesNoSelector> whitelistingDataEntry) = 0;
    virtual void sendOobContinue(std::optional<YesNoSelector> whitelistingDataEntry) = 0;
    /// @param data  the form's data, in the form's own encoding.
    virtual void sendHtmlChallengeDataToAcs(const std::string& data) = 0;
    virtual void cancelChallenge() = 0;

    /// Tells the application of a failure. Main queue only.
    virtual void sendRuntimeErrorToApp(const std::string& text) = 0;

    /// The application's own spinner, or null.
    [[nodiscard]] virtual std::shared_ptr<SpinnerProducerProtocol> spinnerProducer() const = 0;
};

} // namespace korvane
