#include "Sdk/Transaction/ChallengeFlow.h"

#include "Crypt/JOSEError.h"
#include "Platform/Logger.h"
#include "Platform/Platform.h"
#include "Sdk/Events/SdkError.h"
#include "Ui/Screens/Later.h"
#include "Ui/Screens/VCFactory.h"

#include <limits>

namespace korvane {

namespace {

constexpr const char* kDoChallenge = "doChallenge(challengeParameters:challengeStatusReceiver:timeout:)";
constexpr const char* kInner = "innerDoTransaction()";

constexpr Seconds kLongestWaitForTimeout{15.0};

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

UIImagePtr loadLogo(const Exchange& exchange, const std::optional<ImageUrls>& urls) {
    if (!urls) return nullptr;
    HttpAnswer answer = exchange.loadImage(urls->high);
    return answer.data ? UIImage::make(std::move(*answer.data)) : nullptr;
}

} // namespace

void ChallengeFlow::doChallenge(std::shared_ptr<ChallengeParameters> challengeParameters,
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
    exchange_->setChallengeParameters(std::move(challengeParameters));
    challengeStatusReceiver_.set(std::move(challengeStatusReceiver));
    global.async([self = shared_from_this()] { self->innerDoTransaction(); });
}

/// The line about the beginning is written here, at the end of the time.
void ChallengeFlow::challengeTimerFired(std::shared_ptr<DispatchWorkItem> timer) {
    KORVANE_LOG(kDoChallenge, parametersText(exchange_->challengeParameters()));
    onMainQueue([weak = weak_from_this(), timer = std::move(timer)] {
        if (const auto self = weak.lock()) self->challengeTimedOut(*timer);
    });
}

/// An ending cancels the timer, whose work may have begun by then: it has no more to tell.
void ChallengeFlow::challengeTimedOut(const DispatchWorkItem& timer) {
    if (timer.isCancelled()) return;
    if (const auto receiver = challengeStatusReceiver_.get()) receiver->timedout();
    if (!screens_->stands()) {
        KORVANE_LOG(kDoChallenge, "CReq error send completetion");
        initCReqErrorSendCompletetionSemaphore_->signal();
        return;
    }
    enter(State::ended);
    screens_->dismiss([self = shared_from_this()] {
        self->enter(State::interrupted);
        self->exchange_->interrupt();
        self->exchange_->cancelCResTimer();
        self->tellAcsOfTimeout();
    });
}

/// From the global queue: nobody waits for the ACS's answer, the application's own screens least of all.
void ChallengeFlow::tellAcsOfTimeout() {
    const KorvaneError error = KorvaneError::getErrorByCode(ProtocolErrorCode::timedOut);
    KORVANE_LOG(kDoChallenge, error.details);
    Platform::current().dispatch().globalQueue().async(
        [exchange = exchange_, erro = exchange_->createErroIfPossible(error)] {
            exchange->sendErroIfPossible(erro);
        });
}

void ChallengeFlow::cResTimedOut() {
    if (screens_->stands())
        screens_->dismiss(nullptr);
    else
        initCReqErrorSendCompletetionSemaphore_->signal();
}

void ChallengeFlow::innerDoTransaction() {
    KORVANE_LOG(kInner, "Start inner Do Transaction");
    if (!openSecureChannelOrTell()) return;
    Bytes data;
    try {
        data = exchange_->getInitCReqData();
    } catch (const std::exception& error) {
        endStart(kInner, "Can not get init CReq data: " + genericDescription(error));
        return;
    }
    KORVANE_LOG(kInner, "send CReq");
    const CReqSendingResult result = exchange_->sendCReq(data, CResPosition::initial);
    if (isInterrupted()) {
        // The application has heard of the end; this thread only lets that path finish first.
        static_cast<void>(initCReqErrorSendCompletetionSemaphore_->wait(kLongestWaitForTimeout));
        return;
    }
    processInitResult(result);
}

bool ChallengeFlow::openSecureChannelOrTell() {
    try {
        exchange_->openSecureChannel();
        return true;
    } catch (const std::exception& error) {
        const ChannelFailure failure = describeChannelFailure(error);
        cancelChallengeTimer();
        if (failure.isVerification)
            exchange_->sendErroIfPossible(exchange_->createErroIfPossible(
                KorvaneError::getErrorByCode(ProtocolErrorCode::notDecrypted)));
        onMainQueue([self = shared_from_this(), text = failure.text] {
            KORVANE_LOG(kInner, text);
            self->endWithRuntimeError(text);
        });
        return false;
    }
}

void ChallengeFlow::processInitResult(const CReqSendingResult& result) {
    if (result.cres) {
        try {
            processInitCRes(*result.cres);
        } catch (const std::exception& error) {
            endStart(kInner, "Can not process init CReq: " + genericDescription(error));
        }
    } else if (result.erro) {
        cancelChallengeTimer();
        if (!result.receivedError) exchange_->sendErroIfPossible(result.erro);
        onMainQueue([self = shared_from_this(), erro = *result.erro] { self->tellProtocolError(erro); });
    } else {
        endStart(kInner, result.errorDescription.value_or("Unknown error"));
    }
}

/// A start that failed has nothing on the screen to take away.
void ChallengeFlow::endStart(const char* function, const std::string& text) {
    cancelChallengeTimer();
    onMainQueue([self = shared_from_this(), function, text] {
        KORVANE_LOG(function, text);
        self->tellRuntimeError(text);
    });
}

void ChallengeFlow::processInitCRes(const CRes& cRes) {
    const UIImagePtr psImage = loadLogo(*exchange_, cRes.psImage);
    const UIImagePtr bankImage = loadLogo(*exchange_, cRes.issuerImage);
    vcFactory_.set(std::make_shared<VCFactory>(psImage, bankImage, look_.uiCustomization,
                                               look_.uiCustomizationConstraints));
    onMainQueue([self = shared_from_this(), cRes] { self->presentRootChallengeVc(cRes); });
}

} // namespace korvane
