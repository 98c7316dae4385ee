#pragma once

#include "Platform/JSON.h"

#include <string>
#include <vector>

namespace korvane::challenge {

/// A screen that is to come, and what the cardholder does on it.
struct PlannedStep {
    /// Members of the `screen` event that are compared; null stands for one that must not be there.
    JSON screen = JSON::object();
    /// A line for the session.
    JSON action;
};

/// How a challenge is to go.
struct Plan {
    std::string description;
    std::vector<PlannedStep> steps;
    /// Members of the event that ends it, as those of a screen.
    JSON ending;
};

/// @throws FaultyText with everything that is wrong with the file, by line.
[[nodiscard]] Plan loadPlan(const std::string& file);

/// Each member that is not as expected, as "text: expected ..., got ...".
[[nodiscard]] std::vector<std::string> differences(const JSON& expected, const JSON& got);

/// The members of a plan, for the help text.
[[nodiscard]] std::string planHelp();

} // namespace korvane::challenge
