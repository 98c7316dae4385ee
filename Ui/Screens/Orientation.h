#pragma once

#include "Platform/EnumTable.h"

#include <optional>

namespace korvane {

/// The two ways in which a screen can lie.
enum class Orientation { LANDSCAPE, PORTRAIT };

[[nodiscard]] constexpr std::string_view rawValue(Orientation value) {
    switch (value) {
    case Orientation::LANDSCAPE: return "LANDSCAPE";
    case Orientation::PORTRAIT: return "PORTRAIT";
    }
    return kNoRawValue;
}

/// How the device is held, as far as the application's settings ("UISupportedInterfaceOrientations", if it
/// has any) let its screens follow. No value for a device that lies flat, upside down or in a way that the
/// application does not support: what is shown then stays as it is. Any thread.
[[nodiscard]] std::optional<Orientation> getOrientation();

} // namespace korvane
