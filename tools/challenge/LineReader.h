#pragma once

#include "Platform/Dispatch.h"

#include <functional>
#include <memory>
#include <string>

namespace korvane::challenge {

/// What was read of standard input: a line without its end, a line beyond the limit, or the end.
struct InputLine {
    enum class Kind { line, tooLong, end };
    Kind kind;
    std::string text;
};

/// Reads standard input line by line on the global queue and hands each line to the main queue.
class LineReader {
public:
    /// In bytes.
    static constexpr std::size_t kLongestLine = std::size_t{1} << 20U;

    /// @param onLine  runs on the main queue, while this object lives.
    LineReader(Dispatch& dispatch, std::function<void(InputLine)> onLine);
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;
    /// The reading ends soon; nothing waits for input any more.
    ~LineReader();

private:
    class Reading;

    std::shared_ptr<Reading> reading_;
    std::shared_ptr<const std::function<void(InputLine)>> onLine_;
};

} // namespace korvane::challenge
