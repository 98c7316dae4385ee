#pragma once

#include "Platform/JSON.h"

#include <string>

namespace korvane::challenge {

/// Where that goes which others write to standard output.
enum class StrayOutput { standardError, nowhere };

/// Writes events as JSON lines to standard output, which is its own from then on. One for a process.
class EventWriter {
public:
    explicit EventWriter(StrayOutput stray);
    EventWriter(const EventWriter&) = delete;
    EventWriter& operator=(const EventWriter&) = delete;
    ~EventWriter();

    /// Written at once; nothing more once a line could not be written.
    void write(const JSON& event);

    /// An `error` event: a line of input that cannot be served.
    void writeError(const std::string& message) { write({{"event", "error"}, {"message", message}}); }

    /// Whether everything could be written.
    [[nodiscard]] bool isGood() const noexcept { return isGood_; }

private:
    const int output_;
    bool isGood_ = true;
};

} // namespace korvane::challenge
