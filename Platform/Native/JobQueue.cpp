#include "Platform/Native/JobQueue.h"

#include <algorithm>
#include <utility>

namespace korvane {

void JobQueue::push(Job job) {
    {
        const std::lock_guard lock(mutex_);
        jobs_.push_back(std::move(job));
    }
    hasJobs_.notify_one();
}

JobQueue::Job JobQueue::pop() {
    std::unique_lock lock(mutex_);
    hasJobs_.wait(lock, [this] { return !jobs_.empty(); });
    return takeFirst();
}

JobQueue::Job JobQueue::popWithin(Seconds limit) {
    constexpr Seconds kLongest{24.0 * 3600};
    std::unique_lock lock(mutex_);
    const bool isThere =
        hasJobs_.wait_for(lock, std::clamp(limit, Seconds{0}, kLongest), [this] { return !jobs_.empty(); });
    return isThere ? takeFirst() : nullptr;
}

JobQueue::Job JobQueue::takeFirst() {
    Job job = std::move(jobs_.front());
    jobs_.pop_front();
    return job;
}

} // namespace korvane
