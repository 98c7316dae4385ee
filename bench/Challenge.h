#pragma once

namespace korvane::bench {

/// Prints what the screens of a response cost, what a pass of their layout costs, and what a whole challenge
/// of four exchanges costs beside its cryptography. Times are CPU times; the network takes none.
void printChallenge();

} // namespace korvane::bench
