#pragma once

#include "Platform/URLSession.h"

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace korvane {

/// What a request gets. By default an answer with an empty body, at once.
struct ScriptedAnswer {
    std::optional<Bytes> body = Bytes{};
    std::optional<std::string> error = std::nullopt;

    /// From `resume()` on; absent for an answer that never comes.
    std::optional<Seconds> delay = Seconds{0};
};

/// One request that was sent, and what became of it.
struct SimulatedExchange {
    URLRequest request;

    /// Whether the completion has been queued.
    bool hasEnded = false;

    /// Whether it ended by `cancel()`.
    bool isCancelled = false;
};

/// The network of a simulation: a function answers all requests. A session's resource time limit holds.
class SimulatedNetwork final : public URLSessionMaker {
public:
    explicit SimulatedNetwork(Dispatch& dispatch) : dispatch_(dispatch) {}

    /// Asked when a task is resumed.
    std::function<ScriptedAnswer(const URLRequest&)> answer = [](const URLRequest&) {
        return ScriptedAnswer{};
    };

    [[nodiscard]] std::shared_ptr<URLSession>
    makeSession(const URLSessionConfiguration& configuration) override;

    /// In the order in which they were sent. Entries stay where they are.
    [[nodiscard]] const std::deque<SimulatedExchange>& exchanges() const noexcept { return exchanges_; }
    [[nodiscard]] const std::vector<URLSessionConfiguration>& sessions() const noexcept { return sessions_; }
    [[nodiscard]] std::size_t runningCount() const;

private:
    class Task;
    struct Session;

    Dispatch& dispatch_;
    std::deque<SimulatedExchange> exchanges_;
    std::vector<URLSessionConfiguration> sessions_;
};

} // namespace korvane
