#pragma once

#include "Platform/Hosted/HostedPlatform.h"

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace korvane {

/// A host as another system would be: its own HTTP client, store and main loop, behind functions. Its
/// platform ends before it.
class OwnHost {
public:
    OwnHost() = default;
    OwnHost(const OwnHost&) = delete;
    OwnHost& operator=(const OwnHost&) = delete;
    ~OwnHost();

    [[nodiscard]] Host functions();
    /// Who is told what came of exchanges.
    void serve(HostedPlatform& platform) { platform_ = &platform; }

    std::map<HostValue, std::vector<std::string>> values;
    /// Whether the store takes anything.
    std::atomic<bool> isKeeping{true};
    std::atomic<int> wakes{0};

private:
    void send(const HostRequest& request);

    HostedPlatform* platform_ = nullptr;
    std::mutex mutex_;
    std::map<std::string, std::string> store_;
    std::map<std::uint64_t, std::shared_ptr<std::atomic<bool>>> givenUp_;
    std::vector<std::thread> exchanges_;
};

} // namespace korvane
