#pragma once

#include "Platform/Dispatch.h"
#include "Platform/Export.h"
#include "Platform/Native/MainLoop.h"

#include <functional>
#include <memory>

namespace korvane {

struct NativeLoops;

/// Queues on threads of the process: the main queue runs where `runMain` is called, which until then counts
/// as the thread that made this object; the others on threads of their own.
class KORVANE_EXPORT NativeDispatch final : public Dispatch {
public:
    NativeDispatch();

    /// The main queue runs in a loop that is run elsewhere; `runMain` is for one's own.
    explicit NativeDispatch(std::unique_ptr<MainLoop> main);

    /// Calls `end()`.
    ~NativeDispatch() override;

    [[nodiscard]] DispatchQueue& mainQueue() override { return *main_; }
    [[nodiscard]] DispatchQueue& globalQueue() override { return *global_; }
    [[nodiscard]] std::shared_ptr<DispatchQueue> makeSerialQueue(std::string label) override;
    [[nodiscard]] std::shared_ptr<DispatchSemaphore> makeSemaphore(int value) override;
    [[nodiscard]] Seconds now() const override;
    [[nodiscard]] std::chrono::system_clock::time_point date() const override;

    /// Runs the main queue's work on the calling thread until `stopMain()`. One thread at a time.
    void runMain();

    /// As `runMain`, until `isDone` says true. It is asked before the first and after each piece of work of
    /// the main queue, so what makes it true must be, or be followed by, such work.
    void runMainUntil(const std::function<bool()>& isDone);

    /// Ends `runMain()` after the main queue's work that was there before; a later `runMain()` if
    /// none runs. Any thread.
    void stopMain();

    /// Runs no further work, of the main queue either, and waits for the pieces that run on other queues.
    /// Those that wait in a `sync` onto the main queue are let go. Not from work of a queue.
    void end();

private:
    std::shared_ptr<NativeLoops> loops_;
    std::shared_ptr<DispatchQueue> main_;
    std::shared_ptr<DispatchQueue> global_;
    bool isStopAsked_ = false;
    bool hasEnded_ = false;
};

} // namespace korvane
