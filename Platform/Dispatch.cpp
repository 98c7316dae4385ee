#include "Platform/Dispatch.h"

#include "Platform/Failure.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace korvane {

namespace {

constexpr Seconds kShortestInterval{0.0001};

} // namespace

DispatchWorkItem::DispatchWorkItem(Work work) : work_(std::make_shared<const Work>(std::move(work))) {}

void DispatchWorkItem::perform() {
    std::unique_lock lock(mutex_);
    const auto work = work_;
    lock.unlock();
    if (!work) return;
    try {
        (*work)();
    } catch (const std::exception& error) {
        fatalError(std::string("An exception left a work item: ") + error.what());
    } catch (...) {
        fatalError("Something that is no exception was thrown out of a work item.");
    }
}

void DispatchWorkItem::cancel() {
    std::shared_ptr<const Work> released;
    std::weak_ptr<DispatchKeeper> told;
    {
        const std::lock_guard lock(mutex_);
        released.swap(work_);
        told.swap(keeper_);
    }
    if (const auto keeper = told.lock()) keeper->letGo(*this);
}

void DispatchWorkItem::setKeeper(std::weak_ptr<DispatchKeeper> keeper) {
    {
        const std::lock_guard lock(mutex_);
        if (work_) return keeper_.swap(keeper);
    }
    if (const auto told = keeper.lock()) told->letGo(*this);
}

bool DispatchWorkItem::isCancelled() const {
    const std::lock_guard lock(mutex_);
    return !work_;
}

std::shared_ptr<Timer> Timer::scheduledTimer(Dispatch& dispatch, Seconds interval,
                                             std::function<void()> work) {
    auto timer = std::make_shared<Timer>(Private{}, dispatch, interval, std::move(work));
    timer->arm();
    return timer;
}

Timer::Timer(Private, Dispatch& dispatch, Seconds interval, std::function<void()> work)
    : dispatch_(dispatch), interval_(std::max(interval, kShortestInterval)), due_(dispatch.now() + interval_),
      work_(std::make_shared<const std::function<void()>>(std::move(work))) {}

void Timer::invalidate() {
    const auto released = std::exchange(work_, nullptr);
    if (const auto next = next_.lock()) next->cancel();
}

/// The waiting item owns the timer, and not the other way about, so that a platform that ends frees both.
void Timer::arm() {
    const auto item = std::make_shared<DispatchWorkItem>([self = shared_from_this()] { self->fire(); });
    next_ = item;
    dispatch_.mainQueue().asyncAfter(due_ - dispatch_.now(), item);
}

void Timer::fire() {
    const auto work = work_;
    if (!work) return;
    (*work)();
    if (!isValid()) return;
    const double missed = std::floor(std::max(0.0, (dispatch_.now() - due_) / interval_));
    due_ += interval_ * (missed + 1);
    arm();
}

} // namespace korvane
