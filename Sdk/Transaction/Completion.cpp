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
    completeChallenge([self = shared_from_this(), text] { self->endWithRuntimeError(text); });
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
    onMainQueue([self = shared_from_this(), tell = std::move(tell)] {
        self->cancelChallengeTimer();
        const auto root = self->challengeRootVC_.lock();
        if (!root || self->isEnded(root)) return;
        self->endedRootVC_ = root;
        root->dismiss(UIAnimated::yes, tell);
    });
}

/// Each presentation of screens has one end, so that a challenge that is started anew has its own.
bool Transaction::isEnded(const std::shared_ptr<ChallengeRootNavigationController>& root) const {
    return endedRootVC_.lock() == root;
}

void Transaction::hideSpinner() {
    if (const auto screen = topController<ChallengeViewController>()) screen->hideSpinner();
}

void Transaction::cancelChallengeTimer() {
    if (const auto task = challengeTimeoutTask_.exchange(nullptr)) task->cancel();
}

/// From a screen: its exchange, if one is under way, has no end of its own any more.
void Transaction::sendRuntimeErrorToApp(const std::string& text) {
    endedRootVC_ = challengeRootVC_;
    endWithRuntimeError(text);
}

void Transaction::endWithRuntimeError(const std::string& text) {
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
