#include "tools/challenge/EventWriter.h"

#include "tools/common/Terminal.h"

#include <cerrno>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace korvane::challenge {

EventWriter::EventWriter(StrayOutput stray) : output_(::fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0)) {
    const bool isKept = stray == StrayOutput::standardError;
    const int target = isKept ? STDERR_FILENO : ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    isGood_ = output_ >= 0 && ::dup2(target, STDOUT_FILENO) >= 0;
    if (!isKept) ::close(target);
}

EventWriter::~EventWriter() {
    ::close(output_);
}

void EventWriter::write(const JSON& event) {
    const std::string line = tools::jsonLine(event);
    for (std::string_view rest = line; isGood_ && !rest.empty();) {
        const ssize_t count = ::write(output_, rest.data(), rest.size());
        if (count > 0) rest.remove_prefix(static_cast<std::size_t>(count));
        isGood_ = count >= 0 || errno == EINTR;
    }
}

} // namespace korvane::challenge
