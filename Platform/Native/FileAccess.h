#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace korvane {

// Files that several processes share. Nothing here raises a failure.

enum class FileState {
    read,
    /// No file, or something else under its name, or more than a file of ours could hold.
    missing,
    /// A file is there, and the system does not let it be read.
    unreadable,
};

struct FileContents {
    FileState state = FileState::missing;
    std::string text;
};

[[nodiscard]] FileContents readContents(const std::filesystem::path& file);

/// Puts `text` in the place of the file, of which every reader sees the old or the new whole; on failure the
/// old one stands. The caller holds the lock that writers of this file share.
/// @return whether the new contents are on the disk.
[[nodiscard]] bool replaceContents(const std::filesystem::path& file, std::string_view text);

/// Gives a file another name, in one step and unless there is a file of that name.
[[nodiscard]] bool moveFile(const std::filesystem::path& from, const std::filesystem::path& to);

/// Makes a folder and those above it that are missing, for the user alone (mode 0700).
[[nodiscard]] bool makeFolders(const std::filesystem::path& folder);

/// A file descriptor that its holder closes.
class FileDescriptor {
public:
    explicit FileDescriptor(int number) : number_(number) {}
    FileDescriptor(const FileDescriptor&) = delete;
    FileDescriptor& operator=(const FileDescriptor&) = delete;
    ~FileDescriptor();

    [[nodiscard]] int number() const noexcept { return number_; }
    [[nodiscard]] bool isOpen() const noexcept { return number_ >= 0; }

private:
    int number_;
};

/// Holds a lock file exclusively (flock(2)), waiting until other holders are through; they hold it for one
/// small write. The system releases the lock of a process that dies. The file stays, since removing it would
/// split the lock in two.
class FileLock {
public:
    explicit FileLock(const std::filesystem::path& file);

    /// False where the file cannot be made, or its file system has no locks.
    [[nodiscard]] bool isHeld() const noexcept { return isHeld_; }

private:
    FileDescriptor descriptor_;
    bool isHeld_ = false;
};

} // namespace korvane
