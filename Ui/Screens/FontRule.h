#pragma once

#include "Platform/View/UIFont.h"
#include "Ui/Customisation/Customization.h"

#include <optional>
#include <string>

namespace korvane {

/// The name under which applications ask for the system's own font.
inline constexpr const char* kSystemFontName = "System";

/// The factor between the weights of applications and those of fonts.
inline constexpr double kFontWeightScale = 1000;

/// What a control's font becomes: the system's font where that is asked for, else the named one.
/// @param weight  the system font's, unless the values have one. No value gives the plain system font,
/// whatever the values say.
/// @param subject  tells in the log whose font could not be found, as in "otp text field".
/// @return no value where the control keeps its font: no name is given, or there is no font of that name.
[[nodiscard]] std::optional<UIFont> customFont(const FontValues& values, std::optional<double> weight,
                                               const std::string& subject);

/// The size that the values have, or the system's.
[[nodiscard]] double customFontSize(const FontValues& values);

} // namespace korvane
