#include "tools/acs/LineSink.h"

#include "tools/common/Terminal.h"
#include "tools/common/Tool.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <climits>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korvane::acs {

namespace {

constexpr std::size_t kMostWaiting = std::size_t{16} << 20U;
constexpr std::chrono::seconds kPatience{2};
/// What a pipe that has room at all takes without a wait.
constexpr std::size_t kPiece = PIPE_BUF;

/// A descriptor that does not wait, as far as there can be one: that of others, who share
/// ours, is left alone.
int copyOf(int file) {
    struct stat status {};
    const bool canReopen =
        ::fstat(file, &status) == 0 && (S_ISFIFO(status.st_mode) || S_ISCHR(status.st_mode));
    const std::string path = "/proc/self/fd/" + std::to_string(file);
    const int reopened = canReopen ? ::open(path.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY) : -1;
    return reopened >= 0 ? reopened : ::fcntl(file, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
}

/// As `write`; a socket does not wait either.
ssize_t writeSome(int file, std::string_view text) {
    const std::size_t size = std::min(text.size(), kPiece);
    const ssize_t count = ::send(file, text.data(), size, MSG_DONTWAIT | MSG_NOSIGNAL);
    return count < 0 && errno == ENOTSOCK ? ::write(file, text.data(), size) : count;
}

bool isToBeRepeated(int error) {
    return error == EAGAIN || error == EINTR;
}

} // namespace

LineSink::LineSink(int file, std::string name)
    : file_(copyOf(file)), name_(std::move(name)), cut_(::eventfd(0, EFD_CLOEXEC)),
      writer_([this] { run(); }) {}

LineSink::~LineSink() {
    {
        std::unique_lock lock(mutex_);
        isEnding_ = true;
        changed_.notify_all();
        changed_.wait_for(lock, kPatience, [this] { return hasEnded_; });
    }
    ::eventfd_write(cut_, 1);
    writer_.join();
    ::close(cut_);
    ::close(file_);
}

void LineSink::write(std::string_view line) {
    {
        const std::lock_guard lock(mutex_);
        if (hasEnded_) return;
        if (waiting_.empty() && !isWriting_) line = putAtOnce(line);
        if (line.empty()) return;
        const bool isFull = !waiting_.empty() && waiting_.size() + line.size() > kMostWaiting;
        // After the first one all are dropped, so that those which stay are not a choice of the short ones.
        if (isFull || droppedLines_ > 0) {
            ++droppedLines_;
            return;
        }
        waiting_ += line;
    }
    changed_.notify_all();
}

void LineSink::run() {
    for (std::string text = next(); !text.empty() && put(text);)
        text = next();
    const std::lock_guard lock(mutex_);
    hasEnded_ = true;
    changed_.notify_all();
}

/// All that waits; nothing once there will be no more.
std::string LineSink::next() {
    std::unique_lock lock(mutex_);
    isWriting_ = false;
    changed_.wait(lock, [this] { return isEnding_ || !waiting_.empty(); });
    isWriting_ = true;
    std::string text = std::exchange(waiting_, {});
    if (const std::size_t dropped = std::exchange(droppedLines_, 0); dropped > 0)
        text += tools::jsonLine({{"event", "dropped"}, {"lines", dropped}});
    return text;
}

/// Writes as far as there is room, and gives the rest. What is wrong is left to the thread to find.
std::string_view LineSink::putAtOnce(std::string_view text) const {
    pollfd output{file_, POLLOUT, 0};
    while (!text.empty() && ::poll(&output, 1, 0) == 1 && output.revents == POLLOUT) {
        const ssize_t count = writeSome(file_, text);
        if (count <= 0) break;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return text;
}

bool LineSink::put(std::string_view text) const {
    while (!text.empty()) {
        if (!waitUntilReady()) return false;
        const ssize_t count = writeSome(file_, text);
        if (count > 0) text.remove_prefix(static_cast<std::size_t>(count));
        if (count >= 0 || isToBeRepeated(errno)) continue;
        tools::complain("korvane-acs",
                        name_ + " takes no more lines: " + std::generic_category().message(errno) + ".");
        return false;
    }
    return true;
}

bool LineSink::waitUntilReady() const {
    std::array<pollfd, 2> waited{{{file_, POLLOUT, 0}, {cut_, POLLIN, 0}}};
    while (::poll(waited.data(), waited.size(), -1) < 0)
        if (errno != EINTR) return false;
    return waited[1].revents == 0;
}

} // namespace korvane::acs
