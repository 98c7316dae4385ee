#pragma once

#include "Platform/Dispatch.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <random>
#include <vector>

namespace korvane {

/// What still waits in a simulation; all zero once everything has come to its end.
struct LeftAlive {
    std::size_t items = 0;   ///< ready to run
    std::size_t timers = 0;  ///< waiting for their time
    std::size_t tasks = 0;   ///< requests without an answer
    std::size_t blocked = 0; ///< waiting for a semaphore or a `sync`

    friend bool operator==(const LeftAlive&, const LeftAlive&) = default;
};

/// Virtual time, and queues from whose ready work a seeded generator picks. One piece of work runs at a time.
/// Work that blocks keeps its stack on a thread that sleeps until it is picked to go on; threads are switched
/// there and nowhere else, so that a seed replays a run exactly.
///
/// The test's body counts as work of the main queue. It lets other work of that queue run by `drive`. All
/// objects made here end with this one or are not used after it.
class SimulatedDispatch final : public Dispatch {
public:
    using Time = std::chrono::nanoseconds;
    using Condition = std::function<bool()>;

    explicit SimulatedDispatch(std::uint64_t seed);
    ~SimulatedDispatch() override { end(); }

    [[nodiscard]] DispatchQueue& mainQueue() override;
    [[nodiscard]] DispatchQueue& globalQueue() override;
    [[nodiscard]] std::shared_ptr<DispatchQueue> makeSerialQueue(std::string label) override;
    [[nodiscard]] std::shared_ptr<DispatchSemaphore> makeSemaphore(int value) override;
    [[nodiscard]] Seconds now() const override { return now_; }

    /// 1 January 2030, 00:00 UTC, and what has passed since the simulation's start.
    [[nodiscard]] std::chrono::system_clock::time_point date() const override;

    /// From the test's body: runs work until the condition holds, or all that comes in a span of time, at
    /// whose end the clock stands then. Work of the main queue that is blocked at that moment ends first, and
    /// the clock goes on until it has.
    /// @return whether the condition holds; if not, everything was done before.
    bool drive(const Condition& condition, std::optional<Seconds> span = std::nullopt);

    /// All but the network's.
    [[nodiscard]] LeftAlive leftAlive() const;

    /// Drops what waits, and lets blocked work end as if its time were over.
    void end();

private:
    class Queue;
    class Semaphore;
    struct Worker;
    struct Blocked;
    struct Delays;
    /// What may happen next.
    /// @return false if another thread goes on with the simulation.
    using Choice = std::function<bool()>;

    bool block(const Condition& condition, std::optional<Seconds> limit);
    void handOn();
    bool step(Worker& self);
    [[nodiscard]] std::vector<Choice> choices(Worker& self);
    [[nodiscard]] bool driverMayGoOn() const;
    bool goOn(Blocked& blocked, Worker& self);
    bool runItem(Queue& queue, std::size_t index);
    bool advance();

    std::mt19937_64 random_;
    Time now_{0};
    std::vector<std::shared_ptr<Queue>> queues_;
    Queue* current_;
    const std::shared_ptr<Delays> delays_;
    std::vector<Blocked*> blocked_;
    Blocked* driver_ = nullptr;
    bool isEnding_ = false;

    std::vector<std::shared_ptr<Worker>> workers_;
    std::vector<Worker*> idle_;
    bool isOver_ = false;
};

} // namespace korvane
