#pragma once

#include "Platform/Export.h"
#include "Platform/Text.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace korvane {

/// Receives the library's log lines. Implemented by the application; called on any thread.
class KORVANE_EXPORT IKorvaneLogger {
public:
    virtual ~IKorvaneLogger() = default;

    /// @param message   the text of the line; no level, tag or time is added.
    /// @param file      the path of the source file inside this tree.
    /// @param function  the enclosing function as name and argument labels, as in "decrypt(_:)".
    /// @param line      the source line, from 1.
    virtual void log(const std::string& message, const char* file, const char* function, unsigned line) = 0;
};

/// The process-wide holder of the application's logger. Any thread.
class KORVANE_EXPORT Logger {
public:
    static Logger& shared();

    /// The logger, or null. Costs one atomic read while there is none.
    [[nodiscard]] std::shared_ptr<IKorvaneLogger> debug() const;

    void setDebug(std::shared_ptr<IKorvaneLogger> logger);

private:
    Logger() = default;

    std::atomic<bool> present_{false};
    mutable std::mutex mutex_;
    std::shared_ptr<IKorvaneLogger> debug_;
};

/// A text for the log whose line breaks are the library's own.
struct LogLines {
    std::string text;
};

/// A message as it goes to the logger: values of others stand in it, and can neither begin a line of their
/// own nor steer a terminal.
[[nodiscard]] inline std::string asLogged(std::string_view message) {
    return escapedControls(message);
}
[[nodiscard]] inline std::string asLogged(const LogLines& message) {
    return escapedControls(message.text, LineBreaks::kept);
}

} // namespace korvane

/// A log site. `message` is an expression that is not evaluated while there is no logger; a
/// text, or `LogLines`.
#define KORVANE_LOG(function, message)                                                                       \
    do {                                                                                                     \
        if (const auto korvaneLogger = ::korvane::Logger::shared().debug())                                  \
            korvaneLogger->log(::korvane::asLogged(message), __FILE__, function, __LINE__);                  \
    } while (false)
