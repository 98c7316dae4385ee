#pragma once

#include "Platform/Dispatch.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace korvane {

/// The heart of the simulated platform: virtual time, and lanes of ready work from which a seeded generator
/// picks. One piece of work runs at a time. Work that blocks keeps its stack on a thread that sleeps until it
/// is picked to go on; threads are switched there and nowhere else, so that a seed replays a run exactly.
///
/// The test's body counts as work of the main lane. It lets other work of that lane run by `drive`.
class Scheduler {
public:
    using Time = std::chrono::nanoseconds;
    using Item = std::shared_ptr<DispatchWorkItem>;
    using Condition = std::function<bool()>;

    enum class Order { serial, concurrent };

    /// One queue's ready work.
    struct Lane {
        Order order;
        bool isBusy = false;
        std::deque<Item> ready;
    };

    explicit Scheduler(std::uint64_t seed);
    Scheduler(const Scheduler&) = delete;
    Scheduler& operator=(const Scheduler&) = delete;

    /// Calls `end()`.
    ~Scheduler() { end(); }

    [[nodiscard]] std::shared_ptr<Lane> makeLane(Order order);
    [[nodiscard]] const std::shared_ptr<Lane>& mainLane() const noexcept { return main_; }

    /// The lane of the work that asks.
    [[nodiscard]] const Lane* currentLane() const noexcept { return current_; }

    [[nodiscard]] Time now() const noexcept { return now_; }

    void push(const std::shared_ptr<Lane>& lane, Item item);
    void pushAfter(Seconds delay, const std::shared_ptr<Lane>& lane, Item item);

    /// Lets other work run until the condition holds or the time is over.
    /// @param limit  absent: without end. If nothing can make the condition true then, the process ends
    ///               (`fatalError`).
    /// @return whether the condition holds.
    bool block(Condition condition, std::optional<Seconds> limit);

    /// From the test's body: runs work until the condition holds.
    /// @return false if everything was done before.
    bool driveUntil(Condition condition) { return drive(std::move(condition), std::nullopt); }

    /// From the test's body: runs what comes in a span of time, at whose end the clock stands then. Work of
    /// the main lane that is blocked at that moment ends first, and the clock goes on until it has.
    void driveFor(Seconds span);

    /// Work that waits in lanes or for its time and was not cancelled; work that is blocked.
    [[nodiscard]] std::size_t readyCount() const;
    [[nodiscard]] std::size_t delayedCount() const;
    [[nodiscard]] std::size_t blockedCount() const noexcept { return blocked_.size(); }

    /// Drops what waits, and lets blocked work end as if its time were over.
    void end();

private:
    /// A thread that sleeps until it may run.
    class Sleeper {
    public:
        void sleep() {
            std::unique_lock lock(mutex_);
            changed_.wait(lock, [this] { return mayRun_; });
            mayRun_ = false;
        }
        void wake() {
            const std::lock_guard lock(mutex_);
            mayRun_ = true;
            changed_.notify_one();
        }

    private:
        std::mutex mutex_;
        std::condition_variable changed_;
        bool mayRun_ = false;
    };
    struct Worker : Sleeper {
        std::thread thread;
    };
    /// Work, or the test's body, that cannot go on for now.
    struct Blocked : Sleeper {
        Condition condition;
        std::optional<Time> deadline;
        Lane* lane = nullptr;
    };
    struct Delayed {
        std::shared_ptr<Lane> lane;
        Item item;
    };
    /// What may happen next.
    /// @return false if another thread goes on with the simulation.
    using Choice = std::function<bool()>;

    bool drive(Condition condition, std::optional<Time> deadline);
    void handOn();
    bool step(Worker& self);
    [[nodiscard]] std::vector<Choice> choices(Worker& self);
    [[nodiscard]] bool driverMayGoOn() const { return driver_ && !main_->isBusy; }
    bool goOn(Blocked& blocked, Worker& self);
    bool runItem(Lane& lane, std::size_t index);
    bool advance();

    std::mt19937_64 random_;
    Time now_{0};
    std::vector<std::shared_ptr<Lane>> lanes_;
    std::shared_ptr<Lane> main_;
    Lane* current_ = nullptr;
    std::multimap<Time, Delayed> delayed_;
    std::vector<Blocked*> blocked_;
    Blocked* driver_ = nullptr;
    bool isEnding_ = false;

    std::vector<std::unique_ptr<Worker>> workers_;
    std::vector<Worker*> idle_;
    bool isOver_ = false;
};

} // namespace korvane
