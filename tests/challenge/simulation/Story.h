#pragma once

#include "tests/challenge/simulation/Cardholder.h"
#include "tests/challenge/simulation/Model.h"
#include "tests/challenge/simulation/Plan.h"

#include <string>
#include <vector>

namespace korvane::simulation {

/// What came of one plan.
struct StoryResult {
    /// What the application heard and the ACS received.
    Record record;
    /// The same, and what the cardholder did, and where it went wrong.
    Record story;
    /// What must not be; empty for a story that went as it must.
    std::vector<std::string> faults;
};

/// Plays one plan on a simulation of its own.
[[nodiscard]] StoryResult playStory(const Plan& plan);

/// What holds of every record whatever the model says: counters, at most one ending but for what the rules
/// allow, no request after an interruption.
[[nodiscard]] std::vector<std::string> brokenRules(const Record& record, std::size_t allowedEndings);

/// Where two records differ, by what they are about.
[[nodiscard]] std::vector<std::string> differences(const Record& actual, const Record& expected);

[[nodiscard]] std::string textOf(const Line& line);

} // namespace korvane::simulation
