#pragma once

#include "Platform/UIDevice.h"

#include <atomic>
#include <string_view>

namespace korvane {

/// The machine as os-release and its host name tell it. There is no vendor's identifier.
class NativeDevice : public UIDevice {
public:
    /// The name in os-release, else the kernel's.
    [[nodiscard]] std::string systemName() const override;
    /// The version in os-release, which a rolling distribution does not have.
    [[nodiscard]] std::string systemVersion() const override;
    [[nodiscard]] std::string name() const override;
    [[nodiscard]] std::optional<std::string> identifierForVendor() const override;
    [[nodiscard]] UIUserInterfaceIdiom userInterfaceIdiom() const override;
    /// Upright, until it is said to be held in another way.
    [[nodiscard]] UIDeviceOrientation orientation() const override { return orientation_.load(); }
    void setOrientation(UIDeviceOrientation orientation) { orientation_.store(orientation); }

private:
    std::atomic<UIDeviceOrientation> orientation_{UIDeviceOrientation::portrait};
};

/// The value of `name` in the text of an os-release file (os-release(5)), unquoted, or no value.
[[nodiscard]] std::optional<std::string> osReleaseValue(std::string_view file, std::string_view name);

} // namespace korvane
