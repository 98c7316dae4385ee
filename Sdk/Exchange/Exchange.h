#pragma once

#include "Platform/Dispatch.h"
#include "Platform/SharedField.h"
#include "Sdk/Events/KorvaneError.h"
#include "Sdk/Exchange/CReqSendingResult.h"
#include "Sdk/Exchange/HttpClient.h"
#include "Sdk/Messages/CReq.h"
#include "Sdk/Messages/ChallengeParameters.h"
#include "Sdk/Messages/MessageVersion.h"
#include "Sdk/SecureChannel/KeysContainer.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

struct ValidationContainer;

/// Whether a response answers the first request of a challenge, to which more rules apply, or a later one.
enum class CResPosition { initial, later };

/// What one transaction and its ACS say to each other: its identifiers, its keys, its counter of requests,
/// and the time that an answer has. It knows no screen and no ending. Any thread, but one request at a time;
/// what threads share are atomics and `SharedField`s.
class Exchange final : public std::enable_shared_from_this<Exchange> {
public:
    Exchange(MessageVersion messageVersion, std::string sdkReferenceNum,
             std::unique_ptr<KeysContainer> keysContainer);
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    [[nodiscard]] const std::string& messageVersion() const noexcept { return messageVersion_; }
    [[nodiscard]] const std::string& sdkReferenceNum() const noexcept { return sdkReferenceNum_; }
    /// In upper case; messages have it in lower case.
    [[nodiscard]] const std::string& sdkTransactionID() const noexcept { return sdkTransactionID_; }
    /// The JWK text of the pair that the ACS agrees with, which outlives the pair; no value
    /// if none could be made.
    [[nodiscard]] const std::optional<std::string>& ephemeralPublicKey() const noexcept {
        return ephemeralPublicKey_;
    }

    /// What the ACS gave the application. Null, as at first, stands for none.
    void setChallengeParameters(std::shared_ptr<ChallengeParameters> parameters);
    [[nodiscard]] std::shared_ptr<ChallengeParameters> challengeParameters() const;

    /// Verifies what the ACS signed, and agrees on a key with it.
    /// @throws SdkError InvalidInputException without parameters; JOSEError, DecodingError and what
    ///         `KeysContainer::parseAcsSignedContent` raises.
    void openSecureChannel();

    /// A request with the values of the transaction and the counter of this moment.
    /// @param function  whose log tells a failure.
    /// @throws SdkError InvalidInputException without parameters, or without an identifier in them.
    [[nodiscard]] CReq makeCReq(const char* function) const;
    /// @return the compact JWE.
    /// @throws SdkError as `makeCReq`, and without a key; JOSEError.
    [[nodiscard]] Bytes seal(const CReq& cReq, const char* function) const;
    /// The first request of a challenge, sealed.
    /// @throws as `makeCReq` and `seal`.
    [[nodiscard]] Bytes getInitCReqData() const;
    /// Every request but the first counts.
    void countRequest() noexcept { ++sdkToAcsCounter_; }

    /// Sends a sealed request and judges the answer: blocks its thread for 12 seconds at most, and raises
    /// nothing. After 10 seconds without an answer the time-out is told; what comes later still counts.
    [[nodiscard]] CReqSendingResult sendCReq(const Bytes& data, CResPosition position);
    /// Whom to tell, on the main queue, that an answer has not come in time. To be set
    /// before the first request.
    void setTimedOut(std::function<void()> timedOut) { timedOut_ = std::move(timedOut); }
    void cancelCResTimer();
    /// From now on whatever comes is dropped, for good.
    void interrupt() noexcept { challengeInterrupted_ = true; }

    /// A logo. Blocks its thread like a request.
    /// @return nothing before the channel is open.
    /// @throws SdkError InvalidInputException if `url` is no URL.
    [[nodiscard]] HttpAnswer loadImage(const std::string& url) const;

    /// @return no value without parameters, or without an identifier in them.
    [[nodiscard]] std::optional<Erro> createErroIfPossible(const KorvaneError& error) const;
    /// Blocks its thread like a request. Sends nothing before the channel is open.
    void sendErroToAcs(const Erro& erro) const;
    void sendErroIfPossible(const std::optional<Erro>& erro) const;

private:
    [[nodiscard]] std::shared_ptr<ChallengeParameters> requireChallengeParameters(const char* function) const;
    void startCResTimer();

    // What an answer comes to (Answers.cpp).
    [[nodiscard]] CReqSendingResult readAnswer(const Bytes& body, CResPosition position) const;
    [[nodiscard]] CReqSendingResult readMessage(std::string_view message, CResPosition position) const;
    [[nodiscard]] CReqSendingResult readCRes(std::string_view message, CResPosition position) const;
    [[nodiscard]] CReqSendingResult judgeCRes(CRes cRes, CResPosition position) const;
    [[nodiscard]] ValidationContainer createValidationContainer(const CRes& cRes,
                                                                const ChallengeParameters& parameters,
                                                                CResPosition position) const;

    // Errors for the ACS (Erros.cpp).
    [[nodiscard]] Erro createErro(const KorvaneError& error) const;
    [[nodiscard]] std::optional<Erro> createErroFromCodingPath(const std::vector<std::string>& path) const;
    [[nodiscard]] std::optional<Erro>
    createErroFromCodingPathForRequiredFields(const std::vector<std::string>& path) const;

    const std::string messageVersion_;
    const std::string sdkReferenceNum_;
    const std::string sdkTransactionID_;
    const std::unique_ptr<KeysContainer> keysContainer_;
    const std::optional<std::string> ephemeralPublicKey_;
    std::atomic<int> sdkToAcsCounter_{0};
    SharedField<ChallengeParameters> challengeParameters_;
    SharedField<HttpClient> httpClient_;
    SharedField<DispatchWorkItem> cResTimeoutTask_;
    std::function<void()> timedOut_;
    std::atomic<bool> challengeInterrupted_{false};
};

} // namespace korvane
