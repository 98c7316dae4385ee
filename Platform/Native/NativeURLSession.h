#pragma once

#include "Platform/Native/AnswerWatcher.h"
#include "Platform/URLSession.h"

#include <memory>
#include <string>

namespace korvane {

class CurlEngine;

/// A session over libcurl. Proxies are those that the environment names (`https_proxy`, `no_proxy` ...), as
/// for any program of the system; no content coding is asked for.
class NativeURLSession final : public URLSession {
public:
    /// @param watcher  may be empty.
    NativeURLSession(std::shared_ptr<CurlEngine> engine, const URLSessionConfiguration& configuration,
                     AnswerWatcher watcher);

    [[nodiscard]] std::shared_ptr<URLSessionDataTask> dataTask(URLRequest request,
                                                               Completion completion) override;

    /// What the tasks of a session share; they may outlive it.
    struct Common {
        URLSessionConfiguration configuration;

        /// The system's authorities and the additional ones as PEM texts; empty if there
        /// are none of the latter.
        std::string authorities;
        std::shared_ptr<CurlEngine> engine;
        AnswerWatcher watcher;
    };

private:
    std::shared_ptr<const Common> common_;
};

} // namespace korvane
