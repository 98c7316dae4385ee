#pragma once

#include "tools/acs/Faults.h"
#include "tools/acs/Request.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace korvane::acs {

/// HTTPS on one loopback address, a thread a connection.
class HttpServer {
public:
    using Handler = std::function<Answer(const Request& request)>;

    /// Bodies beyond this many bytes, inflated ones included, are refused with 413.
    static constexpr std::size_t kLongestBody = std::size_t{1024} * 1024;
    /// Connections that are served at once; those beyond wait.
    static constexpr std::size_t kConnections = 192;

    /// @throws UsageError when certificate or key cannot be used.
    HttpServer(const std::filesystem::path& certificate, const std::filesystem::path& key);
    ~HttpServer();

    /// @param port  0 for a free one.
    /// @return the port.
    /// @throws UsageError when the address cannot be had.
    int bind(const std::string& host, int port);

    /// Serves until `stop`. The handler is called on any thread.
    void run(Handler handler);

    /// Ends `run`, answers that wait included, from another thread. Connections are cut.
    void stop();

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace korvane::acs
