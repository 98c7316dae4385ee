#pragma once

#include <functional>

namespace korvane::bench {

/// The CPU time of one call, in microseconds.
[[nodiscard]] double microsecondsOf(const std::function<void()>& work);

/// The median of what single calls say, behind some to warm up.
[[nodiscard]] double medianOf(const std::function<double()>& measured);

/// One row of a table: a figure beside the one to reach.
void printLine(const char* name, double microseconds, double target);

} // namespace korvane::bench
