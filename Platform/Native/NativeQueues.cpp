#include "Platform/Native/NativeQueues.h"

#include "Platform/Failure.h"

#include <algorithm>
#include <utility>

namespace korvane {

namespace {

constexpr Seconds kLongestWait{50.0 * 365 * 24 * 3600};

} // namespace

void NativeSemaphore::signal() {
    const std::lock_guard lock(mutex_);
    ++count_;
    raised_.notify_one();
}

DispatchTimeoutResult NativeSemaphore::wait(Seconds limit) {
    const auto span = std::chrono::duration_cast<std::chrono::steady_clock::duration>(
        std::clamp(limit, Seconds{0}, kLongestWait));
    std::unique_lock lock(mutex_);
    if (!raised_.wait_until(lock, std::chrono::steady_clock::now() + span, [this] { return count_ > 0; }))
        return DispatchTimeoutResult::timedOut;
    --count_;
    return DispatchTimeoutResult::success;
}

void NativeSemaphore::waitForEver() {
    std::unique_lock lock(mutex_);
    raised_.wait(lock, [this] { return count_ > 0; });
    --count_;
}

/// The job's end is told by the death of what it holds, which comes when it has run and when it is dropped.
void NativeQueue::sync(const Work& work) {
    if (isCurrent()) fatalError("sync onto the queue that the caller runs on would never return.");
    const auto ended = std::make_shared<NativeSemaphore>(0);
    std::shared_ptr<void> job(nullptr, [ended](void*) { ended->signal(); });
    async([&work, job = std::move(job)] { work(); });
    ended->waitForEver();
}

void NativeQueue::enqueueAfter(Seconds delay, std::shared_ptr<DispatchWorkItem> item) {
    const auto running = loops();
    if (!running) return;
    running->timers.after(delay, item, [queue = shared_from_this()](std::shared_ptr<DispatchWorkItem> due) {
        queue->enqueue(std::move(due));
    });
    item->setKeeper(std::shared_ptr<DispatchKeeper>(running, &running->timers));
}

bool NativeMainQueue::isCurrent() const {
    const auto running = loops();
    return running && running->main->isCurrent();
}

void NativeMainQueue::enqueue(std::shared_ptr<DispatchWorkItem> item) {
    const auto running = loops();
    if (!running) return;
    running->main->post([&isEnding = running->isEnding, item = std::move(item)] {
        if (!isEnding) item->perform();
    });
}

void NativeGlobalQueue::sync(const Work& work) {
    DispatchWorkItem(work).perform();
}

bool NativeGlobalQueue::isCurrent() const {
    const auto running = loops();
    return running && running->workers.isCurrent();
}

void NativeGlobalQueue::enqueue(std::shared_ptr<DispatchWorkItem> item) {
    if (const auto running = loops()) running->workers.post([item = std::move(item)] { item->perform(); });
}

bool NativeSerialQueue::isCurrent() const {
    const std::lock_guard lock(mutex_);
    return runner_ == std::this_thread::get_id();
}

void NativeSerialQueue::enqueue(std::shared_ptr<DispatchWorkItem> item) {
    {
        const std::lock_guard lock(mutex_);
        items_.push_back(std::move(item));
        if (std::exchange(hasTurn_, true)) return;
    }
    postTurn();
}

/// The turn's end is its death, so that a turn that is dropped ends as well.
void NativeSerialQueue::postTurn() {
    const auto self = std::static_pointer_cast<NativeSerialQueue>(shared_from_this());
    std::shared_ptr<void> turn(nullptr, [self](void*) { self->endTurn(); });
    if (const auto running = loops())
        running->workers.post([self, turn = std::move(turn)] { self->takeTurn(); });
}

void NativeSerialQueue::takeTurn() {
    std::shared_ptr<DispatchWorkItem> item;
    std::unique_lock lock(mutex_);
    item = std::move(items_.front());
    items_.pop_front();
    runner_ = std::this_thread::get_id();
    lock.unlock();
    item->perform();
    lock.lock();
    runner_ = {};
}

void NativeSerialQueue::endTurn() {
    const auto running = loops();
    std::deque<std::shared_ptr<DispatchWorkItem>> dropped;
    {
        const std::lock_guard lock(mutex_);
        if (!running || running->workers.isStopped()) dropped.swap(items_);
        hasTurn_ = !items_.empty();
        if (!hasTurn_) return;
    }
    postTurn();
}

} // namespace korvane
