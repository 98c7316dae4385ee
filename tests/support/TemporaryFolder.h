#pragma once

#include "Platform/Bytes.h"
#include "Platform/UUID.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace korvane {

/// A folder of this run's own, with a folder in it where one is wanted; gone at the end.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::filesystem::path& inside = {}) {
        std::filesystem::create_directories(path_ / inside);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }

    [[nodiscard]] std::string path() const { return path_.string(); }

    void write(const std::string& name, ByteView bytes) const {
        std::ofstream(path_ / name, std::ios::binary) << asText(bytes);
    }

private:
    const std::filesystem::path path_ =
        std::filesystem::temp_directory_path() / ("korvane-" + makeUUIDString());
};

} // namespace korvane
