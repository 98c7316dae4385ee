#include "tools/challenge/LineReader.h"

#include "Platform/Failure.h"

#include <array>
#include <cerrno>

#include <poll.h>
#include <unistd.h>

namespace korvane::challenge {

/// One run over the input, which a byte in a pipe ends.
class LineReader::Reading {
public:
    using Deliver = std::function<void(InputLine)>;

    Reading() {
        if (::pipe(wake_.data()) != 0) fatalError("No pipe can be made.");
    }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;
    ~Reading() {
        ::close(wake_[0]);
        ::close(wake_[1]);
    }

    void stop() const { static_cast<void>(::write(wake_[1], "", 1)); }

    void run(const Deliver& deliver) {
        while (waitForInput()) {
            const ssize_t count = ::read(STDIN_FILENO, chunk_.data(), chunk_.size());
            if (count < 0 && errno == EINTR) continue;
            if (count <= 0) {
                if (!line_.empty() || isTooLong_) finishLine(deliver);
                deliver({InputLine::Kind::end, {}});
                return;
            }
            take({chunk_.data(), static_cast<std::size_t>(count)}, deliver);
        }
    }

private:
    /// @return false once it is stopped.
    [[nodiscard]] bool waitForInput() const {
        std::array<pollfd, 2> sources{{{STDIN_FILENO, POLLIN, 0}, {wake_[0], POLLIN, 0}}};
        while (::poll(sources.data(), sources.size(), -1) < 0)
            if (errno != EINTR) return false;
        return sources[1].revents == 0;
    }

    void take(std::string_view text, const Deliver& deliver) {
        for (const char character : text) {
            if (character == '\n')
                finishLine(deliver);
            else if (line_.size() < kLongestLine)
                line_ += character;
            else
                isTooLong_ = true;
        }
    }

    void finishLine(const Deliver& deliver) {
        deliver({isTooLong_ ? InputLine::Kind::tooLong : InputLine::Kind::line, std::move(line_)});
        line_.clear();
        isTooLong_ = false;
    }

    std::array<int, 2> wake_{};
    std::array<char, 4096> chunk_{};
    std::string line_;
    bool isTooLong_ = false;
};

LineReader::LineReader(Dispatch& dispatch, std::function<void(InputLine)> onLine)
    : reading_(std::make_shared<Reading>()),
      onLine_(std::make_shared<const std::function<void(InputLine)>>(std::move(onLine))) {
    dispatch.globalQueue().async(
        [reading = reading_, &main = dispatch.mainQueue(), weak = std::weak_ptr(onLine_)] {
            reading->run([&main, weak](InputLine line) {
                main.async([weak, line = std::move(line)]() mutable {
                    if (const auto taker = weak.lock()) (*taker)(std::move(line));
                });
            });
        });
}

LineReader::~LineReader() {
    reading_->stop();
}

} // namespace korvane::challenge
