#pragma once

#include "Platform/Native/AnswerWatcher.h"
#include "Platform/URLSession.h"

#include <memory>
#include <string>

namespace korvane {

/// Sessions over the HTTP client that the operating system has, as `SystemPlatform` gives them.
class SystemNetwork : public URLSessionMaker {
public:
    /// Trusted in every session made from now on. Before other threads make any.
    /// @param pem  certificates in PEM, one after the other.
    virtual void addCertificateAuthorities(const std::string& pem) = 0;

    /// Looks at the answers to all sessions made from now on. Before other threads make any.
    virtual void watchAnswers(AnswerWatcher watcher) = 0;

    /// Ends the exchanges under way and those to come with an error.
    virtual void stop() = 0;
};

/// The only place from which the HTTP client is asked for. An application whose host carries HTTP by itself puts
/// a source of its own in the place of this one's, and needs no client.
[[nodiscard]] std::unique_ptr<SystemNetwork> makeSystemNetwork();

} // namespace korvane
