#include "Platform/Native/FileAccess.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>

namespace korvane {

namespace {

constexpr mode_t kOwnFile = 0600;
constexpr mode_t kOwnFolder = 0700;
constexpr std::size_t kLargestFile = std::size_t{16} << 20U;

/// Repeats a system call that a signal interrupted.
template <class Call>
auto retried(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

bool writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = retried([&] { return write(descriptor, text.data(), text.size()); });
        if (count < 0) return false;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool writeToDisk(const std::filesystem::path& file, std::string_view text) {
    const int flags = O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW | O_CLOEXEC;
    const FileDescriptor descriptor(retried([&] { return open(file.c_str(), flags, kOwnFile); }));
    return descriptor.isOpen() && writeAll(descriptor.number(), text) &&
           retried([&] { return fsync(descriptor.number()); }) == 0;
}

/// Makes the renaming itself survive a loss of power. The values are in place whatever comes of it.
void syncFolder(const std::filesystem::path& folder) {
    const FileDescriptor descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.isOpen()) fsync(descriptor.number());
}

} // namespace

FileDescriptor::~FileDescriptor() {
    if (isOpen()) close(number_);
}

FileContents readContents(const std::filesystem::path& file) {
    // A named pipe under the file's name must not hold the reader up.
    const int flags = O_RDONLY | O_NONBLOCK | O_CLOEXEC;
    const FileDescriptor descriptor(retried([&] { return open(file.c_str(), flags); }));
    if (!descriptor.isOpen()) {
        const bool isMissing = errno == ENOENT || errno == ENOTDIR;
        return {isMissing ? FileState::missing : FileState::unreadable, {}};
    }
    struct stat status {};
    if (fstat(descriptor.number(), &status) != 0) return {FileState::unreadable, {}};
    if (!S_ISREG(status.st_mode)) return {};

    FileContents contents{FileState::read, {}};
    std::array<char, 4096> buffer{};
    while (contents.text.size() <= kLargestFile) {
        const ssize_t count =
            retried([&] { return read(descriptor.number(), buffer.data(), buffer.size()); });
        if (count < 0) return {FileState::unreadable, {}};
        if (count == 0) return contents;
        contents.text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return {};
}

bool replaceContents(const std::filesystem::path& file, std::string_view text) {
    // One name for all writers: what a killed one left behind is overwritten, not gathered.
    const std::filesystem::path next = std::filesystem::path(file) += ".new";
    if (!writeToDisk(next, text) || rename(next.c_str(), file.c_str()) != 0) {
        unlink(next.c_str());
        return false;
    }
    syncFolder(file.parent_path());
    return true;
}

bool moveFile(const std::filesystem::path& from, const std::filesystem::path& to) {
    return renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0;
}

bool makeFolders(const std::filesystem::path& folder) {
    std::error_code error;
    if (std::filesystem::is_directory(folder, error)) return true;
    if (!folder.has_relative_path() || !makeFolders(folder.parent_path())) return false;
    return mkdir(folder.c_str(), kOwnFolder) == 0 || errno == EEXIST;
}

FileLock::FileLock(const std::filesystem::path& file)
    : descriptor_(retried([&] { return open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kOwnFile); })) {
    if (!descriptor_.isOpen()) return;
    isHeld_ = retried([this] { return flock(descriptor_.number(), LOCK_EX); }) == 0;
}

} // namespace korvane
