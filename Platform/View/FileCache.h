#pragma once

#include "Platform/NSBundle.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <string>

namespace korvane {

/// What was made of files, kept for as long as they stay the same. Any thread.
template <class Value>
class FileCache {
public:
    using Made = std::shared_ptr<const Value>;

    /// @param make  makes the value of a file's bytes, or null, which is kept as well.
    /// @throws what `contentsOfFile` and `make` throw; nothing is kept then.
    template <class Make>
    [[nodiscard]] Made get(const std::string& path, Make make) {
        std::error_code error;
        const auto written = std::filesystem::last_write_time(path, error);
        const std::uintmax_t size = std::filesystem::file_size(path, error);
        const std::scoped_lock lock(mutex_);
        const auto found = entries_.find(path);
        if (found != entries_.end() && found->second.written == written && found->second.size == size)
            return found->second.value;
        Made value = make(contentsOfFile(path));
        entries_[path] = {written, size, value};
        return value;
    }

private:
    struct Entry {
        std::filesystem::file_time_type written;
        std::uintmax_t size = 0;
        Made value;
    };

    std::mutex mutex_;
    std::map<std::string, Entry> entries_;
};

} // namespace korvane
