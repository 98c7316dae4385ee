#pragma once

namespace korvane::bench {

/// Prints what has no bare counterpart: the time of `initialize` on this machine, and the memory of a
/// process that holds many transactions. No other platform may live.
void printFootprint();

} // namespace korvane::bench
