#include "Platform/Bundle.h"

#include "Platform/Failure.h"
#include "Platform/Platform.h"

#include <filesystem>
#include <system_error>

namespace korvane {

namespace {

std::filesystem::path framework() {
    return std::filesystem::path(Platform::current().mainBundle().privateFrameworksPath()) /
           "Korvane.framework";
}

std::filesystem::path bundle() {
    return framework() / "KorvaneResources.bundle";
}

bool isFolder(const std::filesystem::path& path) {
    std::error_code error;
    return std::filesystem::is_directory(path, error);
}

} // namespace

bool Bundle::hasResources() {
    return isFolder(bundle());
}

std::shared_ptr<NSBundle> Bundle::resources() {
    const std::filesystem::path folder = bundle();
    if (isFolder(folder)) return NSBundle::bundleWithPath(folder.string());
    fatalError(isFolder(framework()) ? "KorvaneResources.bundle not found!"
                                     : "Cannot access KorvaneResources.bundle!");
}

} // namespace korvane
