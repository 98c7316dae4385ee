#pragma once

#include "Sdk/Messages/CReq.h"
#include "tests/challenge/simulation/ModelScreens.h"
#include "tests/support/Messages.h"

namespace korvane::simulation {

/// What the record calls the transaction's identifier, in upper and in lower case.
inline constexpr const char* kUpperId = "ID";
inline constexpr const char* kLowerId = "id";

inline std::string describe(const CReq& cReq) {
    return "ACS: " + cReq.jsonString().text();
}

inline std::string describeErro(const std::string& code, const std::string& details) {
    return "ACS: Erro " + code + ", " + details;
}

/// What must happen in a story, told from the rules of a challenge alone. The cardholder's deeds come from
/// outside, at moments at which the main queue is free; all else follows from the plan.
class Model : public ModelScreens {
public:
    explicit Model(const Plan& plan) : ModelScreens(plan) {
        after(Time{0}, [this] { start(); });
    }

    /// At the end the application takes away what stands, and forgets the transaction.
    void leave() {
        takeAway();
        application_.reset();
        pump();
        runToTheEnd();
    }

    /// Whether nothing runs that could bring another screen.
    [[nodiscard]] bool isQuiet() const { return running_ == 0; }
    [[nodiscard]] const Record& record() const { return record_; }

    // What the cardholder does to the top screen.

    void type(const std::string& text) { face().text = text; }
    void tick() { face().isTicked = !face().isTicked; }

    void choose(std::size_t option) {
        auto& chosen = face().isChosen;
        const bool isAnother = top().screen().uiType != "03" || !chosen[option];
        if (top().screen().uiType != "03") chosen.fill(false);
        chosen[option] = isAnother;
    }

    void submit() {
        if (face().text.empty()) return;
        send(Thread::main, [text = face().text](CReq& cReq) { cReq.challengeDataEntry = text; });
    }

    void resend() {
        send(Thread::main, [](CReq& cReq) { cReq.resendChallenge = YesNoSelector::Y; });
    }

    /// With nothing chosen a list of one choice spins and sends nothing.
    void next() {
        constexpr std::array kOptionKeys{"phone", "mail", "letter"};
        std::string keys;
        for (std::size_t option = 0; option < kOptionKeys.size(); ++option)
            if (face().isChosen[option]) keys += (keys.empty() ? "" : ",") + std::string(kOptionKeys[option]);
        face().hasSpinner = true;
        if (keys.empty() && top().screen().uiType == "02") return;
        send(Thread::global, [keys](CReq& cReq) {
            if (keys.empty())
                cReq.challengeNoEntry = YesNoSelector::Y;
            else
                cReq.challengeDataEntry = keys;
        });
    }

    void goOn() {
        send(Thread::global, [](CReq& cReq) { cReq.oobContinue = true; });
    }

    void cancel() {
        ++running_;
        act(
            hold(), Thread::main,
            [](CReq& cReq) { cReq.challengeCancel = ChallengeCancelationInd::CARDHOLDER_SELECTED_CANCEL; },
            true);
    }

    /// The page's form, or a call that is none of a form.
    void post(const std::optional<std::string>& data) {
        if (data) return send(Thread::global, [data](CReq& cReq) { cReq.challengeHTMLDataEntry = *data; });
        face().hasSpinner = true;
        ++running_;
        after(kSpinnerTime, [this, self = hold(), page = top()] {
            onMain([this, page] {
                --running_;
                if (!holds(page)) return;
                page.face().hasSpinner = false;
                listens_ = false;
                ended_ = root_;
                tell(runtimeError("Html form made incorrect call."));
                dismiss({});
            });
        });
    }

private:
    static constexpr Time kExchangeLimit = seconds(12);
    static constexpr Time kSpinnerTime = seconds(1);

    /// Whether it has been cancelled.
    using Timer = std::shared_ptr<bool>;
    /// Writes an action's own part of a request.
    using Fill = std::function<void(CReq& cReq)>;
    struct Outcome {
        bool isDropped;
        Verdict verdict;
        const Reply& reply;
    };
    enum class Thread { main, global };

    static std::string runtimeError(const std::string& text) { return "runtimeError(-1, " + text + ")"; }

    // The start.

    void start() {
        arm(challengeTimer_, std::chrono::minutes(plan_.minutes), [this](bool isCancelled) {
            if (!isCancelled) challengeTimedOut();
        });
        const StartFault& fault = *plan_.startFault;
        const std::string& text = triesAgain_ ? fault.nextText : fault.text;
        const auto tellIt = [this, self = hold(), &text] { endStart(runtimeError(text)); };
        if (!text.empty()) cancel(challengeTimer_);
        if (text.empty())
            exchange(Thread::global, request(),
                     [this, self = hold()](const Outcome& outcome) { process(outcome, true); });
        else if (fault.isToldToAcs && !triesAgain_)
            sendErro(Thread::global, {{}, "302", "Data could not decrypt."}, tellIt);
        else
            tellIt();
        if (!plan_.keepsTransaction) application_.reset();
    }

    void endStart(const std::string& ending) {
        cancel(challengeTimer_);
        onMain([this, self = hold(), ending] {
            tell(ending);
            if (plan_.triesAgain && !std::exchange(triesAgain_, true)) start();
        });
    }

    /// Without screens the story goes on, to an ending of its own.
    void challengeTimedOut() {
        tell("timedout");
        if (!hasRoot()) return;
        ended_ = root_;
        dismiss([this, self = hold()] {
            isInterrupted_ = true;
            cancel(responseTimer_);
            const char* text = "Timeout expiry reached for the transaction as defined in Section 5.5.";
            sendErro(Thread::global, {{}, "402", text}, [] {});
        });
    }

    void showFirst(const PlannedScreen& screen) {
        if (screen.logos > 0 && screen.hasBadLogo)
            return endStart(runtimeError("Can not process init CReq: " + generic("SdkError error 0")));
        after(std::min(plan_.imageDelay, kExchangeLimit) * screen.logos, [this, self = hold(), &screen] {
            onMain([this, self, &screen] {
                startsWithPage_ = screen.isPage();
                if (screen.isUndecodable)
                    return endStart(runtimeError("Got error on challenge VC init from CRes: " +
                                                 generic("SdkError error 5")));
                present(screen);
                isUpdating_ = false;
            });
        });
    }

    // Exchanges.

    /// The answer about whitelisting is the one that the screen has when something is sent. A page has its
    /// own, and a wish for another code goes without it.
    void send(Thread thread, Fill fill) {
        face().hasSpinner = true;
        ++running_;
        const auto sendNow = [this, self = hold(), thread, fill = std::move(fill), from = top()] {
            const auto fillAll = [&](CReq& cReq) {
                fill(cReq);
                const PlannedScreen& screen = from.screen();
                if (screen.asksForWhitelisting && !screen.isPage() && !cReq.resendChallenge)
                    cReq.whitelistingDataEntry = from.face().isTicked ? YesNoSelector::Y : YesNoSelector::N;
            };
            act(self, thread, fillAll, false);
        };
        after(kSpinnerTime,
              [this, thread, sendNow] { return thread == Thread::global ? sendNow() : onMain(sendNow); });
    }

    void act(const Hold& self, Thread thread, const Fill& fill, bool isCancel) {
        if (isInterrupted_) {
            --running_;
            return;
        }
        ++counter_;
        if (!isCancel) isUpdating_ = true;
        CReq cReq = request();
        fill(cReq);
        exchange(thread, cReq, [this, self, isCancel](const Outcome& outcome) {
            --running_;
            if (isCancel) return complete("cancelled", false);
            if (!outcome.isDropped) onMain([this, self, outcome] { process(outcome, false); });
        });
    }

    [[nodiscard]] CReq request() const {
        CReq cReq;
        cReq.threeDSServerTransID = kServerTransID;
        cReq.acsTransID = kAcsTransID;
        cReq.messageVersion = plan_.messageVersion;
        cReq.sdkTransID = kLowerId;
        cReq.sdkCounterStoA = "00" + std::to_string(counter_);
        if (plan_.hasRequestorURL) cReq.threeDSRequestorAppURL = kRequestorURL;
        return cReq;
    }

    void exchange(Thread thread, const CReq& cReq, std::function<void(const Outcome&)> then) {
        arm(responseTimer_, seconds(10), [this](bool) {
            if (hasRoot()) dismiss({});
        });
        record_.push_back({now(), describe(cReq)});
        const bool isFirst = requests_ == 0;
        const Reply& reply = plan_.reply(requests_++);
        wait(thread, reply.kind == kSilence ? kExchangeLimit : std::min(reply.delay, kExchangeLimit),
             [this, &reply, isFirst, counter = counter_, then = std::move(then)] {
                 then(judge(reply, isFirst, counter));
             });
    }

    /// A failure of the connection leaves the timer of the response as it is.
    [[nodiscard]] Outcome judge(const Reply& reply, bool isFirst, int counter) {
        if (isInterrupted_) return {true, {}, reply};
        Reply arrived = reply;
        if (reply.delay > kExchangeLimit) arrived.kind = kSilence;
        if (arrived.kind != kNoConnection) cancel(responseTimer_);
        return {false, verdictOn(arrived, isFirst, counter == counter_), reply};
    }

    void wait(Thread thread, Time span, Work then) {
        return thread == Thread::main ? holdMain(span, std::move(then)) : after(span, std::move(then));
    }

    void sendErro(Thread thread, const Verdict& error, Work then) {
        record_.push_back({now(), describeErro(error.code, error.text)});
        wait(thread, std::min(plan_.erroDelay.value_or(kExchangeLimit), kExchangeLimit),
             [self = hold(), then = std::move(then)] { then(); });
    }

    void process(const Outcome& outcome, bool isFirst) {
        using enum Verdict::Kind;
        const auto& [kind, code, text] = outcome.verdict;
        const PlannedScreen& planned = outcome.reply.screen;
        if (kind == screen) return isFirst ? showFirst(planned) : show(planned);
        if (isFirst) cancel(challengeTimer_);
        const std::string ending = kind == status    ? "completed(id, " + outcome.reply.status + ")"
                                   : kind == failure ? runtimeError(text)
                                                     : "protocolError(ID, " + code + ", " + text + ")";
        const auto end = [this, self = hold(), isFirst, ending, isError = kind != status] {
            if (isFirst) return endStart(ending);
            complete(ending, isError);
            isUpdating_ = false;
        };
        if (kind != madeErro) return end();
        sendErro(isFirst ? Thread::global : Thread::main, outcome.verdict, end);
    }

    void show(const PlannedScreen& screen) {
        isUpdating_ = false;
        const std::string during = "Can not create challenge VC: ";
        if (startsWithPage_ && !screen.isPage()) return fail(during + generic("SdkError error 1"));
        if (screen.isUndecodable) return fail(during + generic("SdkError error 5"));
        if (startsWithPage_) {
            // The page changes in its place.
            if (!hasRoot()) return fail("Can not get top challenge HTML view controller.");
            return hideSpinner();
        }
        remember(screen);
        const auto next = nextFace();
        if (!next) return fail("Can not get challenge VC from ViewControllerContainer.");
        onMain([this, self = hold(), next] {
            hideSpinner();
            if (hasRoot()) changeStack(*next);
        });
    }

    // Timers and endings.

    void arm(Timer& timer, Time span, std::function<void(bool isCancelled)> work) {
        timer = std::make_shared<bool>(false);
        after(span, [this, isCancelled = timer, work = std::move(work)] {
            if (*isCancelled || life_.expired()) return;
            onMain([this, isCancelled, work] {
                if (!life_.expired()) work(*isCancelled);
            });
        });
    }

    static void cancel(Timer& timer) {
        if (const auto isCancelled = std::exchange(timer, nullptr)) *isCancelled = true;
    }

    void complete(const std::string& ending, bool isError) {
        hideSpinner();
        onMain([this, self = hold(), ending, isError] {
            cancel(challengeTimer_);
            if (!hasRoot() || isEnded()) return;
            ended_ = root_;
            dismiss([this, self, ending, isError] {
                if (isError) listens_ = false;
                tell(ending);
            });
        });
    }

    void fail(const std::string& text) { complete(runtimeError(text), true); }
    void tell(const std::string& ending) { record_.push_back({now(), "application: " + ending}); }
    [[nodiscard]] Face& face() { return top().face(); }

    Record record_;
    std::size_t requests_ = 0;
    int counter_ = 0;
    int running_ = 0;
    bool isInterrupted_ = false;
    bool triesAgain_ = false;
    bool startsWithPage_ = false;
    Timer challengeTimer_;
    Timer responseTimer_;
};

} // namespace korvane::simulation
