#include "Platform/Bundle.h"

#include "Platform/Failure.h"
#include "Platform/Platform.h"

#include <filesystem>
#include <system_error>

namespace korvane {

std::shared_ptr<NSBundle> Bundle::resources() {
    const std::filesystem::path framework =
        std::filesystem::path(Platform::current().mainBundle().privateFrameworksPath()) / "Korvane.framework";
    const std::filesystem::path bundle = framework / "KorvaneResources.bundle";
    std::error_code error;
    if (std::filesystem::is_directory(bundle, error)) return NSBundle::bundleWithPath(bundle.string());
    const bool hasFramework = std::filesystem::is_directory(framework, error);
    fatalError(hasFramework ? "KorvaneResources.bundle not found!"
                            : "Cannot access KorvaneResources.bundle!");
}

} // namespace korvane
