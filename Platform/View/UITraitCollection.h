#pragma once

namespace korvane {

enum class UIUserInterfaceStyle : int { unspecified = 0, light = 1, dark = 2 };
enum class UIUserInterfaceSizeClass : int { unspecified = 0, compact = 1, regular = 2 };

/// What a tree of views is shown on, as far as it changes how they look.
struct UITraitCollection {
    UIUserInterfaceStyle userInterfaceStyle = UIUserInterfaceStyle::light;
    UIUserInterfaceSizeClass horizontalSizeClass = UIUserInterfaceSizeClass::compact;
    UIUserInterfaceSizeClass verticalSizeClass = UIUserInterfaceSizeClass::regular;
    friend bool operator==(const UITraitCollection&, const UITraitCollection&) = default;
};

} // namespace korvane
