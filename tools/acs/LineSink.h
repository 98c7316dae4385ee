#pragma once

#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

namespace korvane::acs {

/// Lines on their way to a file, a pipe or a terminal. Who has something to say never waits for who reads it:
/// what is not taken at once is left to a thread of its own. Any thread.
class LineSink {
public:
    /// @param file  a descriptor, of which a copy is made.
    /// @param name  of what it leads to, for the one complaint on stderr when it takes no more.
    LineSink(int file, std::string name);
    LineSink(const LineSink&) = delete;
    LineSink& operator=(const LineSink&) = delete;
    /// Waits for what is under way, for two seconds at most.
    ~LineSink();

    /// Takes a line with its end; it is out on return if all before it are and there is room. Beyond 16
    /// MiB that wait, lines are dropped until the reader has caught up; a `dropped` event in their
    /// place says how many.
    void write(std::string_view line);

private:
    void run();
    [[nodiscard]] std::string next();
    [[nodiscard]] std::string_view putAtOnce(std::string_view text) const;
    [[nodiscard]] bool put(std::string_view text) const;
    [[nodiscard]] bool waitUntilReady() const;

    const int file_;
    const std::string name_;
    /// Readable once nothing more is to be waited for.
    const int cut_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::string waiting_;
    std::size_t droppedLines_ = 0;
    /// Whether the thread has lines in hand.
    bool isWriting_ = false;
    bool isEnding_ = false;
    bool hasEnded_ = false;
    std::thread writer_;
};

} // namespace korvane::acs
