#include "tools/challenge/play/Child.h"

#include "Platform/Failure.h"
#include "tools/common/Tool.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <system_error>

#include <sys/wait.h>
#include <unistd.h>

namespace korvane::challenge {

namespace {

[[noreturn]] void failBySystem(const std::string& what) {
    throw std::runtime_error(what + ": " + std::generic_category().message(errno) + ".");
}

/// Both ends of a pipe.
struct Pipe {
    std::array<int, 2> ends{};

    Pipe() {
        if (::pipe(ends.data()) != 0) failBySystem("No pipe can be made");
    }
};

/// What the child does from the fork to its end. The pipes of its siblings must not stay open in it: who
/// holds one keeps its other end from being seen to close.
[[noreturn]] void live(const Pipe& input, const Pipe& output, const std::function<int()>& run) {
    ::dup2(input.ends[0], STDIN_FILENO);
    ::dup2(output.ends[1], STDOUT_FILENO);
    ::close_range(STDERR_FILENO + 1, ~0U, 0);
    int code = tools::kNotDone;
    try {
        code = run();
    } catch (const std::exception& error) {
        tools::complain("korvane-challenge", localizedDescription(error));
    }
    // What the parent had still to write is not the child's.
    ::_exit(code);
}

} // namespace

Child::Child(const std::function<int()>& run) {
    const Pipe input;
    const Pipe output;
    process_ = ::fork();
    if (process_ == 0) live(input, output, run);
    ::close(input.ends[0]);
    ::close(output.ends[1]);
    input_ = input.ends[1];
    output_ = output.ends[0];
    if (process_ > 0) return;
    const int reason = errno;
    closeInput();
    ::close(output_);
    errno = reason;
    failBySystem("No process can be started");
}

Child::~Child() {
    closeInput();
    ::close(output_);
    static_cast<void>(manner());
}

void Child::write(const std::string& line) {
    if (input_ < 0) return;
    for (std::string_view rest = line; !rest.empty();) {
        const ssize_t count = ::write(input_, rest.data(), rest.size());
        // A child that has gone tells so by its output.
        if (count < 0 && errno != EINTR) return;
        if (count > 0) rest.remove_prefix(static_cast<std::size_t>(count));
    }
}

void Child::closeInput() {
    if (input_ >= 0) ::close(std::exchange(input_, -1));
}

std::vector<std::string> Child::read() {
    std::array<char, 65536> chunk{};
    const ssize_t count = ::read(output_, chunk.data(), chunk.size());
    hasEnded_ = count == 0 || (count < 0 && errno != EINTR);
    if (count > 0) rest_.append(chunk.data(), static_cast<std::size_t>(count));
    std::vector<std::string> lines;
    for (std::size_t end = 0; (end = rest_.find('\n')) != std::string::npos; rest_.erase(0, end + 1))
        lines.push_back(rest_.substr(0, end));
    return lines;
}

void Child::kill() const {
    ::kill(process_, SIGKILL);
}

std::string Child::manner() {
    int status = 0;
    if (process_ < 0) return "gone";
    const pid_t process = std::exchange(process_, -1);
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR)
        continue;
    return WIFSIGNALED(status) ? "signal " + std::to_string(WTERMSIG(status))
                               : "exit code " + std::to_string(WEXITSTATUS(status));
}

} // namespace korvane::challenge
