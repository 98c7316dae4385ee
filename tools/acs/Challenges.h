#pragma once

#include "Platform/Security/Secret.h"
#include "tools/acs/Director.h"
#include "tools/acs/Messages.h"

#include <chrono>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace korvane::acs {

/// One challenge between its authentication and its end.
struct Challenge {
    Challenge(TransactionIDs itsIds, SecretBytes itsKey, std::shared_ptr<const Scenario> itsScenario)
        : ids(std::move(itsIds)), key(std::move(itsKey)), scenario(std::move(itsScenario)),
          director(*scenario) {}

    const TransactionIDs ids;
    const SecretBytes key;
    const std::shared_ptr<const Scenario> scenario;

    /// Guards what follows.
    std::mutex mutex;
    Director director;
    /// The counter that the next CReq must have.
    int counter = 0;
    bool hasEnded = false;
};

/// The challenges that the ACS remembers, by `acsTransID`. Any thread.
class Challenges {
public:
    using Clock = std::chrono::steady_clock;

    /// @param lifetime  how long after its authentication a challenge is known.
    explicit Challenges(std::chrono::milliseconds lifetime) : lifetime_(lifetime) {}

    void add(std::shared_ptr<Challenge> challenge);

    /// @return null for a challenge that is unknown or forgotten.
    [[nodiscard]] std::shared_ptr<Challenge> find(std::string_view acsTransID);

private:
    void forgetOld();

    std::chrono::milliseconds lifetime_;
    std::mutex mutex_;
    std::map<std::string, std::shared_ptr<Challenge>, std::less<>> challenges_;
    /// Oldest first.
    std::deque<std::pair<Clock::time_point, std::string>> births_;
};

} // namespace korvane::acs
