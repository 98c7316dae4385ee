#include "Sdk/Transaction/Transaction.h"

#include "Platform/LetterCase.h"
#include "Platform/Logger.h"
#include "Platform/Platform.h"
#include "Ui/Screens/ChallengeViewController.h"

#include <utility>

namespace korvane {

void Transaction::completeChallengeSuccessfully(TransactionStatus status) {
    completeChallenge([self = shared_from_this(), status] {
        if (const auto receiver = self->challengeStatusReceiver_.get())
            receiver->completed(
                CompletionEvent(lowercased(self->sdkTransactionID_), std::string(rawValue(status))));
    });
}

void Transaction::completeChallengeWithCancel() {
    completeChallenge([self = shared_from_this()] {
        if (const auto receiver = self->challengeStatusReceiver_.get()) receiver->cancelled();
    });
}

void Transaction::completeChallengeWithProtocolError(const Erro& erro) {
    completeChallenge([self = shared_from_this(), erro] {
        self->removeOrientationListener();
        self->tellProtocolError(erro);
    });
}

void Transaction::completeChallengeWithError(const std::string& text) {
    completeChallenge([self = shared_from_this(), text] { self->sendRuntimeErrorToApp(text); });
}

void Transaction::endWithError(const char* function, const std::string& text) {
    KORVANE_LOG(function, text);
    completeChallengeWithError(text);
}

/// The one exit. Without a screen that can go, nothing is told; nor is a second end while the first one's
/// screens are on their way off.
void Transaction::completeChallenge(std::function<void()> tell) {
    if (!Platform::current().dispatch().mainQueue().isCurrent()) {
        onMainQueue([self = shared_from_this(), tell = std::move(tell)]() mutable {
            self->completeChallenge(std::move(tell));
        });
        return;
    }
    hideSpinner();
    cancelChallengeTimer();
    onMainQueue([self = shared_from_this(), tell = std::move(tell)] {
        const auto root = self->challengeRootVC_.lock();
        if (root && !std::exchange(self->isEnded_, true)) root->dismiss(UIAnimated::yes, tell);
    });
}

void Transaction::hideSpinner() {
    if (const auto screen = topController<ChallengeViewController>()) screen->hideSpinner();
}

void Transaction::cancelChallengeTimer() {
    if (const auto task = challengeTimeoutTask_.exchange(nullptr)) task->cancel();
}

void Transaction::sendRuntimeErrorToApp(const std::string& text) {
    isEnded_ = true;
    removeOrientationListener();
    tellRuntimeError(text);
}

void Transaction::tellRuntimeError(const std::string& text) {
    constexpr const char* kCode = "-1";
    if (const auto receiver = challengeStatusReceiver_.get())
        receiver->runtimeError(RuntimeErrorEvent(kCode, text));
}

void Transaction::tellProtocolError(const Erro& erro) {
    if (const auto receiver = challengeStatusReceiver_.get())
        receiver->protocolError(ProtocolErrorEvent(sdkTransactionID_, convertErroToErrorMessage(erro)));
}

} // namespace korvane
