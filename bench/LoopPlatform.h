#pragma once

#include "Platform/URLSession.h"
#include "tests/support/ScriptedDevice.h"

#include <functional>
#include <memory>

namespace korvane::bench {

/// A platform on one thread: the work of all queues runs in the order of its time, which passes at once, and
/// requests are answered while they are sent. The caller stands on the main queue.
class LoopPlatform final : public ScriptedDevice, private URLSessionMaker {
public:
    LoopPlatform();
    ~LoopPlatform() override;

    /// The body of the answer to a request.
    std::function<Bytes(const URLRequest& request)> answer;

    /// Runs what comes in a span of time.
    void runFor(Seconds span);

private:
    class Loop;

    [[nodiscard]] std::shared_ptr<URLSession>
    makeSession(const URLSessionConfiguration& configuration) override;

    std::unique_ptr<Loop> loop_;
    Installation installation_;
};

} // namespace korvane::bench
