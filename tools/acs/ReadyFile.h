#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace korvane::acs {

/// A file that is there, whole, while the tool serves.
class ReadyFile {
public:
    /// Takes away what another run has left.
    /// @param path  empty for no file.
    /// @throws UsageError for anything there but an ordinary file.
    explicit ReadyFile(const std::string& path);
    ReadyFile(const ReadyFile&) = delete;
    ReadyFile& operator=(const ReadyFile&) = delete;
    ~ReadyFile();

    /// @throws UsageError when it cannot be written.
    void write(std::string_view text);

private:
    const std::filesystem::path path_;
    bool isWritten_ = false;
};

} // namespace korvane::acs
