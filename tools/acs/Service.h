#pragma once

#include "tools/acs/Challenges.h"
#include "tools/acs/EventLog.h"
#include "tools/acs/Faults.h"
#include "tools/acs/Scenario.h"
#include "tools/acs/Sealing.h"

#include <chrono>
#include <string>
#include <string_view>

namespace korvane::acs {

/// What the three parties do with the requests that reach them. Knows nothing of HTTP but methods, paths and
/// bodies. Any thread.
class Service {
public:
    struct Settings {
        Scenario scenario;
        /// Where the service is reached: `https://127.0.0.1:PORT`.
        std::string url;
        std::chrono::milliseconds challengeLifetime;
    };

    Service(Settings settings, const KeyRing& keys, EventLog& log);

    /// Never throws on account of the request.
    [[nodiscard]] Answer answer(std::string_view method, std::string_view path, std::string_view body);

private:
    [[nodiscard]] Answer authenticate(std::string_view path, std::string_view body);
    [[nodiscard]] Answer challenge(std::string_view path, std::string_view body);
    [[nodiscard]] Answer exchange(Challenge& challenge, std::string_view path, std::string_view body);
    [[nodiscard]] JSON filledIn(JSON members) const;
    void logReceived(std::string_view path, const JSON& message);
    void logRubbish(std::string_view path, std::string_view body);
    void logSent(std::string_view path, const Answer& answer, const std::optional<Fault>& fault = {});

    const Settings settings_;
    const KeyRing& keys_;
    EventLog& log_;
    Challenges challenges_;
};

} // namespace korvane::acs
