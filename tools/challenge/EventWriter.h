#pragma once

#include "Platform/JSON.h"

#include <string>

namespace korvane::challenge {

/// Writes events as JSON lines to standard output, which is its own from then on: what others write there
/// goes to standard error. One for a process.
class EventWriter {
public:
    EventWriter();
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
