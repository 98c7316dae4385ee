#include "tests/support/simulated/SimulatedDispatch.h"

#include "Platform/Failure.h"

#include <utility>

namespace korvane {

namespace {

class Queue final : public DispatchQueue {
public:
    Queue(Scheduler& scheduler, std::shared_ptr<Scheduler::Lane> lane)
        : scheduler_(scheduler), lane_(std::move(lane)) {}

    void sync(const Work& work) override {
        if (lane_->order == Scheduler::Order::concurrent) return DispatchWorkItem(work).perform();
        if (isCurrent()) fatalError("sync onto the queue that the caller runs on would never return.");
        const auto isDone = std::make_shared<bool>(false);
        const auto item = std::make_shared<DispatchWorkItem>([&work, isDone] {
            work();
            *isDone = true;
        });
        scheduler_.push(lane_, item);
        scheduler_.block([isDone] { return *isDone; }, std::nullopt);
    }

    [[nodiscard]] bool isCurrent() const override { return scheduler_.currentLane() == lane_.get(); }

protected:
    void enqueue(std::shared_ptr<DispatchWorkItem> item) override { scheduler_.push(lane_, std::move(item)); }
    void enqueueAfter(Seconds delay, std::shared_ptr<DispatchWorkItem> item) override {
        scheduler_.pushAfter(delay, lane_, std::move(item));
    }

private:
    Scheduler& scheduler_;
    std::shared_ptr<Scheduler::Lane> lane_;
};

class Semaphore final : public DispatchSemaphore {
public:
    Semaphore(Scheduler& scheduler, int value) : scheduler_(scheduler), count_(value) {}

    void signal() override { ++count_; }

    [[nodiscard]] DispatchTimeoutResult wait(Seconds limit) override {
        if (!scheduler_.block([this] { return count_ > 0; }, limit)) return DispatchTimeoutResult::timedOut;
        --count_;
        return DispatchTimeoutResult::success;
    }

private:
    Scheduler& scheduler_;
    int count_;
};

} // namespace

SimulatedDispatch::SimulatedDispatch(Scheduler& scheduler)
    : scheduler_(scheduler), main_(std::make_shared<Queue>(scheduler, scheduler.mainLane())),
      global_(std::make_shared<Queue>(scheduler, scheduler.makeLane(Scheduler::Order::concurrent))) {}

std::shared_ptr<DispatchQueue> SimulatedDispatch::makeSerialQueue(std::string) {
    return std::make_shared<Queue>(scheduler_, scheduler_.makeLane(Scheduler::Order::serial));
}

std::shared_ptr<DispatchSemaphore> SimulatedDispatch::makeSemaphore(int value) {
    return std::make_shared<Semaphore>(scheduler_, value);
}

std::chrono::system_clock::time_point SimulatedDispatch::date() const {
    using namespace std::chrono;
    return sys_days{2030y / January / 1} + duration_cast<system_clock::duration>(scheduler_.now());
}

} // namespace korvane
