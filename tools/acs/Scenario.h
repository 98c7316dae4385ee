#pragma once

#include "Crypt/Algorithms.h"
#include "Platform/CheckedText.h"
#include "Platform/JSON.h"
#include "tools/acs/Faults.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane::acs {

/// One screen and what the cardholder must answer to leave it.
struct Step {
    /// Members of the CRes that shows it.
    JSON screen;
    /// Members that replace the screen's own after an answer that did not pass.
    JSON retry = JSON::object();
    /// Members of a CReq with the list of values that pass; all of them must be there.
    JSON accepts = JSON::object();
    /// Answers that are judged before the challenge fails.
    std::size_t attempts = 1;
    /// The first of them that can pass.
    std::size_t passesFrom = 1;
    std::optional<Fault> fault;
};

/// The last CRes of a challenge.
struct Ending {
    std::string transStatus;
    std::optional<Fault> fault;
};

/// What the ACS plays. Immutable once read. Any thread.
struct Scenario {
    std::string description;
    SignatureAlgorithm signature = SignatureAlgorithm::PS256;
    std::optional<std::string> threeDSRequestorAppURL;
    std::optional<Fault> authenticationFault;
    /// Without a step the first CReq is answered by the ending.
    std::vector<Step> steps;
    Ending success{"Y", {}};
    Ending failure{"N", {}};
};

/// Reads what the file has, and gathers all that is to be said of it: faults and warnings.
[[nodiscard]] Scenario readScenario(CheckedText& text);

/// @param name  of the file, or what stands in its place in errors.
/// @throws FaultyText `NAME:LINE: MEMBER: what is wrong` for the faults of the text, a line each.
[[nodiscard]] Scenario readScenario(std::string_view text, const std::string& name);

} // namespace korvane::acs
