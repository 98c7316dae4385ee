#pragma once

#include "Platform/Export.h"

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

namespace korvane {

/// A span of time in seconds, fractions included.
using Seconds = std::chrono::duration<double>;

class DispatchWorkItem;

/// Who keeps items until they are due. Any thread.
class KORVANE_EXPORT DispatchKeeper {
public:
    DispatchKeeper(const DispatchKeeper&) = delete;
    DispatchKeeper& operator=(const DispatchKeeper&) = delete;
    virtual ~DispatchKeeper() = default;

    /// The item was cancelled: it is kept no longer, however often it waits here. It may be kept no more by
    /// then, and may never have been.
    virtual void letGo(const DispatchWorkItem& item) = 0;

protected:
    DispatchKeeper() = default;
};

/// A piece of work that can be cancelled. Any thread.
class KORVANE_EXPORT DispatchWorkItem {
public:
    using Work = std::function<void()>;

    explicit DispatchWorkItem(Work work);

    /// Runs the work on the calling thread, unless the item was cancelled. An exception that leaves the work
    /// ends the process (`fatalError` with its `what()`).
    void perform();

    /// The item does not run from now on, what its work holds is released, and so is the item itself by a
    /// queue on which it waits for its time. A run that is under way ends as if nothing had happened.
    void cancel();

    /// From a queue that has put the item aside until its time: the keeper hears when it is cancelled, at once
    /// if it has been. There is one keeper, the last.
    void setKeeper(std::weak_ptr<DispatchKeeper> keeper);

    [[nodiscard]] bool isCancelled() const;

private:
    mutable std::mutex mutex_;
    std::shared_ptr<const Work> work_;
    std::weak_ptr<DispatchKeeper> keeper_;
};

/// Runs work: one piece at a time and in order (main queue, serial queues), or many at once
/// (global queue). Any thread.
class KORVANE_EXPORT DispatchQueue {
public:
    using Work = DispatchWorkItem::Work;

    DispatchQueue(const DispatchQueue&) = delete;
    DispatchQueue& operator=(const DispatchQueue&) = delete;
    virtual ~DispatchQueue() = default;

    /// Returns at once; the work runs later, even when the caller is on this very queue.
    void async(Work work) { enqueue(std::make_shared<DispatchWorkItem>(std::move(work))); }
    void async(std::shared_ptr<DispatchWorkItem> item) { enqueue(std::move(item)); }

    /// As `async`, but not before `delay` has passed. A delay of 0 or less is due at once. An item that is
    /// cancelled meanwhile is let go of at once.
    void asyncAfter(Seconds delay, std::shared_ptr<DispatchWorkItem> item) {
        enqueueAfter(delay, std::move(item));
    }

    /// Runs the work and returns when it has ended, or when the platform has ended and dropped it. From
    /// this queue's own work, where it could never return, the process ends (`fatalError`); a caller
    /// that may stand on the queue asks `isCurrent()` and then calls its work directly. On the global
    /// queue, which orders nothing, the work runs on the calling thread. Two queues that `sync` onto
    /// each other wait for ever.
    virtual void sync(const Work& work) = 0;

    /// Whether the caller is work of this queue, or stands on the main queue's thread.
    [[nodiscard]] virtual bool isCurrent() const = 0;

protected:
    DispatchQueue() = default;

    virtual void enqueue(std::shared_ptr<DispatchWorkItem> item) = 0;
    virtual void enqueueAfter(Seconds delay, std::shared_ptr<DispatchWorkItem> item) = 0;
};

enum class DispatchTimeoutResult { success, timedOut };

/// A counting semaphore. Any thread.
class KORVANE_EXPORT DispatchSemaphore {
public:
    DispatchSemaphore(const DispatchSemaphore&) = delete;
    DispatchSemaphore& operator=(const DispatchSemaphore&) = delete;
    virtual ~DispatchSemaphore() = default;

    /// What the caller did before is seen by the waiter that this wakes.
    virtual void signal() = 0;

    /// Blocks until the count is above 0, then takes 1 from it; or until `limit` has passed.
    [[nodiscard]] virtual DispatchTimeoutResult wait(Seconds limit) = 0;

protected:
    DispatchSemaphore() = default;
};

/// The queues and the clocks of a platform. Any thread. Objects made here may outlive the platform; a queue
/// that does drops what it is given.
class KORVANE_EXPORT Dispatch {
public:
    Dispatch(const Dispatch&) = delete;
    Dispatch& operator=(const Dispatch&) = delete;
    virtual ~Dispatch() = default;

    [[nodiscard]] virtual DispatchQueue& mainQueue() = 0;

    /// The concurrent queue of the default quality of service. Its work may block.
    [[nodiscard]] virtual DispatchQueue& globalQueue() = 0;

    /// @param label  for people who look at the process; any text.
    [[nodiscard]] virtual std::shared_ptr<DispatchQueue> makeSerialQueue(std::string label) = 0;

    /// @param value  the count at the start, 0 or more.
    [[nodiscard]] virtual std::shared_ptr<DispatchSemaphore> makeSemaphore(int value) = 0;

    /// The time since an arbitrary origin. It never goes back.
    [[nodiscard]] virtual Seconds now() const = 0;

    /// The date, which the user may change.
    [[nodiscard]] virtual std::chrono::system_clock::time_point date() const = 0;

protected:
    Dispatch() = default;
};

/// Work that the main queue repeats until it is told to stop; nobody needs to hold it. Main queue only.
class KORVANE_EXPORT Timer : public std::enable_shared_from_this<Timer> {
    struct Private {};

public:
    /// The first run comes one interval from now. A run that could not happen in time is left out, and the
    /// next ones keep their beat. An interval below 0.1 milliseconds counts as that.
    static std::shared_ptr<Timer> scheduledTimer(Dispatch& dispatch, Seconds interval,
                                                 std::function<void()> work);

    Timer(Private, Dispatch& dispatch, Seconds interval, std::function<void()> work);

    /// No run starts from now on, and what the work holds is released.
    void invalidate();

    [[nodiscard]] bool isValid() const noexcept { return work_ != nullptr; }

private:
    void arm();
    void fire();

    Dispatch& dispatch_;
    const Seconds interval_;
    Seconds due_;
    std::shared_ptr<const std::function<void()>> work_;
    std::weak_ptr<DispatchWorkItem> next_;
};

} // namespace korvane
