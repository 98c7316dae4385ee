#include "tools/common/InputFile.h"

#include "tools/common/UsageError.h"

#include <array>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace korvane::tools {

namespace {

constexpr std::size_t kLongestFile = std::size_t{16} << 20U;

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    throw UsageError(path + ": The file " + reason + ".");
}

[[noreturn]] void failBySystem(const std::string& path) {
    fail(path, "cannot be read: " + std::generic_category().message(errno));
}

/// Closes a file at the end of its use.
class OpenFile {
public:
    explicit OpenFile(const std::string& path) : number_(::open(path.c_str(), O_RDONLY | O_CLOEXEC)) {}
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile() {
        if (number_ >= 0) ::close(number_);
    }

    [[nodiscard]] bool isOpen() const noexcept { return number_ >= 0; }

    /// What `read` says, however often a signal comes between.
    template <class Buffer>
    [[nodiscard]] ssize_t read(Buffer& buffer) const {
        ssize_t count = 0;
        do
            count = ::read(number_, buffer.data(), buffer.size());
        while (count < 0 && errno == EINTR);
        return count;
    }

private:
    const int number_;
};

} // namespace

std::string readInputFile(const std::string& path) {
    const OpenFile file(path);
    if (!file.isOpen()) failBySystem(path);
    std::string content;
    std::array<char, 65536> chunk{};
    ssize_t count = 0;
    while ((count = file.read(chunk)) > 0) {
        content.append(chunk.data(), static_cast<std::size_t>(count));
        if (content.size() > kLongestFile) fail(path, "has more than 16 MiB");
    }
    if (count < 0) failBySystem(path);
    if (content.empty()) fail(path, "is empty");
    return content;
}

} // namespace korvane::tools
