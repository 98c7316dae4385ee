#pragma once

#include "Platform/Export.h"
#include "Platform/Native/AnswerWatcher.h"
#include "Platform/Platform.h"

#include <memory>
#include <string>

namespace korvane {

/// What the operating system gives every filling that runs on it, whatever the filling shows its screens on.
class KORVANE_EXPORT SystemPlatform : public Platform {
public:
    ~SystemPlatform() override;

    /// Trusts further authorities in every session made from now on, as a test bed needs. Before other
    /// threads use the platform.
    /// @param pem  certificates in PEM, one after the other.
    virtual void addCertificateAuthorities(const std::string& pem);

    /// Lets someone look at the answers to all sessions made from now on, for tools that say what a server
    /// did. Before other threads use the platform.
    void watchAnswers(AnswerWatcher watcher);

protected:
    /// What the system does not give: a filling's own services.
    struct FillingServices {
        UIDevice& device;
        UIScreen& mainScreen;
        UIFontServices& fonts;
        TextMeasurer& textMeasurer;
        Dispatch& dispatch;
    };

    SystemPlatform();

    /// All services: the filling's own and the system's. For the filling's `Installation`.
    [[nodiscard]] PlatformServices servicesWith(const FillingServices& own);

    /// Ends the network: exchanges under way and those to come end with an error, so that no work
    /// waits for them. A filling's first act at its end, while the platform is still whole, since what
    /// waits may ask for it.
    void endNetwork();

private:
    struct Services;

    std::unique_ptr<Services> services_;
};

} // namespace korvane
