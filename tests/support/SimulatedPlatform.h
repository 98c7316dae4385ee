#pragma once

#include "tests/support/ScriptedDevice.h"
#include "tests/support/simulated/SimulatedDispatch.h"
#include "tests/support/simulated/SimulatedNetwork.h"

namespace korvane {

/// A scripted device with queues in virtual time and a scripted network. The same seed gives the same
/// run. The test's body stands on the main queue, whose other work runs while the body calls one of
/// the `run` functions.
class SimulatedPlatform final : public ScriptedDevice {
public:
    explicit SimulatedPlatform(std::uint64_t seed = 1) : dispatch_(seed) {}

    /// Blocked work ends while queues and network are still there.
    ~SimulatedPlatform() override { dispatch_.end(); }

    [[nodiscard]] SimulatedNetwork& network() noexcept { return network_; }

    /// The virtual time since the start.
    [[nodiscard]] Seconds now() const { return dispatch_.now(); }

    /// Runs work until the condition holds.
    /// @return false if everything was done before.
    bool runUntil(const std::function<bool()>& condition) { return dispatch_.drive(condition); }

    /// Runs all that happens in a span of time; longer if work of the main queue that is
    /// blocked then has to end.
    void runFor(Seconds span) {
        dispatch_.drive([] { return false; }, span);
    }

    /// Runs until nothing is left to do, however late; a repeating timer has no such end.
    void runUntilIdle() {
        dispatch_.drive([] { return false; });
    }

    [[nodiscard]] LeftAlive leftAlive() const {
        LeftAlive left = dispatch_.leftAlive();
        left.tasks = network_.runningCount();
        return left;
    }

private:
    SimulatedDispatch dispatch_;
    SimulatedNetwork network_{dispatch_};
    Installation installation_{*this, servicesWith(dispatch_, network_, *this)};
};

} // namespace korvane
