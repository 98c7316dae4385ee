#include "Platform/Native/NativeThreads.h"

#include "Platform/Failure.h"

#include <asio/post.hpp>
#include <asio/steady_timer.hpp>

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

asio::steady_timer::duration asDuration(Seconds delay) {
    return std::chrono::duration_cast<asio::steady_timer::duration>(
        std::clamp(delay, Seconds{0}, kLongestDelay));
}

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
    if (thread) threads_.push_back(*std::move(thread));
    return thread.has_value();
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
    auto thread = makeThread([this] { loop_.run(); });
    if (!thread) fatalError("There is no thread for what is due later.");
    thread_ = *std::move(thread);
}

void TimerThread::after(Seconds delay, std::function<void()> due) {
    const std::lock_guard lock(mutex_);
    if (isStopped_) return;
    const auto timer = std::make_shared<asio::steady_timer>(loop_.context(), asDuration(delay));
    timer->async_wait([timer, due = std::move(due)](const asio::error_code& error) {
        if (!error) due();
    });
}

void TimerThread::stop() {
    {
        const std::lock_guard lock(mutex_);
        isStopped_ = true;
        loop_.stop();
    }
    if (thread_.joinable()) thread_.join();
}

} // namespace korvane
