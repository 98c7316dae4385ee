#pragma once

#include "Platform/Export.h"
#include "Platform/NSBundle.h"
#include "Platform/View/UITraitCollection.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace korvane {

/// One shade: red, green, blue and opacity, each from 0 to 1.
struct RGBA {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;
    friend bool operator==(const RGBA&, const RGBA&) = default;
};

/// A colour: one shade in light surroundings, perhaps another in dark ones. Immutable; any thread.
class KORVANE_EXPORT UIColor {
public:
    UIColor(double red, double green, double blue, double alpha) : UIColor(RGBA{red, green, blue, alpha}) {}
    explicit UIColor(RGBA shade) : UIColor(shade, shade) {}
    UIColor(RGBA light, RGBA dark) : light_(light), dark_(dark) {}

    /// The colour of that name in the bundle's table, as `UIColorTable` reads it, or no value.
    [[nodiscard]] static std::optional<UIColor> named(const std::string& name, const NSBundle& bundle);

    /// A shade from "#RRGGBB" or "#RRGGBBAA".
    [[nodiscard]] static std::optional<UIColor> fromHex(std::string_view text);

    [[nodiscard]] static UIColor clear() { return {0, 0, 0, 0}; }
    [[nodiscard]] static UIColor black() { return {0, 0, 0, 1}; }
    [[nodiscard]] static UIColor white() { return {1, 1, 1, 1}; }
    [[nodiscard]] static UIColor blue() { return {0, 0, 1, 1}; }
    [[nodiscard]] static UIColor red() { return {1, 0, 0, 1}; }
    /// The colour of text on `systemBackground()`.
    [[nodiscard]] static UIColor label() { return {RGBA{0, 0, 0, 1}, RGBA{1, 1, 1, 1}}; }
    [[nodiscard]] static UIColor secondaryLabel();
    [[nodiscard]] static UIColor systemBackground() { return {RGBA{1, 1, 1, 1}, RGBA{0, 0, 0, 1}}; }
    [[nodiscard]] static UIColor separator();
    /// The tint of controls that are given none.
    [[nodiscard]] static UIColor systemBlue();

    [[nodiscard]] UIColor withAlphaComponent(double alpha) const;

    [[nodiscard]] const RGBA& resolved(UIUserInterfaceStyle style) const noexcept {
        return style == UIUserInterfaceStyle::dark ? dark_ : light_;
    }

    friend bool operator==(const UIColor&, const UIColor&) = default;

private:
    RGBA light_;
    RGBA dark_;
};

/// The colours that a bundle names, as they are when the table is made: for whoever asks for many of them. Any
/// thread.
///
/// The file `Colors.json`: an object of names to a shade ("#RRGGBB" or "#RRGGBBAA") or to an object of `light`
/// and `dark` shades. What is missing or broken has no colour.
class KORVANE_EXPORT UIColorTable {
public:
    explicit UIColorTable(const NSBundle& bundle);

    [[nodiscard]] std::optional<UIColor> color(const std::string& named) const;

private:
    std::shared_ptr<const std::map<std::string, UIColor>> colors_;
};

} // namespace korvane
