#include "tests/support/simulated/SimulatedDispatch.h"

#include "Platform/Failure.h"

#include <algorithm>
#include <atomic>
#include <deque>
#include <map>
#include <thread>
#include <utility>

namespace korvane {

namespace {

SimulatedDispatch::Time asTime(Seconds span) {
    constexpr Seconds kLongest{50.0 * 365 * 24 * 3600};
    return std::chrono::round<SimulatedDispatch::Time>(std::clamp(span, Seconds{0}, kLongest));
}

/// A thread that sleeps until it may run.
struct Sleeper {
    void sleep() {
        mayRun.wait(false);
        mayRun.clear();
    }
    void wake() {
        mayRun.test_and_set();
        mayRun.notify_one();
    }

    std::atomic_flag mayRun;
};

} // namespace

struct SimulatedDispatch::Worker : Sleeper {
    std::thread thread;
};

/// Work, or the test's body, that cannot go on for now.
struct SimulatedDispatch::Blocked : Sleeper {
    Blocked(const Condition& its, Time now, std::optional<Seconds> limit) : condition(its) {
        if (limit) deadline = now + asTime(*limit);
    }

    const Condition& condition;
    std::optional<Time> deadline;
};

/// What waits for its time.
struct SimulatedDispatch::Delays final : DispatchKeeper {
    struct Delayed {
        Queue& queue;
        std::shared_ptr<DispatchWorkItem> item;
    };

    void letGo(const DispatchWorkItem& item) override {
        std::erase_if(byTime, [&item](const auto& entry) { return entry.second.item.get() == &item; });
    }

    std::multimap<Time, Delayed> byTime;
};

class SimulatedDispatch::Queue final : public DispatchQueue {
public:
    Queue(SimulatedDispatch& dispatch, bool itsSerial) : isSerial(itsSerial), dispatch_(dispatch) {}

    void sync(const Work& work) override {
        if (!isSerial) return DispatchWorkItem(work).perform();
        if (isCurrent()) fatalError("sync onto the queue that the caller runs on would never return.");
        const auto isDone = std::make_shared<bool>(false);
        async([&work, isDone] {
            work();
            *isDone = true;
        });
        dispatch_.block([isDone] { return *isDone; }, std::nullopt);
    }
    [[nodiscard]] bool isCurrent() const override { return dispatch_.current_ == this; }

    const bool isSerial;
    bool isBusy = false;
    std::deque<std::shared_ptr<DispatchWorkItem>> ready;

protected:
    void enqueue(std::shared_ptr<DispatchWorkItem> item) override {
        if (!dispatch_.isEnding_) ready.push_back(std::move(item));
    }
    void enqueueAfter(Seconds delay, std::shared_ptr<DispatchWorkItem> item) override {
        if (dispatch_.isEnding_) return;
        dispatch_.delays_->byTime.emplace(dispatch_.now_ + asTime(delay), Delays::Delayed{*this, item});
        item->setKeeper(dispatch_.delays_);
    }

private:
    SimulatedDispatch& dispatch_;
};

class SimulatedDispatch::Semaphore final : public DispatchSemaphore {
public:
    Semaphore(SimulatedDispatch& dispatch, int value) : dispatch_(dispatch), count_(value) {}

    void signal() override { ++count_; }
    [[nodiscard]] DispatchTimeoutResult wait(Seconds limit) override {
        if (!dispatch_.block([this] { return count_ > 0; }, limit)) return DispatchTimeoutResult::timedOut;
        --count_;
        return DispatchTimeoutResult::success;
    }

private:
    SimulatedDispatch& dispatch_;
    int count_;
};

SimulatedDispatch::SimulatedDispatch(std::uint64_t seed)
    : random_(seed), queues_{std::make_shared<Queue>(*this, true), std::make_shared<Queue>(*this, false)},
      current_(queues_[0].get()), delays_(std::make_shared<Delays>()) {
    current_->isBusy = true;
}

DispatchQueue& SimulatedDispatch::mainQueue() {
    return *queues_[0];
}

DispatchQueue& SimulatedDispatch::globalQueue() {
    return *queues_[1];
}

std::shared_ptr<DispatchQueue> SimulatedDispatch::makeSerialQueue(std::string) {
    return queues_.emplace_back(std::make_shared<Queue>(*this, true));
}

std::shared_ptr<DispatchSemaphore> SimulatedDispatch::makeSemaphore(int value) {
    return std::make_shared<Semaphore>(*this, value);
}

std::chrono::system_clock::time_point SimulatedDispatch::date() const {
    using namespace std::chrono;
    return sys_days{2030y / January / 1} + duration_cast<system_clock::duration>(now_);
}

/// Lets other work run until the condition holds or the time is over. Where nothing can make it true any
/// more, the process ends (`fatalError`).
bool SimulatedDispatch::block(const Condition& condition, std::optional<Seconds> limit) {
    if (isEnding_ || condition()) return condition();
    Blocked self(condition, now_, limit);
    Queue* const queue = current_;
    blocked_.push_back(&self);
    handOn();
    self.sleep();
    current_ = queue;
    return condition();
}

bool SimulatedDispatch::drive(const Condition& condition, std::optional<Seconds> span) {
    Queue* const main = queues_[0].get();
    if (driver_ || current_ != main) fatalError("Only the test's body may drive the simulation.");
    Blocked self(condition, now_, span);
    driver_ = &self;
    main->isBusy = false;
    handOn();
    self.sleep();
    main->isBusy = true;
    current_ = main;
    driver_ = nullptr;
    return condition();
}

LeftAlive SimulatedDispatch::leftAlive() const {
    LeftAlive left{.timers = delays_->byTime.size(), .blocked = blocked_.size()};
    for (const auto& queue : queues_)
        for (const auto& item : queue->ready)
            if (!item->isCancelled()) ++left.items;
    return left;
}

void SimulatedDispatch::end() {
    if (std::exchange(isEnding_, true)) return;
    std::exchange(delays_->byTime, {}).clear();
    for (const auto& queue : queues_)
        queue->ready.clear();
    drive([this] { return blocked_.empty(); });
    isOver_ = true;
    for (Worker* worker : idle_)
        worker->wake();
    for (const auto& worker : workers_)
        worker->thread.join();
}

/// Some worker goes on with the simulation; the caller touches nothing of it until it is woken.
void SimulatedDispatch::handOn() {
    if (!idle_.empty()) {
        Worker* const worker = idle_.back();
        idle_.pop_back();
        return worker->wake();
    }
    Worker& worker = *workers_.emplace_back(std::make_shared<Worker>());
    worker.wake();
    worker.thread = std::thread([this, &worker] {
        for (worker.sleep(); !isOver_; worker.sleep())
            while (step(worker)) {
            }
    });
}

bool SimulatedDispatch::driverMayGoOn() const {
    return driver_ && !queues_[0]->isBusy;
}

bool SimulatedDispatch::step(Worker& self) {
    if (driverMayGoOn() && driver_->condition()) return goOn(*driver_, self);
    const auto possible = choices(self);
    if (!possible.empty()) return possible[random_() % possible.size()]();
    if (advance()) return true;
    if (!driverMayGoOn()) fatalError("Simulated deadlock: all work waits, and nothing can wake it.");
    return goOn(*driver_, self);
}

std::vector<SimulatedDispatch::Choice> SimulatedDispatch::choices(Worker& self) {
    std::vector<Choice> possible;
    for (Blocked* blocked : blocked_)
        if (isEnding_ || blocked->condition() || (blocked->deadline && *blocked->deadline <= now_))
            possible.emplace_back([this, blocked, &self] { return goOn(*blocked, self); });
    for (const auto& queue : queues_) {
        const std::size_t most = queue->isBusy ? 0 : queue->isSerial ? 1 : queue->ready.size();
        for (std::size_t index = 0; index < std::min(queue->ready.size(), most); ++index)
            possible.emplace_back([this, queue = queue.get(), index] { return runItem(*queue, index); });
    }
    return possible;
}

/// The worker counts as idle before the other thread runs: from then on this thread touches nothing.
bool SimulatedDispatch::goOn(Blocked& blocked, Worker& self) {
    std::erase(blocked_, &blocked);
    idle_.push_back(&self);
    blocked.wake();
    return false;
}

bool SimulatedDispatch::runItem(Queue& queue, std::size_t index) {
    const auto item = std::move(queue.ready[index]);
    queue.ready.erase(queue.ready.begin() + static_cast<std::ptrdiff_t>(index));
    queue.isBusy = queue.isSerial;
    current_ = &queue;
    item->perform();
    current_ = nullptr;
    queue.isBusy = false;
    return true;
}

/// Moves the clock to the next time at which something can happen.
/// @return false if there is none, or if the driver's time is over.
bool SimulatedDispatch::advance() {
    auto& delayed = delays_->byTime;
    std::optional<Time> next;
    if (!delayed.empty()) next = delayed.begin()->first;
    for (const Blocked* blocked : blocked_)
        if (blocked->deadline) next = std::min(next.value_or(*blocked->deadline), *blocked->deadline);
    const auto end = driverMayGoOn() ? driver_->deadline : std::nullopt;
    if (end && (!next || *next > *end)) {
        now_ = std::max(now_, *end);
        return false;
    }
    if (!next) return false;
    now_ = std::max(now_, *next);
    for (; !delayed.empty() && delayed.begin()->first <= now_; delayed.erase(delayed.begin())) {
        const Delays::Delayed& due = delayed.begin()->second;
        due.queue.ready.push_back(due.item);
    }
    return true;
}

} // namespace korvane
