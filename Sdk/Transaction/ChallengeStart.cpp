#include "Sdk/Transaction/Transaction.h"

#include "Crypt/JOSEError.h"
#include "Crypt/JWS.h"
#include "Platform/LetterCase.h"
#include "Platform/Platform.h"
#include "Sdk/Events/SdkError.h"
#include "Sdk/SecureChannel/AcsSignedContent.h"
#include "Ui/Screens/VCFactory.h"

#include <limits>

namespace korvane {

namespace {

constexpr const char* kDoChallenge = "doChallenge(challengeParameters:challengeStatusReceiver:timeout:)";
constexpr const char* kInner = "innerDoTransaction()";

constexpr Seconds kLongestWaitForTimeout{15.0};
constexpr int kNotVerified = 302;
constexpr int kTimedOut = 402;

const std::string& orNil(const std::optional<std::string>& value) {
    static const std::string nil = "nil";
    return value ? *value : nil;
}

std::string parametersText(const std::shared_ptr<ChallengeParameters>& parameters) {
    const ChallengeParameters values = parameters ? *parameters : ChallengeParameters{};
    return "Do challenge with parmeters tdsServerTransactionId=" + orNil(values.tdsServerTransactionId) +
           ", acsTransactionId=" + orNil(values.acsTransactionId) +
           ", acsRefNumber=" + orNil(values.acsRefNumber) +
           ", tdsRequestorAppURL=" + orNil(values.tdsRequestorAppURL);
}

Seconds secondsOf(std::int64_t minutes) {
    constexpr std::int64_t kSecondsPerMinute = 60;
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max() / kSecondsPerMinute;
    if (minutes > kMost || minutes < -kMost) fatalError("The time-out of a challenge is beyond counting.");
    return Seconds(static_cast<double>(minutes * kSecondsPerMinute));
}

/// Why the channel could not be opened, in the words for the application, and whether it was for a lack of
/// trust, which the ACS is to know.
struct ChannelFailure {
    std::string text;
    bool isVerification;
};

ChannelFailure verificationFailure(const std::string& text) {
    return {"Can not verification AcsSignedContent: " + text, true};
}

ChannelFailure contentFailure(const std::string& text) {
    return {"Can not get acsURL from AcsSignedContent: " + text, false};
}

/// This is the one place that knows it may hold an `SdkError`, and tells it in that error's own words. A
/// signature that does not verify is a lack of trust like a chain that does not.
ChannelFailure describeChannelFailure(const std::exception& error) {
    if (const auto* failure = dynamic_cast<const SdkError*>(&error))
        return failure->kind() == SdkErrorCase::SDKRuntimeException
                   ? verificationFailure(failure->message())
                   : contentFailure(failure->localizedDescription());
    if (const auto* failure = dynamic_cast<const TypedFailure<JOSEErrorCase>*>(&error))
        if (failure->kind() == JOSEErrorCase::signatureInvalid ||
            failure->kind() == JOSEErrorCase::verifyingFailed)
            return verificationFailure(genericDescription(error));
    return contentFailure(genericDescription(error));
}

UIImagePtr loadLogo(const HttpClient* client, const std::optional<ImageUrls>& urls) {
    if (!client || !urls) return nullptr;
    HttpAnswer answer = client->loadImage(urls->high);
    return answer.data ? UIImage::make(std::move(*answer.data)) : nullptr;
}

} // namespace

void Transaction::doChallenge(std::shared_ptr<ChallengeParameters> challengeParameters,
                              std::shared_ptr<ChallengeStatusReceiver> challengeStatusReceiver,
                              std::int64_t timeout) {
    const auto timer = std::make_shared<std::weak_ptr<DispatchWorkItem>>();
    const auto task = std::make_shared<DispatchWorkItem>([weak = weak_from_this(), timer] {
        if (const auto self = weak.lock()) self->challengeTimerFired(timer->lock());
    });
    *timer = task;
    challengeTimeoutTask_.set(task);
    DispatchQueue& global = Platform::current().dispatch().globalQueue();
    global.asyncAfter(secondsOf(timeout), task);
    challengeParameters_.set(std::move(challengeParameters));
    challengeStatusReceiver_.set(std::move(challengeStatusReceiver));
    global.async([self = shared_from_this()] { self->innerDoTransaction(); });
}

/// The line about the beginning is written here, at the end of the time.
void Transaction::challengeTimerFired(std::shared_ptr<DispatchWorkItem> timer) {
    KORVANE_LOG(kDoChallenge, parametersText(challengeParameters_.get()));
    onMainQueue([weak = weak_from_this(), timer = std::move(timer)] {
        if (const auto self = weak.lock()) self->challengeTimedOut(*timer);
    });
}

/// An ending cancels the timer, whose work may have begun by then: it has no more to tell.
void Transaction::challengeTimedOut(const DispatchWorkItem& timer) {
    if (timer.isCancelled()) return;
    if (const auto receiver = challengeStatusReceiver_.get()) receiver->timedout();
    const auto root = challengeRootVC_.lock();
    if (!root) {
        KORVANE_LOG(kDoChallenge, "CReq error send completetion");
        initCReqErrorSendCompletetionSemaphore_->signal();
        return;
    }
    endedRootVC_ = root;
    root->dismiss(UIAnimated::yes, [self = shared_from_this()] {
        self->challengeInterrupted_ = true;
        self->cancelCResTimer();
        self->tellAcsOfTimeout();
    });
}

/// From the global queue: nobody waits for the ACS's answer, the application's own screens least of all.
void Transaction::tellAcsOfTimeout() {
    const KorvaneError error = KorvaneError::getErrorByCode(kTimedOut);
    KORVANE_LOG(kDoChallenge, error.details);
    Platform::current().dispatch().globalQueue().async(
        [self = shared_from_this(), erro = createErroIfPossible(error)] { self->sendErroIfPossible(erro); });
}

void Transaction::innerDoTransaction() {
    KORVANE_LOG(kInner, "Start inner Do Transaction");
    if (!openSecureChannelOrTell()) return;
    Bytes data;
    try {
        data = getInitCReqData();
    } catch (const std::exception& error) {
        endStart(kInner, "Can not get init CReq data: " + genericDescription(error));
        return;
    }
    KORVANE_LOG(kInner, "send CReq");
    const CReqSendingResult result = sendCReq(data, CResPosition::initial);
    if (challengeInterrupted_) {
        // The application has heard of the end; this thread only lets that path finish first.
        static_cast<void>(initCReqErrorSendCompletetionSemaphore_->wait(kLongestWaitForTimeout));
        return;
    }
    processInitResult(result);
}

bool Transaction::openSecureChannelOrTell() {
    try {
        openSecureChannel();
        return true;
    } catch (const std::exception& error) {
        const ChannelFailure failure = describeChannelFailure(error);
        cancelChallengeTimer();
        if (failure.isVerification)
            sendErroIfPossible(createErroIfPossible(KorvaneError::getErrorByCode(kNotVerified)));
        onMainQueue([self = shared_from_this(), text = failure.text] {
            KORVANE_LOG(kInner, text);
            self->endWithRuntimeError(text);
        });
        return false;
    }
}

/// The content is read twice: first for the URL alone, since an error about a signature that does not verify
/// has to be sent there.
void Transaction::openSecureChannel() {
    const auto parameters = requireChallengeParameters(kInner);
    KORVANE_LOG(kInner,
                LogLines{"Acs signed content:\n" + escapedControls(orNil(parameters->acsSignedContent))});
    const std::string& content = parameters->getAcsSignedContent();
    const AcsSignedContent signedContent = AcsSignedContent::decode(JWS(content).payload().data());
    httpClient_.set(std::make_shared<HttpClient>(signedContent.acsURL));
    keysContainer_->parseAcsSignedContent(content, sdkReferenceNum_);
}

Bytes Transaction::getInitCReqData() const {
    constexpr const char* kFunction = "getInitCReqData()";
    const auto parameters = requireChallengeParameters(kFunction);
    const SecretString json = makeCReq(*parameters).jsonString();
    KORVANE_LOG(kFunction, json);
    return keysContainer_->encryptCReq(toBytes(json.text()), parameters->getAcsTransactionId());
}

CReq Transaction::makeCReq(const ChallengeParameters& parameters) const {
    CReq cReq;
    cReq.threeDSServerTransID = parameters.get3DSServerTransactionId();
    cReq.acsTransID = parameters.getAcsTransactionId();
    cReq.messageVersion = messageVersion_;
    cReq.sdkTransID = lowercased(sdkTransactionID_);
    cReq.sdkCounterStoA = counterText(sdkToAcsCounter_);
    if (parameters.tdsRequestorAppURL && !parameters.tdsRequestorAppURL->empty())
        cReq.threeDSRequestorAppURL = parameters.tdsRequestorAppURL;
    return cReq;
}

void Transaction::processInitResult(const CReqSendingResult& result) {
    if (result.cres) {
        try {
            processInitCRes(*result.cres);
        } catch (const std::exception& error) {
            endStart(kInner, "Can not process init CReq: " + genericDescription(error));
        }
    } else if (result.erro) {
        cancelChallengeTimer();
        if (!result.receivedError) sendErroIfPossible(result.erro);
        onMainQueue([self = shared_from_this(), erro = *result.erro] { self->tellProtocolError(erro); });
    } else {
        endStart(kInner, result.errorDescription.value_or("Unknown error"));
    }
}

/// A start that failed has nothing on the screen to take away.
void Transaction::endStart(const char* function, const std::string& text) {
    cancelChallengeTimer();
    onMainQueue([self = shared_from_this(), function, text] {
        KORVANE_LOG(function, text);
        self->tellRuntimeError(text);
    });
}

void Transaction::processInitCRes(const CRes& cRes) {
    const auto client = httpClient_.get();
    const UIImagePtr psImage = loadLogo(client.get(), cRes.psImage);
    const UIImagePtr bankImage = loadLogo(client.get(), cRes.issuerImage);
    vcFactory_.set(
        std::make_shared<VCFactory>(psImage, bankImage, uiCustomization_, uiCustomizationConstraints_));
    onMainQueue([self = shared_from_this(), cRes] { self->presentRootChallengeVc(cRes); });
}

} // namespace korvane
