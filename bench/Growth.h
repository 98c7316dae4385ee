#pragma once

namespace korvane::bench {

/// Prints how the time of operations grows with what they are given, and what an answer of the ACS costs beside
/// its cryptography. No other platform may live.
void printGrowth();

} // namespace korvane::bench
