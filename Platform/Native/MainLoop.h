#pragma once

#include "Platform/Export.h"

#include <functional>

namespace korvane {

/// Where the main queue's work runs: a loop of this library's own, or the one that an application has.
class KORVANE_EXPORT MainLoop {
public:
    MainLoop(const MainLoop&) = delete;
    MainLoop& operator=(const MainLoop&) = delete;
    virtual ~MainLoop() = default;

    /// The job runs in the loop, after those before it. It is dropped if the loop goes first. Any thread.
    virtual void post(std::function<void()> job) = 0;

    /// The calling thread runs the loop from now on.
    virtual void enter() {}

    /// Waits for a job and runs it, on the thread that entered.
    virtual void runOne() = 0;

    /// Whether the caller may not wait for a job of this loop, since it would run on the calling thread.
    [[nodiscard]] virtual bool isCurrent() const = 0;

protected:
    MainLoop() = default;
};

} // namespace korvane
