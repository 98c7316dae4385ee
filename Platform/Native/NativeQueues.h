#pragma once

#include "Platform/Dispatch.h"
#include "Platform/Native/NativeThreads.h"

#include <atomic>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>

namespace korvane {

/// What the queues run on. Queues hold it weakly: what they are given after its end is dropped.
struct NativeLoops {
    explicit NativeLoops(std::unique_ptr<MainLoop> mainLoop) : main(std::move(mainLoop)) {}

    const std::unique_ptr<MainLoop> main;
    WorkerThreads workers;
    TimerThread timers;

    /// Jobs of the main loop are dropped from now on.
    std::atomic<bool> isEnding{false};
};

class NativeSemaphore final : public DispatchSemaphore {
public:
    explicit NativeSemaphore(int value) : count_(value) {}

    void signal() override;
    [[nodiscard]] DispatchTimeoutResult wait(Seconds limit) override;
    void waitForEver();

private:
    std::mutex mutex_;
    std::condition_variable raised_;
    int count_;
};

/// What the native queues share: lateness, and `sync` by a job that is waited for.
class NativeQueue : public DispatchQueue, public std::enable_shared_from_this<NativeQueue> {
public:
    explicit NativeQueue(std::weak_ptr<NativeLoops> loops) : loops_(std::move(loops)) {}

    void sync(const Work& work) override;

protected:
    void enqueueAfter(Seconds delay, std::shared_ptr<DispatchWorkItem> item) override;
    [[nodiscard]] std::shared_ptr<NativeLoops> loops() const { return loops_.lock(); }

private:
    std::weak_ptr<NativeLoops> loops_;
};

class NativeMainQueue final : public NativeQueue {
public:
    using NativeQueue::NativeQueue;
    [[nodiscard]] bool isCurrent() const override;

protected:
    void enqueue(std::shared_ptr<DispatchWorkItem> item) override;
};

class NativeGlobalQueue final : public NativeQueue {
public:
    using NativeQueue::NativeQueue;
    void sync(const Work& work) override;
    [[nodiscard]] bool isCurrent() const override;

protected:
    void enqueue(std::shared_ptr<DispatchWorkItem> item) override;
};

/// A queue of its own items, of which one at a time is with the worker threads. Unlike a strand it may
/// outlive the loop that it runs on.
class NativeSerialQueue final : public NativeQueue {
public:
    using NativeQueue::NativeQueue;
    [[nodiscard]] bool isCurrent() const override;

protected:
    void enqueue(std::shared_ptr<DispatchWorkItem> item) override;

private:
    void postTurn();
    void takeTurn();
    void endTurn();

    mutable std::mutex mutex_;
    std::deque<std::shared_ptr<DispatchWorkItem>> items_;
    bool hasTurn_ = false;
    std::thread::id runner_;
};

} // namespace korvane
