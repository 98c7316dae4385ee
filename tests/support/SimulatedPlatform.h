#pragma once

#include "tests/support/ScriptedDevice.h"
#include "tests/support/simulated/SimulatedDispatch.h"
#include "tests/support/simulated/SimulatedNetwork.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace korvane {

/// What still waits in a simulation; all zero once everything has come to its end.
struct LeftAlive {
    std::size_t items = 0;   ///< ready to run
    std::size_t timers = 0;  ///< waiting for their time
    std::size_t tasks = 0;   ///< requests without an answer
    std::size_t blocked = 0; ///< waiting for a semaphore or a `sync`

    friend bool operator==(const LeftAlive&, const LeftAlive&) = default;
};

/// A scripted device with queues in virtual time and a scripted network. The same seed gives the same
/// run. The test's body stands on the main queue, whose other work runs while the body calls one of
/// the `run` functions.
class SimulatedPlatform final : public ScriptedDevice {
public:
    explicit SimulatedPlatform(std::uint64_t seed = 1) : scheduler_(seed) {}

    /// Blocked work ends while queues and network are still there.
    ~SimulatedPlatform() override { scheduler_.end(); }

    [[nodiscard]] Dispatch& dispatch() override { return dispatch_; }
    [[nodiscard]] std::shared_ptr<URLSession>
    makeURLSession(const URLSessionConfiguration& configuration) override {
        return network_.makeSession(configuration);
    }

    [[nodiscard]] SimulatedNetwork& network() noexcept { return network_; }

    /// The virtual time since the start.
    [[nodiscard]] Seconds now() const { return dispatch_.now(); }

    /// Runs work until the condition holds.
    /// @return false if everything was done before.
    bool runUntil(std::function<bool()> condition) { return scheduler_.driveUntil(std::move(condition)); }

    /// Runs all that happens in a span of time; longer if work of the main queue that is
    /// blocked then has to end.
    void runFor(Seconds span) { scheduler_.driveFor(span); }

    /// Runs until nothing is left to do, however late; a repeating timer has no such end.
    void runUntilIdle() {
        scheduler_.driveUntil([] { return false; });
    }

    [[nodiscard]] LeftAlive leftAlive() const {
        return {scheduler_.readyCount(), scheduler_.delayedCount(), network_.runningCount(),
                scheduler_.blockedCount()};
    }

private:
    Scheduler scheduler_;
    SimulatedDispatch dispatch_{scheduler_};
    SimulatedNetwork network_{dispatch_};
};

} // namespace korvane
