#pragma once

#include "Platform/JSON.h"
#include "tools/acs/Scenario.h"

#include <cstddef>
#include <optional>

namespace korvane::acs {

/// What a scenario answers to one CReq.
struct Cue {
    /// Members of the CRes beyond those that every CRes has.
    JSON members;
    bool isFinal = false;
    std::optional<Fault> fault;
};

/// Leads one challenge through a scenario. Borrows the scenario. One thread at a time.
class Director {
public:
    explicit Director(const Scenario& scenario) : scenario_(scenario) {}

    /// The answer to the next CReq. A CReq that cancels ends the challenge as failed; one that asks to resend
    /// gets the same screen and is not judged.
    [[nodiscard]] Cue next(const JSON& creq);

private:
    [[nodiscard]] Cue judge(const Step& step, const JSON& creq);
    [[nodiscard]] Cue enter(std::size_t step);
    [[nodiscard]] static Cue show(const Step& step);
    [[nodiscard]] static Cue end(const Ending& ending);

    const Scenario& scenario_;
    std::optional<std::size_t> step_;
    std::size_t answers_ = 0;
};

} // namespace korvane::acs
