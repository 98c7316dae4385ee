#pragma once

#include "Platform/Native/NativeUserDefaults.h"
#include "tests/support/PlayedAcs.h"
#include "tests/support/ScriptedDevice.h"
#include "tests/support/TemporaryFolder.h"

namespace korvane::bench {

/// A platform that takes no time of its own: requests are answered while they are sent, and work for later
/// is dropped, as that of a timer that is cancelled. Its fonts, locales and defaults file are this machine's.
/// One thread only.
class InstantPlatform final : public ScriptedDevice, private URLSessionMaker {
public:
    InstantPlatform();

    /// What each request of a session gets, as it is when the session is made.
    Bytes answer;
    std::vector<std::string> localeIdentifiers;

private:
    [[nodiscard]] std::vector<std::string> availableIdentifiers() const override { return localeIdentifiers; }
    [[nodiscard]] std::shared_ptr<URLSession>
    makeSession(const URLSessionConfiguration& configuration) override;

    TemporaryFolder folder_;
    NativeUserDefaults defaults_{folder_.path() + "/defaults.json"};
    std::unique_ptr<Dispatch> dispatch_;
    Installation installation_;
};

} // namespace korvane::bench
