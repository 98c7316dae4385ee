#pragma once

#include "tools/challenge/play/Follower.h"

#include <chrono>
#include <string>
#include <vector>

namespace korvane::challenge {

/// The outcomes as XML of the kind that build servers read: a test suite with a case for each challenge.
[[nodiscard]] std::string junitXML(const std::string& plan, std::vector<Outcome> outcomes,
                                   std::chrono::duration<double> wallTime);

} // namespace korvane::challenge
