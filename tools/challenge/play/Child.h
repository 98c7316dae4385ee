#pragma once

#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace korvane::challenge {

/// A process that runs one challenge, with pipes for its standard input and output. It sees the end of its
/// input when this object or the process that holds it goes.
class Child {
public:
    /// Forks; only while the process has one thread.
    /// @param run  what the child does; its result is the exit code.
    explicit Child(const std::function<int()>& run);
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;
    /// Waits for the end.
    ~Child();

    /// To be watched for something to read.
    [[nodiscard]] int output() const noexcept { return output_; }

    /// Writes a line to its input; nothing if that is closed.
    void write(const std::string& line);
    void closeInput();

    /// The whole lines that have come, after `output()` has been found readable.
    [[nodiscard]] std::vector<std::string> read();

    /// Whether `read` has come to the end of the output.
    [[nodiscard]] bool hasEnded() const noexcept { return hasEnded_; }

    /// Ends the process at once.
    void kill() const;

    /// Waits for the end, and says how it was: "exit code 1", "signal 9".
    [[nodiscard]] std::string manner();

private:
    pid_t process_ = -1;
    int input_ = -1;
    int output_ = -1;
    std::string rest_;
    bool hasEnded_ = false;
};

} // namespace korvane::challenge
