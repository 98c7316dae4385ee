#pragma once

#include "Platform/Dispatch.h"
#include "Platform/SharedField.h"
#include "Sdk/Events/ChallengeStatusReceiver.h"
#include "Sdk/Exchange/Exchange.h"
#include "Sdk/Transaction/ScreenStack.h"
#include "Sdk/Transaction/TransactionStatus.h"
#include "Ui/Customisation/UiCustomization.h"
#include "Ui/Customisation/UiCustomizationConstraints.h"
#include "Ui/Screens/ChallengeActions.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace korvane {

class VCFactory;

/// How the application wants the screens of its challenges. Each may be null.
struct ChallengeLook {
    std::shared_ptr<const UiCustomization> uiCustomization = nullptr;
    std::shared_ptr<const UiCustomizationConstraints> uiCustomizationConstraints = nullptr;
    std::shared_ptr<SpinnerProducerProtocol> extSpinnerProducer = nullptr;
};

/// One challenge, from `doChallenge` to the one ending that its receiver is told.
///
///                  first screen             action
///     starting ------------------> standing ------> asking
///      |   ^                        ^  |  ^           | |
///      +---+ failed: told           |  |  +-----------+ | next screen, next page
///                      first screen |  |                |
///                      of another   |  | ending,        | ending,
///                      start        |  | time-out       | time-out
///                                   |  v                |
///                                  ended <--------------+
///                                   |
///                                   | the time-out's screens have gone
///                                   v
///                              interrupted
///
/// | event               | comes on                   | function                                   |
/// |---------------------|----------------------------|--------------------------------------------|
/// | start               | any thread, global queue   | `doChallenge`, `innerDoTransaction`        |
/// | first answer        | global queue               | `processInitResult`                        |
/// | first screen        | main queue                 | `presentRootChallengeVc`                   |
/// | action              | the screen's own queue     | `act`, `cancelChallenge`                   |
/// | later answer        | main queue                 | `processCResResult`                        |
/// | a screen's failure  | main queue                 | `sendRuntimeErrorToApp`                    |
/// | ending              | any, then main queue       | `completeChallenge`                        |
/// | time-out            | global, then main queue    | `challengeTimerFired`, `challengeTimedOut` |
/// | late answer         | main queue                 | `cResTimedOut`                             |
///
/// What must not happen is looked for where it would: an action or an answer once interrupted does nothing; a
/// second ending of screens that have one does nothing; nor does an ending without screens, but those of a
/// start; the device does not turn the screens before the first one stands, nor while an answer is awaited. A
/// time-out before the first screen changes no state: what the ACS answers then is shown all the same. A
/// cancellation is no state either: the answer of another action may still come in between.
class ChallengeFlow final : public ChallengeActions, public std::enable_shared_from_this<ChallengeFlow> {
    struct Private {};

public:
    enum class State { starting, standing, asking, ended, interrupted };

    [[nodiscard]] static std::shared_ptr<ChallengeFlow> make(std::shared_ptr<Exchange> exchange,
                                                             ChallengeLook look);
    ChallengeFlow(Private, std::shared_ptr<Exchange> exchange, ChallengeLook look);
    ChallengeFlow(const ChallengeFlow&) = delete;
    ChallengeFlow& operator=(const ChallengeFlow&) = delete;
    /// Whoever lets go last, the application or the screens, ends the transaction.
    ~ChallengeFlow() override;

    /// As `Transaction::doChallenge`.
    void doChallenge(std::shared_ptr<ChallengeParameters> challengeParameters,
                     std::shared_ptr<ChallengeStatusReceiver> challengeStatusReceiver, std::int64_t timeout);

    /// What the cardholder entered last; no value before. Any thread.
    [[nodiscard]] std::optional<std::string> challengeData() const;

    // The screens' actions: each blocks its thread for the whole exchange.

    void resendOtp() override;
    void sendChallengeDataToAcs(const std::string& data,
                                std::optional<YesNoSelector> whitelistingDataEntry) override;
    void sendOobContinue(std::optional<YesNoSelector> whitelistingDataEntry) override;
    void sendHtmlChallengeDataToAcs(const std::string& data) override;
    void cancelChallenge() override;
    void sendRuntimeErrorToApp(const std::string& text) override;
    [[nodiscard]] std::shared_ptr<SpinnerProducerProtocol> spinnerProducer() const override {
        return look_.extSpinnerProducer;
    }

    /// Loads a response's logos and presents its screen. Blocks its thread for the logos.
    /// @throws SdkError InvalidInputException for a logo's address that is no URL.
    void processInitCRes(const CRes& cRes);

private:
    /// An action of the cardholder: the function that asks for it, and how a text about its failure begins.
    struct Action {
        const char* function;
        const char* failure;
    };
    static const Action kResend;
    static const Action kSendData;
    static const Action kCancel;
    static const Action kOob;
    static const Action kHtml;

    // The state. Any thread.
    void go(State from, State to) noexcept { state_.compare_exchange_strong(from, to); }
    /// From any state but `interrupted`, which is never left.
    void enter(State next) noexcept {
        for (State now = state_; now != State::interrupted;)
            if (state_.compare_exchange_weak(now, next)) return;
    }
    [[nodiscard]] bool isInterrupted() const noexcept { return state_ == State::interrupted; }
    [[nodiscard]] bool hasEnded() const noexcept { return state_ == State::ended || isInterrupted(); }
    [[nodiscard]] bool mayTurn() const noexcept;

    // The start, and the time of the whole (ChallengeStart.cpp).
    void challengeTimerFired(std::shared_ptr<DispatchWorkItem> timer);
    void challengeTimedOut(const DispatchWorkItem& timer);
    void tellAcsOfTimeout();
    void cResTimedOut();
    void innerDoTransaction();
    [[nodiscard]] bool openSecureChannelOrTell();
    void processInitResult(const CReqSendingResult& result);
    void endStart(const char* function, const std::string& text);

    // Actions and what follows them (Actions.cpp).
    using Fill = std::function<void(CReq&)>;
    using Send = std::function<void(const CReq&)>;
    void act(const Action& action, const Fill& fill);
    void perform(const Action& action, const Fill& fill, const Send& send);
    void sendVCCReq(const CReq& cReq);
    void processCResResult(const CReqSendingResult& result);
    void completeWithStatus(const std::string& value);

    // Screens (Presentation.cpp). Main queue.
    void presentRootChallengeVc(const CRes& cRes);
    void updateViewControllerContainer(const CRes& cRes);
    void continueChallenge(const CRes& cRes);
    void updateHtml(const CRes& cRes);

    // Endings (Completion.cpp).
    void completeChallengeSuccessfully(TransactionStatus status);
    void completeChallengeWithCancel();
    void completeChallengeWithProtocolError(const Erro& erro);
    void completeChallengeWithError(const std::string& text);
    void endWithError(const char* function, const std::string& text);
    void completeChallenge(std::function<void()> tell);
    void endWithRuntimeError(const std::string& text);
    void cancelChallengeTimer();
    void tellRuntimeError(const std::string& text);
    void tellProtocolError(const Erro& erro);

    const std::shared_ptr<Exchange> exchange_;
    const ChallengeLook look_;
    std::atomic<State> state_{State::starting};
    std::shared_ptr<ScreenStack> screens_;
    SharedField<ChallengeStatusReceiver> challengeStatusReceiver_;
    SharedField<DispatchWorkItem> challengeTimeoutTask_;
    /// The kind of the first screen.
    std::optional<UiType> channelgeFlowType_;
    SharedField<VCFactory> vcFactory_;
    const std::shared_ptr<DispatchSemaphore> initCReqErrorSendCompletetionSemaphore_;
    SharedField<const SecretString> challengeData_;
};

} // namespace korvane
