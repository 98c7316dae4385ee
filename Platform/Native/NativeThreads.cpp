#include "Platform/Native/NativeThreads.h"

#include <asio/post.hpp>
#include <asio/steady_timer.hpp>

#include <algorithm>
#include <utility>

namespace korvane {

namespace {

/// Sixty-four exchanges may wait at once; further work then waits for them.
constexpr std::size_t kMostThreads = 64;

/// What a clock of nanoseconds can surely add to now.
constexpr Seconds kLongestDelay{50.0 * 365 * 24 * 3600};

asio::steady_timer::duration asDuration(Seconds delay) {
    return std::chrono::duration_cast<asio::steady_timer::duration>(
        std::clamp(delay, Seconds{0}, kLongestDelay));
}

} // namespace

void Loop::post(std::function<void()> job) {
    asio::post(context_, std::move(job));
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
    threads_.emplace_back([this] {
        loop_.run();
        ended_();
    });
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

void TimerThread::after(Seconds delay, std::function<void()> due) {
    const std::lock_guard lock(mutex_);
    if (isStopped_) return;
    if (!thread_.joinable()) thread_ = std::thread([this] { loop_.run(); });
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
