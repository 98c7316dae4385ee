#include "Sdk/Exchange/Exchange.h"

#include "Crypt/JWS.h"
#include "Platform/LetterCase.h"
#include "Platform/Logger.h"
#include "Platform/Platform.h"
#include "Platform/UUID.h"
#include "Sdk/Events/SdkError.h"
#include "Sdk/SecureChannel/AcsSignedContent.h"

namespace korvane {

namespace {

constexpr Seconds kCResLimit{10.0};

/// Told where the key is asked for.
std::optional<std::string> ephemeralPublicKeyIfPossible(KeysContainer& keysContainer) {
    try {
        return keysContainer.getEphemeralPublicKey();
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace

Exchange::Exchange(MessageVersion messageVersion, std::string sdkReferenceNum,
                   std::unique_ptr<KeysContainer> keysContainer)
    : messageVersion_(rawValue(messageVersion)), sdkReferenceNum_(std::move(sdkReferenceNum)),
      sdkTransactionID_(makeUUIDString()), keysContainer_(std::move(keysContainer)),
      ephemeralPublicKey_(ephemeralPublicKeyIfPossible(*keysContainer_)) {}

void Exchange::setChallengeParameters(std::shared_ptr<ChallengeParameters> parameters) {
    challengeParameters_.set(std::move(parameters));
}

std::shared_ptr<ChallengeParameters> Exchange::challengeParameters() const {
    return challengeParameters_.get();
}

std::shared_ptr<ChallengeParameters> Exchange::requireChallengeParameters(const char* function) const {
    auto parameters = challengeParameters_.get();
    if (!parameters)
        KORVANE_RAISE(function, SdkErrorCase::InvalidInputException, "Challenge parameters must be present.");
    return parameters;
}

/// The content is read twice: first for the URL alone, since an error about a signature that does not verify
/// has to be sent there.
void Exchange::openSecureChannel() {
    constexpr const char* kFunction = "innerDoTransaction()";
    const auto parameters = requireChallengeParameters(kFunction);
    KORVANE_LOG(kFunction, LogLines{"Acs signed content:\n" +
                                    escapedControls(parameters->acsSignedContent.value_or("nil"))});
    const std::string& content = parameters->getAcsSignedContent();
    const AcsSignedContent signedContent = AcsSignedContent::decode(JWS(content).payload().data());
    httpClient_.set(std::make_shared<HttpClient>(signedContent.acsURL));
    keysContainer_->parseAcsSignedContent(content, sdkReferenceNum_);
}

CReq Exchange::makeCReq(const char* function) const {
    const auto parameters = requireChallengeParameters(function);
    CReq cReq;
    cReq.threeDSServerTransID = parameters->get3DSServerTransactionId();
    cReq.acsTransID = parameters->getAcsTransactionId();
    cReq.messageVersion = messageVersion_;
    cReq.sdkTransID = lowercased(sdkTransactionID_);
    cReq.sdkCounterStoA = counterText(sdkToAcsCounter_);
    if (parameters->tdsRequestorAppURL && !parameters->tdsRequestorAppURL->empty())
        cReq.threeDSRequestorAppURL = parameters->tdsRequestorAppURL;
    return cReq;
}

Bytes Exchange::seal(const CReq& cReq, const char* function) const {
    const auto parameters = requireChallengeParameters(function);
    return keysContainer_->encryptCReq(toBytes(cReq.jsonString().text()), parameters->getAcsTransactionId());
}

Bytes Exchange::getInitCReqData() const {
    constexpr const char* kFunction = "getInitCReqData()";
    const CReq cReq = makeCReq(kFunction);
    KORVANE_LOG(kFunction, cReq.jsonString());
    return seal(cReq, kFunction);
}

HttpAnswer Exchange::loadImage(const std::string& url) const {
    const auto client = httpClient_.get();
    return client ? client->loadImage(url) : HttpAnswer{};
}

void Exchange::startCResTimer() {
    const auto task = std::make_shared<DispatchWorkItem>([weak = weak_from_this()] {
        Platform::current().dispatch().mainQueue().async([weak] {
            if (const auto self = weak.lock(); self && self->timedOut_) self->timedOut_();
        });
    });
    cResTimeoutTask_.set(task);
    Platform::current().dispatch().globalQueue().asyncAfter(kCResLimit, task);
}

void Exchange::cancelCResTimer() {
    if (const auto task = cResTimeoutTask_.exchange(nullptr)) task->cancel();
}

} // namespace korvane
