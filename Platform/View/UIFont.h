#pragma once

#include "Platform/Export.h"

#include <optional>
#include <string>

namespace korvane {

/// Weights of fonts, from -1 (thinnest) to 1; values between and beyond these are allowed.
struct UIFontWeight {
    static constexpr double ultraLight = -0.8;
    static constexpr double thin = -0.6;
    static constexpr double light = -0.4;
    static constexpr double regular = 0;
    static constexpr double medium = 0.23;
    static constexpr double semibold = 0.3;
    static constexpr double bold = 0.4;
    static constexpr double heavy = 0.56;
    static constexpr double black = 0.62;
};

/// A font: a name, a size in points and a weight. Immutable; any thread.
class KORVANE_EXPORT UIFont {
public:
    [[nodiscard]] static UIFont systemFont(double ofSize, double weight = UIFontWeight::regular) {
        return {{}, ofSize, weight};
    }
    [[nodiscard]] static UIFont boldSystemFont(double ofSize) {
        return systemFont(ofSize, UIFontWeight::bold);
    }

    /// A font of the system by its name or its family's, in the weight that its name tells: "Courier-Bold" is
    /// bold. No value if there is none of that name. Main queue only.
    [[nodiscard]] static std::optional<UIFont> make(const std::string& name, double size);

    /// The size of plain text on this system, in points. Main queue only.
    [[nodiscard]] static double systemFontSize();

    /// Empty for the system's own font.
    [[nodiscard]] const std::string& fontName() const noexcept { return name_; }
    [[nodiscard]] double pointSize() const noexcept { return size_; }
    [[nodiscard]] double weight() const noexcept { return weight_; }

    [[nodiscard]] UIFont withWeight(double weight) const { return {name_, size_, weight}; }
    [[nodiscard]] UIFont withSize(double size) const { return {name_, size, weight_}; }

    friend bool operator==(const UIFont&, const UIFont&) = default;

private:
    UIFont(std::string name, double size, double weight)
        : name_(std::move(name)), size_(size), weight_(weight) {}

    std::string name_;
    double size_;
    double weight_;
};

} // namespace korvane
