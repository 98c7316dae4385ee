#include "tools/acs/EventLog.h"

#include "tools/common/Terminal.h"
#include "tools/common/UsageError.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <ctime>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace korvane::acs {

using tools::UsageError;

namespace {

/// Now, in UTC: `2024-02-29T12:00:00.000Z` (RFC 3339).
std::string timeText() {
    using namespace std::chrono;
    const auto now = system_clock::now();
    const std::time_t seconds = system_clock::to_time_t(now);
    std::tm parts{};
    ::gmtime_r(&seconds, &parts);
    std::array<char, 32> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S.", &parts);
    const auto part = duration_cast<milliseconds>(now.time_since_epoch()).count() % 1000;
    return std::string(text.data(), length) + std::to_string(1000 + part).substr(1) + "Z";
}

} // namespace

EventLog::EventLog(const std::optional<std::string>& file) {
    if (file) {
        constexpr mode_t kMode = 0644;
        // A pipe that nobody reads is refused in place of being waited for.
        file_ = ::open(file->c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, kMode);
        if (file_ < 0)
            throw UsageError("The log file " + *file +
                             " cannot be written: " + std::generic_category().message(errno) + ".");
        sinks_.push_back(std::make_unique<LineSink>(file_, *file));
    }
    sinks_.push_back(std::make_unique<LineSink>(STDOUT_FILENO, "Standard output"));
}

EventLog::~EventLog() {
    sinks_.clear();
    if (file_ >= 0) ::close(file_);
}

void EventLog::keepFromStandardOutput() {
    const std::lock_guard lock(mutex_);
    sinks_.pop_back();
}

void EventLog::write(const JSON& event) {
    // Within the lock, so that the times stand in their order.
    const std::lock_guard lock(mutex_);
    JSON timed = {{"time", timeText()}};
    timed.update(event);
    const std::string line = tools::jsonLine(timed);
    journal_.add(line);
    for (const auto& sink : sinks_)
        sink->write(line);
}

} // namespace korvane::acs
