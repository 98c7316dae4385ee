#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <stdexcept>
#include <stdlib.h>
#include <string>

namespace korvane {

/// A folder of this run's own, with a folder in it where one is wanted; gone at the end.
class TemporaryFolder {
public:
    explicit TemporaryFolder(const std::filesystem::path& inside = {}) {
        std::string name = testing::TempDir() + "korvane-XXXXXX";
        if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
        path = name;
        std::filesystem::create_directories(path / inside);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() { std::filesystem::remove_all(path); }

    std::filesystem::path path;
};

} // namespace korvane
