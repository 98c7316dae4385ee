#pragma once

#include "Platform/CGGeometry.h"
#include "Platform/View/UIFont.h"

#include <string_view>

namespace korvane {

/// Measures text for the layout. Main queue only.
class TextMeasurer {
public:
    virtual ~TextMeasurer() = default;

    /// The extent of a text that is broken into lines of at most `maximumWidth` points, of which the first
    /// `maximumLines` count (0: all). An empty text has one empty line.
    [[nodiscard]] virtual CGSize size(std::string_view text, const UIFont& font, double maximumWidth,
                                      int maximumLines) const = 0;
};

/// Measures without fonts: each character has a width that depends on the font's size alone, East Asian ones
/// and pictures a greater one. Stateless; any thread.
class FixedAdvances final : public TextMeasurer {
public:
    /// In shares of the font's size.
    static constexpr double kAdvance = 0.55;
    static constexpr double kWideAdvance = 1.0;
    static constexpr double kLineHeight = 1.2;

    [[nodiscard]] CGSize size(std::string_view text, const UIFont& font, double maximumWidth,
                              int maximumLines) const override;
};

} // namespace korvane
