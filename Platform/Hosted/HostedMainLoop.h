#pragma once

#include "Platform/Native/JobQueue.h"
#include "Platform/Native/MainLoop.h"

#include <thread>
#include <utility>

namespace korvane {

/// The main queue's loop on the thread that made this object, whose own loop is woken for each job.
class HostedMainLoop final : public MainLoop {
public:
    explicit HostedMainLoop(std::function<void()> wake) : wake_(std::move(wake)) {}

    void post(std::function<void()> job) override {
        jobs_.push(std::move(job));
        if (wake_) wake_();
    }
    void runOne() override { jobs_.pop()(); }
    [[nodiscard]] bool isCurrent() const override { return std::this_thread::get_id() == thread_; }

    /// Runs the next job, if there is one within that time.
    /// @return whether there was.
    bool runWithin(Seconds limit) {
        const auto job = jobs_.popWithin(limit);
        if (job) job();
        return job != nullptr;
    }

private:
    const std::function<void()> wake_;
    const std::thread::id thread_ = std::this_thread::get_id();
    JobQueue jobs_;
};

} // namespace korvane
