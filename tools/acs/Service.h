#pragma once

#include "tools/acs/Challenges.h"
#include "tools/acs/Desk.h"
#include "tools/acs/EventLog.h"
#include "tools/acs/Faults.h"
#include "tools/acs/Request.h"
#include "tools/acs/Scenarios.h"
#include "tools/acs/Sealing.h"

#include <chrono>
#include <string>
#include <string_view>

namespace korvane::acs {

/// What the three parties do with the requests that reach them. Knows nothing of HTTP but what a
/// `Request` holds. Any thread.
class Service {
public:
    struct Settings {
        /// What is played where neither request nor desk names another.
        const Play& standing;
        const Scenarios& scenarios;
        /// Where the service is reached: `https://127.0.0.1:PORT`.
        std::string url;
        std::chrono::milliseconds challengeLifetime;
    };

    Service(const Settings& settings, const KeyRing& keys, EventLog& log, Desk& desk);

    /// Never throws on account of the request.
    [[nodiscard]] Answer answer(const Request& request);

private:
    [[nodiscard]] Answer authenticate(const Request& request);
    [[nodiscard]] Answer challenge(std::string_view path, std::string_view body);
    [[nodiscard]] Answer exchange(const std::shared_ptr<Challenge>& challenge, std::string_view path,
                                  std::string_view body);
    [[nodiscard]] Answer sealOrHold(const std::shared_ptr<const Challenge>& challenge, std::string_view path,
                                    const Answer& made, const std::optional<Fault>& fault);
    [[nodiscard]] JSON filledIn(JSON members) const;
    void logReceived(std::string_view path, const JSON& message);
    void logRubbish(std::string_view path, std::string_view body);
    void logSent(std::string_view path, const Answer& answer, const std::optional<Fault>& fault = {},
                 const JSON& more = JSON::object());

    const Settings settings_;
    const KeyRing& keys_;
    EventLog& log_;
    Desk& desk_;
    Challenges challenges_;
};

} // namespace korvane::acs
