#pragma once

#include <cmath>

namespace korvane {

/// A length in points, to the next half point. Edges there are sharp on most screens, and sums of such
/// lengths are exact: keys that share a gap agree to the last bit on where it is divided.
[[nodiscard]] inline double onHalfPoint(double length) {
    return std::round(length * 2) / 2;
}

} // namespace korvane
