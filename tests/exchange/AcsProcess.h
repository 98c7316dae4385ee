#pragma once

#include "Platform/JSON.h"

#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <sys/types.h>

namespace korvane {

/// What a run of the ACS came to.
struct AcsEnding {
    /// The exit code, or 128 and the number of the signal that ended it.
    int exitCode = -1;
    /// The log lines after the first one.
    std::vector<JSON> events;

    /// The messages of the events of this name, in their order; an event without one gives null.
    [[nodiscard]] std::vector<JSON> messages(const std::string& event) const;
};

/// `korvane-acs` as a child process on a free port. Test thread only.
class AcsProcess {
public:
    /// Returns once it listens. A tool that does not come that far ends the test program.
    /// @param pkiFolder  filled by the first process that uses it.
    /// @param scenario  the name of a scenario that is shipped with the tool.
    AcsProcess(const std::string& pkiFolder, const std::string& scenario);
    AcsProcess(const AcsProcess&) = delete;
    AcsProcess& operator=(const AcsProcess&) = delete;
    ~AcsProcess();

    /// The tool's first line: its URL and the files that a client needs.
    [[nodiscard]] const JSON& listening() const noexcept { return listening_; }

    /// Ends it by SIGTERM. All that it logged is there then.
    AcsEnding stop();

private:
    struct Closing {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };

    [[nodiscard]] std::optional<JSON> readEvent();

    pid_t process_ = -1;
    std::unique_ptr<std::FILE, Closing> output_;
    JSON listening_;
    std::vector<JSON> events_;
    /// Empties the pipe, so that the tool never waits for its reader.
    std::thread reader_;
};

} // namespace korvane
