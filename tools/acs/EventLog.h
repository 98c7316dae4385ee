#pragma once

#include "Platform/JSON.h"

#include <filesystem>
#include <fstream>
#include <iosfwd>
#include <mutex>
#include <optional>

namespace korvane::acs {

/// One JSON object a line, flushed, to a stream and, where one is named, to a file too. Any thread.
class EventLog {
public:
    /// @throws UsageError when the file cannot be written.
    EventLog(std::ostream& stream, const std::optional<std::filesystem::path>& file);

    /// Texts that are not UTF-8 are repaired.
    void write(const JSON& event);

private:
    std::mutex mutex_;
    std::ostream& stream_;
    std::ofstream file_;
};

} // namespace korvane::acs
