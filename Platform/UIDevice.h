#pragma once

#include "Platform/Export.h"

#include <optional>
#include <string>
#include <string_view>

namespace korvane {

/// The kind of interface that the device shows, by the platform's numbers.
enum class UIUserInterfaceIdiom : int { unspecified = -1, phone = 0, pad = 1, tv = 2, carPlay = 3, mac = 5 };

/// How the device is held, by the platform's numbers. Landscape left has the top of the device at the left.
enum class UIDeviceOrientation : int {
    unknown = 0,
    portrait = 1,
    portraitUpsideDown = 2,
    landscapeLeft = 3,
    landscapeRight = 4,
    faceUp = 5,
    faceDown = 6
};

/// The device that the process runs on. No read fails.
/// Any thread: orientation and identifier are read beside a challenge. Belongs to its platform
/// and lives as long.
class KORVANE_EXPORT UIDevice {
public:
    /// Posted on the main queue when `orientation()` has changed.
    static constexpr std::string_view orientationDidChangeNotification =
        "UIDeviceOrientationDidChangeNotification";

    virtual ~UIDevice() = default;

    /// The operating system's name, as in "iOS".
    [[nodiscard]] virtual std::string systemName() const = 0;

    /// The operating system's version, as in "14.4"; empty where the system has none.
    [[nodiscard]] virtual std::string systemVersion() const = 0;

    /// The name that its owner gave the device.
    [[nodiscard]] virtual std::string name() const = 0;

    /// UUID text that all applications of one vendor share on this device.
    [[nodiscard]] virtual std::optional<std::string> identifierForVendor() const = 0;

    [[nodiscard]] virtual UIUserInterfaceIdiom userInterfaceIdiom() const = 0;

    /// Any thread.
    [[nodiscard]] virtual UIDeviceOrientation orientation() const = 0;
};

} // namespace korvane
