#include "Sdk/Transaction/ChallengeFlow.h"

#include "Platform/LetterCase.h"
#include "Platform/Logger.h"
#include "Platform/Platform.h"
#include "Ui/Screens/Later.h"

#include <utility>

namespace korvane {

void ChallengeFlow::completeChallengeSuccessfully(TransactionStatus status) {
    completeChallenge([self = shared_from_this(), status] {
        if (const auto receiver = self->challengeStatusReceiver_.get())
            receiver->completed(CompletionEvent(lowercased(self->exchange_->sdkTransactionID()),
                                                std::string(rawValue(status))));
    });
}

void ChallengeFlow::completeChallengeWithCancel() {
    completeChallenge([self = shared_from_this()] {
        if (const auto receiver = self->challengeStatusReceiver_.get()) receiver->cancelled();
    });
}

void ChallengeFlow::completeChallengeWithProtocolError(const Erro& erro) {
    completeChallenge([self = shared_from_this(), erro] {
        self->screens_->removeOrientationListener();
        self->tellProtocolError(erro);
    });
}

void ChallengeFlow::completeChallengeWithError(const std::string& text) {
    completeChallenge([self = shared_from_this(), text] { self->endWithRuntimeError(text); });
}

void ChallengeFlow::endWithError(const char* function, const std::string& text) {
    KORVANE_LOG(function, text);
    completeChallengeWithError(text);
}

/// The one exit. Without a screen that can go, nothing is told; nor is a second end while the first one's
/// screens are on their way off.
void ChallengeFlow::completeChallenge(std::function<void()> tell) {
    if (!Platform::current().dispatch().mainQueue().isCurrent()) {
        onMainQueue([self = shared_from_this(), tell = std::move(tell)]() mutable {
            self->completeChallenge(std::move(tell));
        });
        return;
    }
    screens_->hideSpinner();
    onMainQueue([self = shared_from_this(), tell = std::move(tell)] {
        self->cancelChallengeTimer();
        if (!self->screens_->stands() || self->hasEnded()) return;
        self->enter(State::ended);
        self->screens_->dismiss(tell);
    });
}

void ChallengeFlow::cancelChallengeTimer() {
    if (const auto task = challengeTimeoutTask_.exchange(nullptr)) task->cancel();
}

/// From a screen: its exchange, if one is under way, has no end of its own any more.
void ChallengeFlow::sendRuntimeErrorToApp(const std::string& text) {
    if (screens_->stands()) enter(State::ended);
    endWithRuntimeError(text);
}

void ChallengeFlow::endWithRuntimeError(const std::string& text) {
    screens_->removeOrientationListener();
    tellRuntimeError(text);
}

void ChallengeFlow::tellRuntimeError(const std::string& text) {
    constexpr const char* kCode = "-1";
    if (const auto receiver = challengeStatusReceiver_.get())
        receiver->runtimeError(RuntimeErrorEvent(kCode, text));
}

void ChallengeFlow::tellProtocolError(const Erro& erro) {
    if (const auto receiver = challengeStatusReceiver_.get())
        receiver->protocolError(
            ProtocolErrorEvent(exchange_->sdkTransactionID(), convertErroToErrorMessage(erro)));
}

} // namespace korvane
