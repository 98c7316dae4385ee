#pragma once

#include <string>

namespace korvane {

/// A double as the platform writes it: the fewest digits that read back as the same value, always
/// with a fractional digit ("375.0"). Below 1e-4 and above 2^54 it has an exponent of two digits or
/// more ("1e-07", "1.5e+20").
[[nodiscard]] std::string decimalText(double value);

} // namespace korvane
