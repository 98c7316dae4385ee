#pragma once

#include "Platform/URLSession.h"
#include "tests/support/ScriptedDevice.h"

#include <functional>
#include <memory>

namespace korvane::bench {

/// A platform on one thread: the work of all queues runs in the order of its time, which passes at once, and
/// requests are answered while they are sent. The caller stands on the main queue.
class LoopPlatform final : public ScriptedDevice {
public:
    LoopPlatform();
    ~LoopPlatform() override;

    [[nodiscard]] Dispatch& dispatch() override;
    [[nodiscard]] std::shared_ptr<URLSession>
    makeURLSession(const URLSessionConfiguration& configuration) override;

    /// The body of the answer to a request.
    std::function<Bytes(const URLRequest& request)> answer;

    /// Runs what comes in a span of time.
    void runFor(Seconds span);

private:
    class Loop;

    std::unique_ptr<Loop> loop_;
};

} // namespace korvane::bench
