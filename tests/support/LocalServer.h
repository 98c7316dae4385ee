#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace korvane {

/// A request as the server received it. Header names are in lower case.
struct ReceivedRequest {
    std::string method;
    std::string path;
    std::map<std::string, std::string> headers;
    std::string body;

    /// The client's port: the same for requests on one connection.
    int port = 0;
};

/// An HTTP or HTTPS server on a free port of 127.0.0.1. Its paths:
/// - `/echo` answers the body, or "nothing" without one; `/empty` answers no byte; `/broken` answers 500 and
///   "broken";
/// - `/size?bytes=N` answers N bytes; `/redirect?status=N&to=URL` answers N and no byte;
/// - `/cut` promises 100 bytes and closes after 10; `/silence` answers nothing while the server lives.
class LocalServer {
public:
    enum class Transport { plain, tls };

    /// How long a connection is kept that nothing is asked on.
    static constexpr std::chrono::seconds kKeepAlive{1};

    explicit LocalServer(Transport transport);
    LocalServer(const LocalServer&) = delete;
    LocalServer& operator=(const LocalServer&) = delete;
    ~LocalServer();

    [[nodiscard]] std::string url(const std::string& path, const std::string& host = "127.0.0.1") const;
    [[nodiscard]] std::string redirectingUrl(const std::string& to, int status = 302) const;
    [[nodiscard]] std::vector<ReceivedRequest> received() const;

    /// Waits until a request stands at `/silence`.
    void awaitSilence();

    /// The authority that signed the server's certificate, in PEM. The certificate names 127.0.0.1 alone.
    [[nodiscard]] static std::string authority();

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace korvane
