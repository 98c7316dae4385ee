#pragma once

#include "Platform/JSON.h"
#include "tools/acs/Journal.h"
#include "tools/acs/LineSink.h"

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace korvane::acs {

/// One JSON object a line, at once, with its time: to the journal, to standard output and, where one is named,
/// to a file, in one order. Nobody waits for a reader (`LineSink`). Any thread.
class EventLog {
public:
    /// @throws UsageError when the file cannot be written.
    explicit EventLog(const std::optional<std::string>& file);
    ~EventLog();

    /// Texts that are not UTF-8 are repaired.
    void write(const JSON& event);

    /// What comes from now on stays away from standard output.
    void keepFromStandardOutput();

    [[nodiscard]] const Journal& journal() const noexcept { return journal_; }

private:
    int file_ = -1;
    std::mutex mutex_;
    Journal journal_;
    std::vector<std::unique_ptr<LineSink>> sinks_;
};

} // namespace korvane::acs
