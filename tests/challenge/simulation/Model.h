#pragma once

#include "Sdk/Messages/CReq.h"
#include "tests/challenge/simulation/Plan.h"

#include <array>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace korvane::simulation {

/// Something that the application or the ACS noticed.
struct Line {
    Time at;
    std::string text;

    friend bool operator==(const Line&, const Line&) = default;
};

using Record = std::vector<Line>;

/// What the record calls the transaction's identifier, in upper and in lower case.
inline constexpr const char* kUpperId = "ID";
inline constexpr const char* kLowerId = "id";

[[nodiscard]] std::string describe(const CReq& cReq);
[[nodiscard]] std::string describeErro(const std::string& code, const std::string& details);

/// What must happen in a story, told from the rules of a challenge alone: virtual time, one main queue whose
/// work waits while an exchange holds it, and everything else at once. The cardholder's deeds come from
/// outside, at moments at which the main queue is free; all else follows from the plan.
class Model {
public:
    explicit Model(const Plan& plan);
    Model(const Model&) = delete;
    Model& operator=(const Model&) = delete;

    /// Everything up to a moment, that one included.
    void runTo(Time moment);
    /// Everything, however late.
    void runToTheEnd() { runTo(Time::max()); }
    /// At the end the application takes away what stands, and forgets the transaction.
    void leave();

    // What is seen.

    struct Shown {
        std::string uiType;
        bool isLandscape = false;
        std::size_t depth = 0;
        std::string typed;
        bool hasSpinner = false;

        friend bool operator==(const Shown&, const Shown&) = default;
    };
    /// The top screen; no value if none stands.
    [[nodiscard]] std::optional<Shown> shown() const;
    /// Whether the screens are on their way off and may have changed places: a turn that the main queue heard
    /// of late, and the answer that came meanwhile, are handled in any order.
    [[nodiscard]] bool isBlurred() const { return hasLateTurn_ && (isEnded() || isDismissing_); }
    /// Whether nothing runs that could bring another screen.
    [[nodiscard]] bool isQuiet() const { return running_ == 0; }
    [[nodiscard]] bool isMainHeld() const { return isMainHeld_; }
    [[nodiscard]] const Record& record() const { return record_; }
    /// The endings that the rules allow, one more for each that follows another.
    [[nodiscard]] std::size_t allowedEndings() const { return allowedEndings_; }

    // What the cardholder does to the top screen.

    void type(const std::string& text) { top().text = text; }
    void choose(std::size_t option);
    void tick() { top().isTicked = !top().isTicked; }
    void submit();
    void resend();
    void next();
    void goOn();
    void cancel();
    /// The page's form, or a call that is none of a form.
    void post(const std::optional<std::string>& data);

private:
    using Work = std::function<void()>;
    using Hold = std::shared_ptr<const int>;

    enum class Way { portrait, landscape };
    struct Face {
        std::string text;
        std::array<bool, 3> isChosen{};
        bool isTicked = false;
        bool hasSpinner = false;
    };
    struct Step {
        PlannedScreen screen;
        std::array<Face, 2> faces;
    };
    struct Standing {
        std::shared_ptr<Step> step;
        Way way = Way::portrait;

        [[nodiscard]] Face& face() const { return step->faces[static_cast<std::size_t>(way)]; }
        friend bool operator==(const Standing&, const Standing&) = default;
    };
    struct Timer {
        bool isCancelled = false;
    };
    /// The container of the screens. It can be there still when they have gone: a change of its stack keeps
    /// it until it has been seen.
    struct Root {
        Hold transaction;
    };
    struct Outcome {
        bool isDropped = false;
        Verdict verdict;
        PlannedScreen screen;
        std::string status;
    };
    enum class Thread { main, global };

    // Time.
    void after(Time span, Work work);
    void onMain(Work work) { main_.push_back(std::move(work)); }
    void holdMain(Time span, Work work);
    void pump();
    [[nodiscard]] Hold hold() const { return life_.lock(); }

    // The start.
    void start();
    void startFailed(const std::string& text);
    void challengeTimerFires(const std::shared_ptr<Timer>& timer);
    void challengeTimedOut();
    void firstOutcome(const Outcome& outcome);
    void presentFirst(const PlannedScreen& screen);

    // Exchanges.
    [[nodiscard]] CReq request() const;
    void act(const Hold& hold, Thread thread, const CReq& fields, bool isCancel);
    void exchange(Thread thread, const CReq& cReq, std::function<void(const Outcome&)> then);
    [[nodiscard]] Outcome judge(const Reply& reply, bool isFirst, int counter);
    void armResponseTimer();
    void cancelResponseTimer();
    void process(const Outcome& outcome);
    void show(const PlannedScreen& screen);
    /// Holds the thread until the ACS has answered.
    void sendErro(Thread thread, const std::string& code, const std::string& details, Work then);

    // Screens and endings.
    void complete(const std::string& ending, bool isError);
    void fail(const std::string& text);
    void dismiss(Work then);
    void endDismissal();
    void changeStack(const Standing& to);
    void endChange() {
        changing_.reset();
        leaving_.reset();
    }
    void takeAway();
    /// Whether the container has the face, on its stack or on its way off that.
    [[nodiscard]] bool holds(const Standing& face) const;
    [[nodiscard]] bool hasRoot() const { return !root_.expired(); }
    [[nodiscard]] bool isEnded() const { return hasRoot() && ended_.lock() == root_.lock(); }
    void tell(const std::string& ending);
    void cancelChallengeTimer();
    void hideSpinner();
    void turned();
    void swapWay();
    [[nodiscard]] std::optional<Way> wayHeld() const;
    [[nodiscard]] std::optional<Standing> faceFor(Way way) const;
    void copyText(const Standing& from, const std::optional<Standing>& to) const;
    [[nodiscard]] Face& top() { return stack_.back().face(); }
    void sendLater(Thread thread, const CReq& fields);

    const Plan& plan_;
    Time now_{0};
    std::multimap<Time, Work> events_;
    std::deque<Work> main_;
    bool isMainHeld_ = false;
    Record record_;

    // Who keeps the transaction: the application, the screens, and all work for it. The timers do not.
    Hold application_ = std::make_shared<const int>(0);
    std::weak_ptr<const int> life_ = application_;
    std::shared_ptr<Root> presented_;
    std::weak_ptr<Root> root_;
    std::weak_ptr<Root> ended_;
    std::shared_ptr<Root> changing_;
    std::optional<Standing> leaving_;

    std::size_t requests_ = 0;
    int counter_ = 0;
    int running_ = 0;
    std::size_t allowedEndings_ = 1;
    bool hasLateTurn_ = false;
    bool isInterrupted_ = false;
    bool triesAgain_ = false;
    bool isUpdating_ = true;
    bool holdsBoth_ = false;
    bool listens_ = false;
    bool isDismissing_ = false;
    Work afterDismissal_;
    std::shared_ptr<int> dismissal_;
    std::shared_ptr<int> change_;
    bool startsWithPage_ = false;
    Way lastWay_ = Way::portrait;
    UIDeviceOrientation held_;
    std::shared_ptr<Timer> challengeTimer_;
    std::shared_ptr<Timer> responseTimer_;
    std::shared_ptr<Step> latest_;
    std::vector<Standing> stack_;
};

} // namespace korvane::simulation
