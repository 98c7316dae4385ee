#pragma once

#include "Platform/JSON.h"
#include "tools/challenge/play/Plan.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace korvane::challenge {

using PlayClock = std::chrono::steady_clock;

/// What came of one challenge.
struct Outcome {
    /// From 1, in the order of the starts.
    std::size_t number = 0;
    /// Under which the ACS knows it; empty if it did not come that far.
    std::string sdkTransactionID;
    /// Where it left the plan; empty if it did not.
    std::vector<std::string> differences;
    /// From the authentication request to the ending, or to the end of the process where no ending was told
    /// or it came after a difference. The start of the process is not in it.
    std::chrono::duration<double> time{};

    [[nodiscard]] bool hasPassed() const noexcept { return differences.empty(); }
};

/// Leads one challenge along a plan: takes its events, and gives the actions. Borrows the plan.
class Follower {
public:
    Follower(const Plan& plan, std::size_t number) : plan_(plan) { outcome_.number = number; }

    /// @return the action to do next, if it is the cardholder's turn.
    std::optional<JSON> take(const JSON& event);

    /// The process has ended.
    /// @param manner  how, in words; told where the challenge had no ending.
    void end(const std::string& manner);

    /// Whether nothing is left to do but to see it end.
    [[nodiscard]] bool hasLeftPlan() const noexcept { return !outcome_.hasPassed(); }

    [[nodiscard]] const Outcome& outcome() const noexcept { return outcome_; }

private:
    std::optional<JSON> takeScreen(const JSON& event);
    void takeEnding(const JSON& event);
    void stopTime();
    void differ(const std::string& text) { outcome_.differences.push_back(text); }

    /// What is expected next.
    [[nodiscard]] std::string place() const;
    /// What was done last.
    [[nodiscard]] std::string cause() const;

    const Plan& plan_;
    Outcome outcome_;
    std::size_t step_ = 0;
    std::optional<PlayClock::time_point> begin_;
    bool hasEnded_ = false;
};

} // namespace korvane::challenge
