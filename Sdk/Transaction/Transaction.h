#pragma once

#include "Platform/Dispatch.h"
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

#include <atomic>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// What a service gives each transaction at its creation.
struct TransactionArguments {
    /// The sealed device document, a compact JWE.
    std::string deviceData;
    std::string sdkReferenceNum;
    /// "2.1.0" or "2.2.0".
    std::string messageVersion;
    std::unique_ptr<KeysContainer> keysContainer;
};

/// Whether a response answers the first request of a challenge, to which more rules apply, or a later one.
enum class CResPosition { initial, later };

/// One 3DS transaction: the values of its authentication request, and the challenge if the ACS demands one.
/// It holds all the state of the challenge. Made by `ThreeDS2Service::createTransaction`.
class Transaction : public std::enable_shared_from_this<Transaction> {
    struct Private {};
    friend struct TransactionPeer;

public:
    [[nodiscard]] static std::shared_ptr<Transaction> make(TransactionArguments arguments);

    Transaction(Private, TransactionArguments arguments);
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;
    ~Transaction();

    /// The values to send through the 3DS server: the same ones at each call, until a challenge has begun.
    /// The caller's thread.
    /// @throws SdkError InvalidInputException without an ephemeral key.
    [[nodiscard]] AuthenticationRequestParameters getAuthenticationRequestParameters() const;

    /// Does nothing: what a transaction holds is released with it.
    void close() {}

private:
    // The start of a challenge. Global queue.
    void openSecureChannel();
    [[nodiscard]] Bytes getInitCReqData() const;
    [[nodiscard]] CReq makeCReq(const ChallengeParameters& parameters) const;

    // One exchange: blocks its thread, and raises nothing.
    [[nodiscard]] CReqSendingResult sendCReq(const Bytes& data, CResPosition position);
    [[nodiscard]] CReqSendingResult readAnswer(const Bytes& body, CResPosition position) const;
    [[nodiscard]] CReqSendingResult readMessage(std::string_view message, CResPosition position) const;
    [[nodiscard]] CReqSendingResult readCRes(std::string_view message, CResPosition position) const;
    [[nodiscard]] CReqSendingResult judgeCRes(CRes cRes, CResPosition position) const;
    void startCResTimer();
    void cancelCResTimer();
    void cResTimedOut();

    // The errors of an exchange.
    [[nodiscard]] Erro createErro(const KorvaneError& error) const;
    [[nodiscard]] std::optional<Erro> createErroIfPossible(const KorvaneError& error) const;
    [[nodiscard]] std::optional<Erro> createErroFromCodingPath(const std::vector<std::string>& path) const;
    [[nodiscard]] std::optional<Erro>
    createErroFromCodingPathForRequiredFields(const std::vector<std::string>& path) const;
    void sendErroToAcs(const Erro& erro) const;

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
    /// The requests sent after the first one.
    std::atomic<int> sdkToAcsCounter_{0};
    SharedField<ChallengeParameters> challengeParameters_;
    SharedField<DispatchWorkItem> cResTimeoutTask_;
    SharedField<HttpClient> httpClient_;
    /// Set once a time-out or an error has ended the challenge, so that late answers are dropped.
    std::atomic<bool> challengeInterrupted_{false};
    const std::shared_ptr<DispatchSemaphore> initCReqErrorSendCompletetionSemaphore_;
};

} // namespace korvane
