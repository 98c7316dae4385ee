#include "tools/acs/EventLog.h"

#include "tools/acs/UsageError.h"

#include <ostream>

namespace korvane::acs {

EventLog::EventLog(std::ostream& stream, const std::optional<std::filesystem::path>& file) : stream_(stream) {
    if (!file) return;
    file_.open(*file, std::ios::app);
    if (!file_) throw UsageError("The log file " + file->string() + " cannot be written.");
}

void EventLog::write(const JSON& event) {
    const std::string line = event.dump(-1, ' ', false, JSON::error_handler_t::replace) + '\n';
    const std::lock_guard lock(mutex_);
    stream_ << line << std::flush;
    if (file_.is_open()) file_ << line << std::flush;
}

} // namespace korvane::acs
