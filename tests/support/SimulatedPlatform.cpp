#include "tests/support/SimulatedPlatform.h"

namespace korvane {

SimulatedPlatform::SimulatedPlatform(std::uint64_t seed) : scheduler_(seed) {}

/// Blocked work ends while queues and network are still there.
SimulatedPlatform::~SimulatedPlatform() {
    scheduler_.end();
}

LeftAlive SimulatedPlatform::leftAlive() const {
    return {scheduler_.readyCount(), scheduler_.delayedCount(), network_.runningCount(),
            scheduler_.blockedCount()};
}

} // namespace korvane
