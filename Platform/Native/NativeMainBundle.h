#pragma once

#include "Platform/NSBundle.h"
#include "Platform/Native/NativeProcess.h"

#include <filesystem>

namespace korvane {

/// The application's own files, which lie beside its program. Its frameworks do too, or else where an
/// installation of the library has them.
class NativeMainBundle : public FolderBundle {
public:
    NativeMainBundle() : FolderBundle(programFile().parent_path().string()) {}

    [[nodiscard]] std::string privateFrameworksPath() const override {
        const std::string beside = FolderBundle::privateFrameworksPath();
        std::error_code error;
        if (std::filesystem::is_directory(beside, error)) return beside;
        return (programFile().parent_path().parent_path() / "share" / "korvane" / "Frameworks").string();
    }
};

} // namespace korvane
