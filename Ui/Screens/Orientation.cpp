#include "Ui/Screens/Orientation.h"

#include "Platform/Platform.h"

#include <algorithm>
#include <array>
#include <string>

namespace korvane {

namespace {

struct Held {
    UIDeviceOrientation device;
    /// The setting that the application needs for it.
    const char* setting;
    Orientation screen;
};

constexpr std::array<Held, 3> kHeld{{
    {UIDeviceOrientation::portrait, "UIInterfaceOrientationPortrait", Orientation::PORTRAIT},
    {UIDeviceOrientation::landscapeLeft, "UIInterfaceOrientationLandscapeLeft", Orientation::LANDSCAPE},
    {UIDeviceOrientation::landscapeRight, "UIInterfaceOrientationLandscapeRight", Orientation::LANDSCAPE},
}};

} // namespace

std::optional<Orientation> getOrientation() {
    Platform& platform = Platform::current();
    const auto device = platform.device().orientation();
    const auto held =
        std::ranges::find_if(kHeld, [device](const Held& candidate) { return candidate.device == device; });
    if (held == kHeld.end()) return std::nullopt;
    const auto supported =
        platform.mainBundle().stringsForInfoDictionaryKey("UISupportedInterfaceOrientations");
    if (supported && std::ranges::find(*supported, held->setting) == supported->end()) return std::nullopt;
    return held->screen;
}

} // namespace korvane
