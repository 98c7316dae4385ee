#pragma once

#include "Platform/Dispatch.h"

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace korvane {

/// Jobs in the order in which they came, for a main loop that runs elsewhere. Any thread.
class JobQueue {
public:
    using Job = std::function<void()>;

    void push(Job job);

    /// Waits for a job.
    [[nodiscard]] Job pop();

    /// Waits no longer than the limit.
    /// @return null if no job came.
    [[nodiscard]] Job popWithin(Seconds limit);

private:
    [[nodiscard]] Job takeFirst();

    std::mutex mutex_;
    std::condition_variable hasJobs_;
    std::deque<Job> jobs_;
};

} // namespace korvane
