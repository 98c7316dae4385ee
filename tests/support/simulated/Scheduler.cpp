#include "tests/support/simulated/Scheduler.h"

#include "Platform/Failure.h"

#include <algorithm>
#include <utility>

namespace korvane {

namespace {

constexpr Seconds kLongestDelay{50.0 * 365 * 24 * 3600};

Scheduler::Time asTime(Seconds span) {
    return std::chrono::round<Scheduler::Time>(std::clamp(span, Seconds{0}, kLongestDelay));
}

} // namespace

Scheduler::Scheduler(std::uint64_t seed) : random_(seed), main_(makeLane(Order::serial)) {
    main_->isBusy = true;
    current_ = main_.get();
}

std::shared_ptr<Scheduler::Lane> Scheduler::makeLane(Order order) {
    std::erase_if(lanes_, [](const auto& lane) {
        return lane.use_count() == 1 && lane->ready.empty() && !lane->isBusy;
    });
    return lanes_.emplace_back(std::make_shared<Lane>(Lane{order, false, {}}));
}

void Scheduler::push(const std::shared_ptr<Lane>& lane, Item item) {
    if (!isEnding_) lane->ready.push_back(std::move(item));
}

void Scheduler::pushAfter(Seconds delay, const std::shared_ptr<Lane>& lane, Item item) {
    if (!isEnding_) delayed_.emplace(now_ + asTime(delay), Delayed{lane, std::move(item)});
}

bool Scheduler::block(Condition condition, std::optional<Seconds> limit) {
    if (condition()) return true;
    if (isEnding_) return false;
    Blocked self;
    self.condition = std::move(condition);
    if (limit) self.deadline = now_ + asTime(*limit);
    self.lane = current_;
    blocked_.push_back(&self);
    handOn();
    self.sleep();
    current_ = self.lane;
    return self.condition();
}

void Scheduler::driveFor(Seconds span) {
    drive([] { return false; }, now_ + asTime(span));
}

bool Scheduler::drive(Condition condition, std::optional<Time> deadline) {
    if (driver_ || current_ != main_.get()) fatalError("Only the test's body may drive the simulation.");
    Blocked self;
    self.condition = std::move(condition);
    self.deadline = deadline;
    driver_ = &self;
    main_->isBusy = false;
    handOn();
    self.sleep();
    main_->isBusy = true;
    current_ = main_.get();
    driver_ = nullptr;
    return self.condition();
}

std::size_t Scheduler::readyCount() const {
    std::size_t count = 0;
    for (const auto& lane : lanes_)
        count += static_cast<std::size_t>(std::count_if(
            lane->ready.begin(), lane->ready.end(), [](const Item& item) { return !item->isCancelled(); }));
    return count;
}

std::size_t Scheduler::delayedCount() const {
    return static_cast<std::size_t>(std::count_if(delayed_.begin(), delayed_.end(), [](const auto& entry) {
        return !entry.second.item->isCancelled();
    }));
}

void Scheduler::end() {
    if (std::exchange(isEnding_, true)) return;
    const auto delayed = std::exchange(delayed_, {});
    std::vector<std::deque<Item>> ready;
    for (const auto& lane : lanes_)
        ready.push_back(std::exchange(lane->ready, {}));
    drive([this] { return blocked_.empty(); }, std::nullopt);
    isOver_ = true;
    for (Worker* worker : idle_)
        worker->wake();
    for (const auto& worker : workers_)
        worker->thread.join();
}

/// Some worker goes on with the simulation; the caller touches nothing of it until it is woken.
void Scheduler::handOn() {
    if (!idle_.empty()) {
        Worker* const worker = idle_.back();
        idle_.pop_back();
        return worker->wake();
    }
    Worker& worker = *workers_.emplace_back(std::make_unique<Worker>());
    worker.wake();
    worker.thread = std::thread([this, &worker] {
        for (worker.sleep(); !isOver_; worker.sleep())
            while (step(worker)) {
            }
    });
}

bool Scheduler::step(Worker& self) {
    if (driverMayGoOn() && driver_->condition()) return goOn(*driver_, self);
    const auto possible = choices(self);
    if (!possible.empty()) return possible[random_() % possible.size()]();
    if (advance()) return true;
    if (!driverMayGoOn()) fatalError("Simulated deadlock: all work waits, and nothing can wake it.");
    return goOn(*driver_, self);
}

std::vector<Scheduler::Choice> Scheduler::choices(Worker& self) {
    std::vector<Choice> possible;
    for (Blocked* blocked : blocked_)
        if (isEnding_ || blocked->condition() || (blocked->deadline && *blocked->deadline <= now_))
            possible.emplace_back([this, blocked, &self] { return goOn(*blocked, self); });
    for (const auto& lane : lanes_) {
        const std::size_t most = lane->order == Order::serial ? 1 : lane->ready.size();
        const std::size_t startable = lane->isBusy ? 0 : std::min(lane->ready.size(), most);
        for (std::size_t index = 0; index < startable; ++index)
            possible.emplace_back([this, lane = lane.get(), index] { return runItem(*lane, index); });
    }
    return possible;
}

/// The worker counts as idle before the other thread runs: from then on this thread touches nothing.
bool Scheduler::goOn(Blocked& blocked, Worker& self) {
    std::erase(blocked_, &blocked);
    idle_.push_back(&self);
    blocked.wake();
    return false;
}

bool Scheduler::runItem(Lane& lane, std::size_t index) {
    const Item item = std::move(lane.ready[index]);
    lane.ready.erase(lane.ready.begin() + static_cast<std::ptrdiff_t>(index));
    lane.isBusy = lane.order == Order::serial;
    current_ = &lane;
    item->perform();
    current_ = nullptr;
    lane.isBusy = false;
    return true;
}

/// Moves the clock to the next time at which something can happen.
/// @return false if there is none, or if the driver's time is over.
bool Scheduler::advance() {
    std::erase_if(delayed_, [](const auto& entry) { return entry.second.item->isCancelled(); });
    std::optional<Time> next;
    const auto consider = [&next](Time time) { next = next ? std::min(*next, time) : time; };
    if (!delayed_.empty()) consider(delayed_.begin()->first);
    for (const Blocked* blocked : blocked_)
        if (blocked->deadline) consider(*blocked->deadline);
    if (driverMayGoOn() && driver_->deadline && (!next || *next > *driver_->deadline)) {
        now_ = std::max(now_, *driver_->deadline);
        return false;
    }
    if (!next) return false;
    now_ = std::max(now_, *next);
    while (!delayed_.empty() && delayed_.begin()->first <= now_) {
        const Delayed due = delayed_.extract(delayed_.begin()).mapped();
        due.lane->ready.push_back(due.item);
    }
    return true;
}

} // namespace korvane
