#pragma once

#include "Platform/NSBundle.h"

#include <filesystem>

namespace korvane {

/// The application's own files, which lie beside its program. Its frameworks do too, or else where an
/// installation of the library has them.
class NativeMainBundle final : public FolderBundle {
public:
    NativeMainBundle() : FolderBundle(programFolder().string()) {}

    [[nodiscard]] std::string privateFrameworksPath() const override {
        const std::string beside = FolderBundle::privateFrameworksPath();
        std::error_code error;
        if (std::filesystem::is_directory(beside, error)) return beside;
        return (programFolder().parent_path() / "share" / "korvane" / "Frameworks").string();
    }

private:
    [[nodiscard]] static std::filesystem::path programFolder() {
        std::error_code error;
        return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    }
};

} // namespace korvane
