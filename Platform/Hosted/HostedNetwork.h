#pragma once

#include "Platform/Hosted/Host.h"
#include "Platform/URLSession.h"

#include <memory>
#include <string>

namespace korvane {

/// Sessions whose exchanges the host carries. What every request is bound to is seen to here: schemes, time
/// limits, redirects, and that each task ends once. Any thread.
class HostedNetwork final : public URLSessionMaker {
public:
    /// @param host  outlives this object.
    explicit HostedNetwork(const Host& host);
    ~HostedNetwork() override;

    [[nodiscard]] std::shared_ptr<URLSession>
    makeSession(const URLSessionConfiguration& configuration) override;

    /// In every session made from now on. Before other threads use the network.
    void addCertificateAuthorities(const std::string& pem) { authorities_ += "\n" + pem; }

    /// @return false if nobody waits for that exchange.
    bool complete(std::uint64_t number, HostAnswer answer);

    /// Ends all tasks with an error, those to come too, and waits until that is told.
    void stop();

private:
    class Exchanges;
    class Task;
    class Session;

    const std::shared_ptr<Exchanges> exchanges_;
    std::string authorities_;
};

} // namespace korvane
