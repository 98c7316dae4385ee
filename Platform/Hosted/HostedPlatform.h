#pragma once

#include "Platform/Export.h"
#include "Platform/Hosted/Host.h"
#include "Platform/Native/SystemPlatform.h"

#include <memory>
#include <string>

namespace korvane {

/// A platform on what a host hands in: made for an application in another language, whose functions are the
/// machine. Draws nothing. While it lives it is the platform of the process; the thread that makes it is the
/// main one, and ends it. Its end ends all exchanges, waits for the work that runs on its queues and drops
/// the rest.
class KORVANE_EXPORT HostedPlatform final : public SystemPlatform {
public:
    explicit HostedPlatform(Host host);
    ~HostedPlatform() override;

    /// Runs the next piece of the main queue's work, waiting for it no longer than the limit. Main thread only.
    /// @return whether there was one.
    bool runMain(Seconds limit);

    /// What came of an exchange that the host was given. Any thread.
    /// @return false if nobody waits for it: it was cancelled, took too long, or was completed before.
    bool complete(std::uint64_t number, HostAnswer answer);

    void addCertificateAuthorities(const std::string& pem) override;

    // What the host tells by itself. Main thread only.

    /// The device is held in another way: its screen has that size from now on, and the application is told.
    void turn(UIDeviceOrientation orientation, CGSize screen);
    /// The screen is recorded or mirrored from now on, or no more.
    void setCaptured(bool isCaptured);
    /// The user leaves the application or comes back.
    void setActive(bool isActive);

private:
    struct Parts;

    PlatformServices services();

    std::unique_ptr<Parts> parts_;
    Installation installation_;
};

} // namespace korvane
