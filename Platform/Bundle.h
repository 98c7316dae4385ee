#pragma once

#include "Platform/NSBundle.h"

#include <memory>

namespace korvane {

/// The bundles that the library itself brings along.
struct Bundle {
    /// Images, colours and screens: the folder `Frameworks/Korvane.framework/KorvaneResources.bundle` of the
    /// application's own bundle. Without it no challenge can be shown and the process ends (`fatalError`).
    [[nodiscard]] static std::shared_ptr<NSBundle> resources();

    /// Whether the folder is there.
    [[nodiscard]] static bool hasResources();
};

} // namespace korvane
