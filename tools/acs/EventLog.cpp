#include "tools/acs/EventLog.h"

#include "tools/common/Terminal.h"
#include "tools/common/UsageError.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace korvane::acs {

using tools::UsageError;

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

void EventLog::write(const JSON& event) {
    const std::string line = tools::jsonLine(event);
    const std::lock_guard lock(mutex_);
    for (const auto& sink : sinks_)
        sink->write(line);
}

} // namespace korvane::acs
