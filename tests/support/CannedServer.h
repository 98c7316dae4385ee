#pragma once

#include <cstddef>
#include <string>
#include <thread>

namespace korvane {

/// A server on a free port of 127.0.0.1 that gives every connection the same bytes and closes it: answers
/// that no web server library would write, and many at once. Where more requests follow, the answer has to
/// say "Connection: close".
class CannedServer {
public:
    /// @param held  so many connections wait for one another before the first is answered.
    explicit CannedServer(std::string answer, std::size_t held = 1);
    CannedServer(const CannedServer&) = delete;
    CannedServer& operator=(const CannedServer&) = delete;
    ~CannedServer();

    [[nodiscard]] std::string url() const { return "http://127.0.0.1:" + std::to_string(port_) + "/"; }

private:
    void serve();
    void answer(int connection) const;

    const std::string answer_;
    const std::size_t held_;
    int listener_;
    int port_ = 0;
    std::thread thread_;
};

} // namespace korvane
