#include "tests/challenge/simulation/Model.h"

#include "tests/support/Messages.h"

#include <algorithm>
#include <utility>

namespace korvane::simulation {

namespace {

constexpr Time kResponseLimit = seconds(10);
constexpr Time kExchangeLimit = seconds(12);
constexpr const char* kTimeout = "Timeout expiry reached for the transaction as defined in Section 5.5.";

constexpr const char* kNoContent = "Can not get acsURL from AcsSignedContent: ";
constexpr const char* kNotVerified = "Can not verification AcsSignedContent: ";

std::string generic(const char* failure) {
    return std::string("The operation couldn\u2019t be completed. (Korvane.") + failure + ".)";
}

/// How a start fails, and whether the ACS hears of it.
struct StartFailure {
    std::string text;
    bool isToldToAcs = false;
};

std::optional<StartFailure> failureOf(StartFault fault) {
    switch (fault) {
    case StartFault::none: break;
    case StartFault::noContent:
        return StartFailure{kNoContent + std::string("InvalidInputException: acsSignedContent is empty.")};
    case StartFault::noJWS: return StartFailure{kNoContent + generic("JOSEError error 5")};
    case StartFault::badSignature: return StartFailure{kNotVerified + generic("JOSEError error 9"), true};
    case StartFault::strangersChain:
        return StartFailure{kNotVerified + std::string("SecTrust cert chain validation fail."), true};
    case StartFault::noAcsTransID:
        return StartFailure{"Can not get init CReq data: " + generic("SdkError error 0")};
    }
    return std::nullopt;
}

/// With good values this time: but an agreement that was reached before has used the key up.
std::optional<StartFailure> failureOfTheNextStart(StartFault before) {
    if (before != StartFault::noAcsTransID) return std::nullopt;
    return StartFailure{kNoContent + std::string("InvalidInputException: Can not get private key from "
                                                 "ephemeral KeyPair.")};
}

} // namespace

std::string describe(const CReq& cReq) {
    return "ACS: " + cReq.jsonString().text();
}

std::string describeErro(const std::string& code, const std::string& details) {
    return "ACS: Erro " + code + ", " + details;
}

Model::Model(const Plan& plan) : plan_(plan), held_(plan.heldAtFirst) {
    after(Time{0}, [this] { start(); });
    for (const Turn& turn : plan.turns)
        after(turn.at, [this, &turn] {
            held_ = turn.to;
            onMain([this, at = now_] {
                hasLateTurn_ = hasLateTurn_ || at != now_;
                turned();
            });
        });
    if (plan.dismissal) after(*plan.dismissal, [this] { onMain([this] { takeAway(); }); });
}

// Time.

void Model::after(Time span, Work work) {
    events_.emplace(now_ + span, std::move(work));
}

void Model::runTo(Time moment) {
    while (!events_.empty() && events_.begin()->first <= moment) {
        now_ = events_.begin()->first;
        const Work work = events_.extract(events_.begin()).mapped();
        work();
        pump();
    }
    if (moment != Time::max()) now_ = moment;
}

void Model::pump() {
    while (!isMainHeld_ && !main_.empty()) {
        const Work work = std::move(main_.front());
        main_.pop_front();
        work();
    }
}

/// To be the last that a piece of the main queue's work does.
void Model::holdMain(Time span, Work work) {
    isMainHeld_ = true;
    after(span, [this, work = std::move(work)] {
        isMainHeld_ = false;
        work();
    });
}

void Model::leave() {
    takeAway();
    application_.reset();
    pump();
    runToTheEnd();
}

// The start.

void Model::start() {
    const auto timer = challengeTimer_ = std::make_shared<Timer>();
    after(std::chrono::minutes(plan_.minutes), [this, timer] {
        if (!timer->isCancelled && !life_.expired()) challengeTimerFires(timer);
    });
    if (const auto failure =
            triesAgain_ ? failureOfTheNextStart(plan_.startFault) : failureOf(plan_.startFault)) {
        cancelChallengeTimer();
        const auto tellIt = [this, self = hold(), text = failure->text] { startFailed(text); };
        if (failure->isToldToAcs)
            sendErro(Thread::global, "302", "Data could not decrypt.", tellIt);
        else
            tellIt();
    } else {
        exchange(Thread::global, request(),
                 [this, self = hold()](const Outcome& outcome) { firstOutcome(outcome); });
    }
    if (!plan_.keepsTransaction) application_.reset();
}

void Model::startFailed(const std::string& text) {
    cancelChallengeTimer();
    onMain([this, self = hold(), text] {
        tell("runtimeError(-1, " + text + ")");
        if (plan_.triesAgain && !std::exchange(triesAgain_, true)) {
            ++allowedEndings_;
            start();
        }
    });
}

void Model::challengeTimerFires(const std::shared_ptr<Timer>& timer) {
    onMain([this, timer] {
        if (!life_.expired() && !timer->isCancelled) challengeTimedOut();
    });
}

/// Without screens the story goes on, to an ending of its own.
void Model::challengeTimedOut() {
    tell("timedout");
    if (!hasRoot()) {
        ++allowedEndings_;
        return;
    }
    ended_ = root_;
    dismiss([this, self = hold()] {
        isInterrupted_ = true;
        cancelResponseTimer();
        sendErro(Thread::global, "402", kTimeout, [] {});
    });
}

void Model::firstOutcome(const Outcome& outcome) {
    const Verdict& verdict = outcome.verdict;
    const std::string ending = "protocolError(ID, " + verdict.code + ", " + verdict.text + ")";
    const auto tellIt = [this, self = hold(), ending] { onMain([this, self, ending] { tell(ending); }); };
    switch (verdict.kind) {
    case Verdict::Kind::screen: {
        const PlannedScreen& screen = outcome.screen;
        if (screen.logos > 0 && screen.hasBadLogo)
            return startFailed("Can not process init CReq: " + generic("SdkError error 0"));
        after(std::min(plan_.imageDelay, kExchangeLimit) * screen.logos,
              [this, self = hold(), screen] { onMain([this, self, screen] { presentFirst(screen); }); });
        return;
    }
    case Verdict::Kind::madeErro:
        cancelChallengeTimer();
        return sendErro(Thread::global, verdict.code, verdict.text, tellIt);
    case Verdict::Kind::receivedErro: cancelChallengeTimer(); return tellIt();
    case Verdict::Kind::status:
    case Verdict::Kind::failure: return startFailed(verdict.text);
    }
}

// Exchanges.

CReq Model::request() const {
    CReq cReq;
    cReq.threeDSServerTransID = kServerTransID;
    cReq.acsTransID = kAcsTransID;
    cReq.messageVersion = plan_.messageVersion;
    cReq.sdkTransID = kLowerId;
    cReq.sdkCounterStoA = "00" + std::to_string(counter_);
    if (plan_.hasRequestorURL) cReq.threeDSRequestorAppURL = kRequestorURL;
    return cReq;
}

/// An action's own part of a request comes with `fields`.
void Model::act(const Hold& self, Thread thread, const CReq& fields, bool isCancel) {
    if (isInterrupted_) {
        --running_;
        return;
    }
    ++counter_;
    if (!isCancel) isUpdating_ = true;
    CReq cReq = request();
    cReq.challengeCancel = fields.challengeCancel;
    cReq.challengeDataEntry = fields.challengeDataEntry;
    cReq.challengeHTMLDataEntry = fields.challengeHTMLDataEntry;
    cReq.challengeNoEntry = fields.challengeNoEntry;
    cReq.oobContinue = fields.oobContinue;
    cReq.resendChallenge = fields.resendChallenge;
    cReq.whitelistingDataEntry = fields.whitelistingDataEntry;
    exchange(thread, cReq, [this, self, isCancel](const Outcome& outcome) {
        --running_;
        if (isCancel) return complete("cancelled", false);
        if (!outcome.isDropped) onMain([this, self, outcome] { process(outcome); });
    });
}

void Model::exchange(Thread thread, const CReq& cReq, std::function<void(const Outcome&)> then) {
    armResponseTimer();
    record_.push_back({now_, describe(cReq)});
    const bool isFirst = requests_ == 0;
    const Reply& reply = plan_.reply(requests_++);
    const bool isLost = reply.kind == ReplyKind::silence || reply.delay > kExchangeLimit;
    const Time span = isLost ? kExchangeLimit : reply.delay;
    const auto arrive = [this, &reply, isFirst, counter = counter_, then = std::move(then)] {
        then(judge(reply, isFirst, counter));
    };
    if (thread == Thread::main)
        holdMain(span, arrive);
    else
        after(span, arrive);
}

/// A failure of the connection leaves the timer of the response as it is.
Model::Outcome Model::judge(const Reply& reply, bool isFirst, int counter) {
    Outcome outcome{false, {}, reply.screen, reply.status};
    if (isInterrupted_) {
        outcome.isDropped = true;
        return outcome;
    }
    Reply arrived = reply;
    if (reply.delay > kExchangeLimit) arrived.kind = ReplyKind::silence;
    outcome.verdict = verdictOn(arrived, isFirst, counter == counter_);
    if (arrived.kind != ReplyKind::noConnection) cancelResponseTimer();
    return outcome;
}

void Model::armResponseTimer() {
    const auto timer = responseTimer_ = std::make_shared<Timer>();
    after(kResponseLimit, [this, timer] {
        if (timer->isCancelled || life_.expired()) return;
        onMain([this] {
            if (!life_.expired() && hasRoot()) dismiss({});
        });
    });
}

void Model::cancelResponseTimer() {
    if (const auto timer = std::exchange(responseTimer_, nullptr)) timer->isCancelled = true;
}

void Model::cancelChallengeTimer() {
    if (const auto timer = std::exchange(challengeTimer_, nullptr)) timer->isCancelled = true;
}

void Model::sendErro(Thread thread, const std::string& code, const std::string& details, Work then) {
    record_.push_back({now_, describeErro(code, details)});
    const Time span = std::min(plan_.erroDelay.value_or(kExchangeLimit), kExchangeLimit);
    const auto whenDone = [self = hold(), then = std::move(then)] { then(); };
    if (thread == Thread::main)
        holdMain(span, whenDone);
    else
        after(span, whenDone);
}

void Model::process(const Outcome& outcome) {
    const Verdict& verdict = outcome.verdict;
    const std::string error = "protocolError(ID, " + verdict.code + ", " + verdict.text + ")";
    switch (verdict.kind) {
    case Verdict::Kind::screen: show(outcome.screen); break;
    case Verdict::Kind::status: complete("completed(id, " + outcome.status + ")", false); break;
    case Verdict::Kind::madeErro:
        return sendErro(Thread::main, verdict.code, verdict.text, [this, error] {
            complete(error, true);
            isUpdating_ = false;
        });
    case Verdict::Kind::receivedErro: complete(error, true); break;
    case Verdict::Kind::failure: fail(verdict.text); break;
    }
    isUpdating_ = false;
}

} // namespace korvane::simulation
