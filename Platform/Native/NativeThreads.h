#pragma once

#include "Platform/Dispatch.h"
#include "Platform/Native/MainLoop.h"

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace korvane {

/// An Asio loop that stays alive without work. Any thread.
class Loop final : public MainLoop {
public:
    void post(std::function<void()> job) override;

    /// Runs jobs on the calling thread until `stop()`.
    void run() { context_.run(); }
    void runOne() override { context_.run_one(); }
    void stop() { context_.stop(); }

    /// `run()` returns as soon as no job is left.
    void finish() { work_.reset(); }

    /// Whether the caller is a job of this loop.
    [[nodiscard]] bool isCurrent() const override { return context_.get_executor().running_in_this_thread(); }

    [[nodiscard]] asio::io_context& context() noexcept { return context_; }

private:
    mutable asio::io_context context_;
    asio::executor_work_guard<asio::io_context::executor_type> work_{context_.get_executor()};
};

/// The threads of the global queue and of the serial queues. Their work may block, so there are as many
/// threads as there have been jobs at once, up to a limit. Any thread.
class WorkerThreads {
public:
    WorkerThreads() = default;
    WorkerThreads(const WorkerThreads&) = delete;
    WorkerThreads& operator=(const WorkerThreads&) = delete;

    void post(std::function<void()> job);

    [[nodiscard]] bool isCurrent() const { return loop_.isCurrent(); }

    /// From now on jobs are dropped and not run. `ended` is called on each thread as its last act.
    /// @return how many threads there are.
    std::size_t stop(std::function<void()> ended);

    /// Whether `stop` was called.
    [[nodiscard]] bool isStopped() const noexcept { return isStopped_; }

    /// Waits for the jobs that still run.
    void join();

private:
    void grow();

    std::mutex mutex_;
    std::size_t jobs_ = 0;
    std::atomic<bool> isStopped_{false};
    std::function<void()> ended_;
    Loop loop_;
    std::vector<std::thread> threads_;
};

/// The thread that waits for what is due later; started by the first such thing. Any thread.
class TimerThread {
public:
    TimerThread() = default;
    TimerThread(const TimerThread&) = delete;
    TimerThread& operator=(const TimerThread&) = delete;

    /// @param due  called on this object's thread, and must not block.
    void after(Seconds delay, std::function<void()> due);

    /// What is still due is not called. Waits for the thread.
    void stop();

private:
    std::mutex mutex_;
    bool isStopped_ = false;
    Loop loop_;
    std::thread thread_;
};

} // namespace korvane
