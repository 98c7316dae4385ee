#pragma once

#include "Platform/Dispatch.h"
#include "Platform/Native/MainLoop.h"

#include <asio/executor_work_guard.hpp>
#include <asio/io_context.hpp>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace korvane {

/// An Asio loop that stays alive without work. Any thread.
class Loop {
public:
    void post(std::function<void()> job);

    /// Runs jobs on the calling thread until `stop()`.
    void run() { context_.run(); }
    void runOne() { context_.run_one(); }
    void stop() { context_.stop(); }

    /// `run()` returns as soon as no job is left.
    void finish() { work_.reset(); }

    /// Whether the caller is a job of this loop.
    [[nodiscard]] bool isCurrent() const { return context_.get_executor().running_in_this_thread(); }

    [[nodiscard]] asio::io_context& context() noexcept { return context_; }

private:
    mutable asio::io_context context_;
    asio::executor_work_guard<asio::io_context::executor_type> work_{context_.get_executor()};
};

/// The main queue's loop where the application has none of its own. Its thread is the one that made it, until
/// another enters: there a wait for a job would never end, whether the loop runs already or not. Any thread.
class NativeMainLoop final : public MainLoop {
public:
    void post(std::function<void()> job) override { loop_.post(std::move(job)); }
    void enter() override { thread_ = std::this_thread::get_id(); }
    void runOne() override { loop_.runOne(); }
    [[nodiscard]] bool isCurrent() const override { return thread_ == std::this_thread::get_id(); }

private:
    Loop loop_;
    std::atomic<std::thread::id> thread_{std::this_thread::get_id()};
};

/// The threads of the global queue and of the serial queues. Their work may block, so there are as many
/// threads as there have been jobs at once, up to a limit. The first is there from the beginning, so that no
/// job is lost where the system gives no further ones: it waits for its turn. Any thread.
class WorkerThreads {
public:
    /// Without its first thread the process ends (`fatalError`).
    WorkerThreads();
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
    bool addThread();

    std::mutex mutex_;
    std::size_t jobs_ = 0;
    std::atomic<bool> isStopped_{false};
    std::function<void()> ended_;
    Loop loop_;
    std::vector<std::thread> threads_;
};

/// The thread that waits for what is due later. Any thread.
class TimerThread final : public DispatchKeeper {
public:
    using Item = std::shared_ptr<DispatchWorkItem>;
    /// Called on this object's thread; must not block.
    using Due = std::function<void(Item)>;

    /// Without its thread the process ends (`fatalError`).
    TimerThread();

    /// Hands the item to `due` when the delay is over. Those of one time come in the order in which they were
    /// given.
    void after(Seconds delay, Item item, Due due);

    void letGo(const DispatchWorkItem& item) override;

    /// What still waits is dropped. Waits for the thread.
    void stop();

private:
    using Clock = std::chrono::steady_clock;
    struct Waiting {
        Item item;
        Due due;
    };

    void run();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::multimap<Clock::time_point, Waiting> waiting_;
    bool isStopped_ = false;
    std::thread thread_;
};

} // namespace korvane
