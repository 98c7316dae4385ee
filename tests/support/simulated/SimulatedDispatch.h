#pragma once

#include "tests/support/simulated/Scheduler.h"

#include <memory>
#include <string>

namespace korvane {

/// The queues of a simulation. All objects end with the scheduler or are not used after it.
class SimulatedDispatch final : public Dispatch {
public:
    explicit SimulatedDispatch(Scheduler& scheduler);

    [[nodiscard]] DispatchQueue& mainQueue() override { return *main_; }
    [[nodiscard]] DispatchQueue& globalQueue() override { return *global_; }
    [[nodiscard]] std::shared_ptr<DispatchQueue> makeSerialQueue(std::string label) override;
    [[nodiscard]] std::shared_ptr<DispatchSemaphore> makeSemaphore(int value) override;
    [[nodiscard]] Seconds now() const override { return scheduler_.now(); }

    /// 1 January 2030, 00:00 UTC, and what has passed since the simulation's start.
    [[nodiscard]] std::chrono::system_clock::time_point date() const override;

private:
    Scheduler& scheduler_;
    std::shared_ptr<DispatchQueue> main_;
    std::shared_ptr<DispatchQueue> global_;
};

} // namespace korvane
