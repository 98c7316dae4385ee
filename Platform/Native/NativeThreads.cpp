#include "Platform/Native/NativeThreads.h"

#include "Platform/Failure.h"

#include <asio/post.hpp>

#include <algorithm>
#include <optional>
#include <system_error>

namespace korvane {

namespace {

/// Sixty-four exchanges may wait at once; further work then waits for them. What ends them comes from the
/// network's own thread.
constexpr std::size_t kMostThreads = 64;

/// What a clock of nanoseconds can surely add to now.
constexpr Seconds kLongestDelay{50.0 * 365 * 24 * 3600};

/// A thread, or no value where the system has none to give.
template <class Work>
std::optional<std::thread> makeThread(Work work) {
    try {
        return std::thread(std::move(work));
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

} // namespace

void Loop::post(std::function<void()> job) {
    asio::post(context_, std::move(job));
}

WorkerThreads::WorkerThreads() {
    if (!addThread()) fatalError("There is no thread for the global queue.");
}

void WorkerThreads::post(std::function<void()> job) {
    grow();
    loop_.post([this, job = std::move(job)] {
        if (!isStopped_) job();
        const std::lock_guard lock(mutex_);
        --jobs_;
    });
}

void WorkerThreads::grow() {
    const std::lock_guard lock(mutex_);
    ++jobs_;
    if (isStopped_ || jobs_ <= threads_.size() || threads_.size() == kMostThreads) return;
    addThread();
}

bool WorkerThreads::addThread() {
    auto thread = makeThread([this] {
        loop_.run();
        ended_();
    });
    if (!thread) return false;
    threads_.push_back(*std::move(thread));
    return true;
}

std::size_t WorkerThreads::stop(std::function<void()> ended) {
    const std::lock_guard lock(mutex_);
    isStopped_ = true;
    ended_ = std::move(ended);
    loop_.finish();
    return threads_.size();
}

void WorkerThreads::join() {
    for (std::thread& thread : threads_)
        thread.join();
}

TimerThread::TimerThread() {
    auto thread = makeThread([this] { run(); });
    if (!thread) fatalError("There is no thread for what is due later.");
    thread_ = *std::move(thread);
}

void TimerThread::after(Seconds delay, Item item, Due due) {
    const auto span =
        std::chrono::duration_cast<Clock::duration>(std::clamp(delay, Seconds{0}, kLongestDelay));
    const std::lock_guard lock(mutex_);
    if (isStopped_) return;
    const auto added = waiting_.emplace(Clock::now() + span, Waiting{std::move(item), std::move(due)});
    if (added == waiting_.begin()) changed_.notify_one();
}

/// What dies with an entry may come back here: it dies outside of the lock.
void TimerThread::letGo(const DispatchWorkItem& item) {
    std::vector<decltype(waiting_)::node_type> gone;
    const std::lock_guard lock(mutex_);
    for (auto entry = waiting_.begin(); entry != waiting_.end();) {
        const auto here = entry++;
        if (here->second.item.get() == &item) gone.push_back(waiting_.extract(here));
    }
}

void TimerThread::run() {
    std::unique_lock lock(mutex_);
    while (!isStopped_) {
        const auto next = waiting_.begin();
        if (next == waiting_.end()) {
            changed_.wait(lock);
        } else if (const auto time = next->first; Clock::now() < time) {
            changed_.wait_until(lock, time);
        } else {
            {
                const auto entry = waiting_.extract(next);
                lock.unlock();
                entry.mapped().due(entry.mapped().item);
            }
            lock.lock();
        }
    }
}

void TimerThread::stop() {
    decltype(waiting_) dropped;
    {
        const std::lock_guard lock(mutex_);
        isStopped_ = true;
        dropped.swap(waiting_);
    }
    changed_.notify_one();
    if (thread_.joinable()) thread_.join();
}

} // namespace korvane
