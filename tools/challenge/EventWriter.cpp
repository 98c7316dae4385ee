#include "tools/challenge/EventWriter.h"

#include "Platform/Failure.h"

#include <unistd.h>

namespace korvane::challenge {

EventWriter::EventWriter() : output_(::fdopen(::dup(STDOUT_FILENO), "w")) {
    if (!output_ || ::dup2(STDERR_FILENO, STDOUT_FILENO) < 0) fatalError("Standard output cannot be used.");
}

EventWriter::~EventWriter() {
    std::fclose(output_);
}

void EventWriter::write(const JSON& event) {
    // The ACS's texts may hold anything; a line is UTF-8 all the same.
    const std::string line = event.dump(-1, ' ', false, JSON::error_handler_t::replace) + "\n";
    isGood_ = std::fwrite(line.data(), 1, line.size(), output_) == line.size() && isGood_;
    isGood_ = std::fflush(output_) == 0 && isGood_;
}

} // namespace korvane::challenge
