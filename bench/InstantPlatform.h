#pragma once

#include "Platform/Native/NativeUserDefaults.h"
#include "tests/support/PlayedAcs.h"
#include "tests/support/ScriptedDevice.h"
#include "tests/support/TemporaryFolder.h"

namespace korvane::bench {

/// A platform that takes no time of its own: requests are answered while they are sent, and work for later
/// is dropped, as that of a timer that is cancelled. Its fonts, locales and defaults file are this machine's.
/// One thread only.
class InstantPlatform final : public ScriptedDevice {
public:
    InstantPlatform();

    [[nodiscard]] Dispatch& dispatch() override;
    [[nodiscard]] NSUserDefaults& userDefaults() override { return defaults_; }
    /// Each request of this session gets `answer`, as it is when the session is made.
    [[nodiscard]] std::shared_ptr<URLSession>
    makeURLSession(const URLSessionConfiguration& configuration) override;

    Bytes answer;
    std::vector<std::string> localeIdentifiers;

private:
    [[nodiscard]] std::vector<std::string> availableIdentifiers() const override { return localeIdentifiers; }

    TemporaryFolder folder_;
    NativeUserDefaults defaults_{folder_.path() + "/defaults.json"};
};

} // namespace korvane::bench
