#pragma once

#include "Platform/Dispatch.h"
#include "Platform/NotificationCenter.h"
#include "Platform/UIDevice.h"
#include "Sdk/Events/ChallengeStatusReceiver.h"
#include "Sdk/Events/KorvaneError.h"
#include "Sdk/Messages/CReq.h"
#include "Sdk/Messages/ChallengeParameters.h"
#include "Sdk/Messages/Validator.h"
#include "Sdk/SecureChannel/KeysContainer.h"
#include "Sdk/Transaction/AuthenticationRequestParameters.h"
#include "Sdk/Transaction/CReqSendingResult.h"
#include "Sdk/Transaction/HttpClient.h"
#include "Sdk/Transaction/SharedField.h"
#include "Sdk/Transaction/TransactionStatus.h"
#include "Ui/Customisation/UiCustomization.h"
#include "Ui/Customisation/UiCustomizationConstraints.h"
#include "Ui/Screens/ChallengeActions.h"
#include "Ui/Screens/ChallengeRootNavigationController.h"
#include "Ui/Screens/ViewControllerContainer.h"

#include <array>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

class VCFactory;

/// What a service gives each transaction at its creation.
struct TransactionArguments {
    /// The sealed device document, a compact JWE.
    std::string deviceData;
    /// Identifies the application's installation.
    std::string sdkAppID;
    std::string sdkReferenceNum;
    /// "2.1.0" or "2.2.0".
    std::string messageVersion;
    std::unique_ptr<KeysContainer> keysContainer;
    std::shared_ptr<const UiCustomization> uiCustomization = nullptr;
    std::shared_ptr<const UiCustomizationConstraints> uiCustomizationConstraints = nullptr;
    std::shared_ptr<SpinnerProducerProtocol> extSpinnerProducer = nullptr;
};

/// Whether a response answers the first request of a challenge, to which more rules apply, or a later one.
enum class CResPosition { initial, later };

/// One 3DS transaction: the values of its authentication request, and the challenge if the ACS demands one.
/// It holds all the state of the challenge. Made by `ThreeDS2Service::createTransaction`.
///
/// The challenge runs on three queues: the global queue verifies, sends and waits; the main queue shows
/// screens and tells the receiver; a serial queue of its own handles the device's turning. What they share
/// are atomics and `SharedField`s; all else belongs to the main queue.
class Transaction final : public ChallengeActions, public std::enable_shared_from_this<Transaction> {
    struct Private {};
    friend struct TransactionPeer;

public:
    /// The device's orientations at which the screens turn.
    static constexpr std::array<UIDeviceOrientation, 3> supportedOrientations{
        UIDeviceOrientation::landscapeLeft, UIDeviceOrientation::landscapeRight,
        UIDeviceOrientation::portrait};

    [[nodiscard]] static std::shared_ptr<Transaction> make(TransactionArguments arguments);

    Transaction(Private, TransactionArguments arguments);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction() override;

    /// The values to send through the 3DS server: the same ones at each call. Any thread, beside a running
    /// challenge too.
    /// @throws SdkError InvalidInputException without an ephemeral key.
    [[nodiscard]] AuthenticationRequestParameters getAuthenticationRequestParameters() const;

    /// Starts the challenge that the ACS demands and returns at once. Everything else reaches the receiver,
    /// on the main queue: one ending. To be called once for a transaction, on any thread; a challenge that
    /// ended before it had a screen may be started anew.
    /// @param timeout  for the whole challenge, in minutes; with 0 or less it is over at once. A number whose
    ///                 seconds cannot be counted ends the process (`fatalError`).
    void doChallenge(std::shared_ptr<ChallengeParameters> challengeParameters,
                     std::shared_ptr<ChallengeStatusReceiver> challengeStatusReceiver, std::int64_t timeout);

    /// What the application can show while it waits: a spinner of its own producer where there is one and a
    /// controller to cover, else the library's. Any thread.
    [[nodiscard]] std::shared_ptr<ProgressDialog> getProgressView() const;

    /// Does nothing: what a transaction holds is released with it.
    void close() {}

    /// What the cardholder entered last; no value before.
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
        return spinnerProducer_;
    }

    // Ways to a screen without an ACS, to try screens out.

    /// Presents a page. Main queue only.
    void presentWeb(const std::string& html);
    /// Presents the screen of a response; one that is none ends the process (`fatalError`). Blocks for the
    /// logos.
    void presentRoot(ByteView CResData);

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

    // The start of a challenge (ChallengeStart.cpp). Global queue, and main queue for the timer.
    void challengeTimerFired(std::shared_ptr<DispatchWorkItem> timer);
    void challengeTimedOut(const DispatchWorkItem& timer);
    void tellAcsOfTimeout();
    void innerDoTransaction();
    [[nodiscard]] bool openSecureChannelOrTell();
    void openSecureChannel();
    [[nodiscard]] Bytes getInitCReqData() const;
    [[nodiscard]] CReq makeCReq(const ChallengeParameters& parameters) const;
    void processInitResult(const CReqSendingResult& result);
    void endStart(const char* function, const std::string& text);
    void processInitCRes(const CRes& cRes);

    // One exchange (Exchange.cpp): blocks its thread, and raises nothing.
    [[nodiscard]] CReqSendingResult sendCReq(const Bytes& data, CResPosition position);
    [[nodiscard]] CReqSendingResult readAnswer(const Bytes& body, CResPosition position) const;
    [[nodiscard]] CReqSendingResult readMessage(std::string_view message, CResPosition position) const;
    [[nodiscard]] CReqSendingResult readCRes(std::string_view message, CResPosition position) const;
    [[nodiscard]] CReqSendingResult judgeCRes(CRes cRes, CResPosition position) const;
    void startCResTimer();
    void cancelCResTimer();
    void cResTimedOut();

    // The errors of an exchange (ExchangeErrors.cpp).
    [[nodiscard]] Erro createErro(const KorvaneError& error) const;
    [[nodiscard]] std::optional<Erro> createErroIfPossible(const KorvaneError& error) const;
    [[nodiscard]] std::optional<Erro> createErroFromCodingPath(const std::vector<std::string>& path) const;
    [[nodiscard]] std::optional<Erro>
    createErroFromCodingPathForRequiredFields(const std::vector<std::string>& path) const;
    void sendErroToAcs(const Erro& erro) const;
    void sendErroIfPossible(const std::optional<Erro>& erro) const;

    // Actions and what follows them (Actions.cpp).
    using Fill = std::function<void(CReq&)>;
    using Send = std::function<void(const CReq&, const ChallengeParameters&)>;
    void act(const Action& action, const Fill& fill);
    void perform(const Action& action, const Fill& fill, const Send& send);
    void sendVCCReq(const CReq& cReq);
    void processCResResult(const CReqSendingResult& result);
    void completeWithStatus(const std::string& value);
    void continueChallenge(const CRes& cRes);
    void updateHtml(const CRes& cRes);

    // Endings (Completion.cpp).
    void completeChallengeSuccessfully(TransactionStatus status);
    void completeChallengeWithCancel();
    void completeChallengeWithProtocolError(const Erro& erro);
    void completeChallengeWithError(const std::string& text);
    void endWithError(const char* function, const std::string& text);
    void completeChallenge(std::function<void()> tell);
    [[nodiscard]] bool isEnded(const std::shared_ptr<ChallengeRootNavigationController>& root) const;
    void endWithRuntimeError(const std::string& text);
    void cancelChallengeTimer();
    void hideSpinner();
    void tellRuntimeError(const std::string& text);
    void tellProtocolError(const Erro& erro);

    // Presentation and rotation (Presentation.cpp). Main queue, and the queue of the rotations.
    void presentRootChallengeVc(const CRes& cRes);
    void updateViewControllerContainer(const CRes& cRes);
    [[nodiscard]] std::shared_ptr<ChallengeViewController> controllerFor(Orientation orientation) const;
    [[nodiscard]] std::shared_ptr<ChallengeViewController> firstController() const;
    void present(std::shared_ptr<ChallengeViewController> controller);
    void addOrientationListener();
    void removeOrientationListener();
    void didRotate();
    void handleRotation();
    void swapOrientations();
    void pushOtherOrientation();
    void popOtherOrientation();
    template <class Controller>
    [[nodiscard]] std::shared_ptr<Controller> topController() const {
        const auto root = challengeRootVC_.lock();
        return root ? std::dynamic_pointer_cast<Controller>(root->topViewController()) : nullptr;
    }

    static void onMainQueue(std::function<void()> work);

    /// @throws SdkError InvalidInputException before `doChallenge` has been called; logged for `function`.
    [[nodiscard]] std::shared_ptr<ChallengeParameters> requireChallengeParameters(const char* function) const;
    [[nodiscard]] ValidationContainer createValidationContainer(const CRes& cRes,
                                                                const ChallengeParameters& parameters,
                                                                CResPosition position) const;

    const std::string messageVersion_;
    /// In upper case.
    const std::string sdkTransactionID_;
    const std::string deviceData_;
    const std::string sdkAppID_;
    const std::string sdkReferenceNum_;
    const std::unique_ptr<KeysContainer> keysContainer_;
    /// The JWK text of the pair that the ACS agrees with, which outlives the pair; no value if none could be
    /// made.
    const std::optional<std::string> ephemeralPublicKey_;
    /// The requests sent after the first one.
    std::atomic<int> sdkToAcsCounter_{0};
    SharedField<ChallengeParameters> challengeParameters_;
    SharedField<ChallengeStatusReceiver> challengeStatusReceiver_;
    const std::shared_ptr<const UiCustomization> uiCustomization_;
    const std::shared_ptr<const UiCustomizationConstraints> uiCustomizationConstraints_;
    const std::shared_ptr<SpinnerProducerProtocol> spinnerProducer_;
    SharedField<DispatchWorkItem> challengeTimeoutTask_;
    SharedField<DispatchWorkItem> cResTimeoutTask_;
    /// The kind of the first screen.
    std::optional<UiType> channelgeFlowType_;
    std::weak_ptr<ChallengeRootNavigationController> challengeRootVC_;
    SharedField<VCFactory> vcFactory_;
    SharedField<HttpClient> httpClient_;
    SharedField<const ViewControllerContainer> lastCResViewControllerContainer_;
    /// No turning before the first screen stands, and while an exchange may bring another one.
    std::atomic<bool> updatingOfLastCResViewControllerContainerInProgress_{true};
    /// Whether both orientations' screens are on the stack. New screens do not change it.
    std::atomic<bool> allPossibleControllersInStack_{false};
    std::atomic<Orientation> lastPresentedOrientation_{Orientation::PORTRAIT};
    const std::shared_ptr<DispatchQueue> changeOrientationQueue_;
    /// Set once a time-out or an error has ended the challenge, so that late answers are dropped.
    std::atomic<bool> challengeInterrupted_{false};
    const std::shared_ptr<DispatchSemaphore> initCReqErrorSendCompletetionSemaphore_;
    /// The screens of whose end the application has been told, or will be once they are gone. Main queue
    /// only.
    std::weak_ptr<ChallengeRootNavigationController> endedRootVC_;
    SharedField<const SecretString> challengeData_;
    NotificationObserver orientationListener_;
};

} // namespace korvane
