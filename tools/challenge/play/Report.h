#pragma once

#include "tools/challenge/play/Follower.h"

#include <chrono>
#include <iosfwd>
#include <string>
#include <vector>

namespace korvane::challenge {

/// Where the outcomes are shown.
enum class Display {
    bar,  ///< a terminal: one line that grows, and the challenges that failed
    lines ///< a line for each challenge
};

/// Tells of the outcomes as they come, and of all at the end.
class Report {
public:
    /// @param total  of challenges.
    Report(std::ostream& out, Display display, std::size_t total);

    /// Shows that nothing has been done yet.
    void begin();

    void add(const Outcome& outcome);

    /// @param parallel  how many ran side by side.
    void summarise(std::size_t parallel, std::chrono::duration<double> wallTime);

    /// In the order of their ends.
    [[nodiscard]] const std::vector<Outcome>& outcomes() const noexcept { return outcomes_; }
    [[nodiscard]] std::size_t failures() const noexcept { return failures_; }

private:
    void drawBar();
    void eraseBar();

    std::ostream& out_;
    const Display display_;
    const std::size_t total_;
    std::vector<Outcome> outcomes_;
    std::size_t failures_ = 0;
};

} // namespace korvane::challenge
