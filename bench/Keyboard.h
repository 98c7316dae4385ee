#pragma once

namespace korvane::bench {

/// Prints what the secure keyboard's pages, its hit test and a key press up to the changed text cost.
void printKeyboard();

} // namespace korvane::bench
