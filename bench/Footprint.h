#pragma once

namespace korvane::bench {

/// Prints what has no bare counterpart: the memory of a process before and after `initialize` and with ten
/// transactions, the time of `initialize` on this machine, and the memory of many transactions. To be called
/// first of all; no other platform may live.
void printFootprint();

} // namespace korvane::bench
