#pragma once

#include <string>
#include <thread>

namespace korvane {

/// A server on a free port of 127.0.0.1 that gives every request without a body the same bytes and closes the
/// connection: answers that no web server library would write.
class CannedServer {
public:
    explicit CannedServer(std::string answer);
    CannedServer(const CannedServer&) = delete;
    CannedServer& operator=(const CannedServer&) = delete;
    ~CannedServer();

    [[nodiscard]] std::string url() const { return "http://127.0.0.1:" + std::to_string(port_) + "/"; }

private:
    void serve() const;

    const std::string answer_;
    const int listener_;
    int port_ = 0;
    std::thread thread_;
};

} // namespace korvane
