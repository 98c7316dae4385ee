#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>

namespace korvane::challenge {

/// What `--play` and its kin say.
struct PlayOptions {
    std::string plan;
    std::size_t repeat = 1;
    /// The most challenges that run side by side.
    std::size_t parallel = 1;
    /// The file for the outcomes; empty for none.
    std::string junit;
    /// After so long without an event a challenge's process is ended.
    std::chrono::minutes silence{};
};

/// Plays a plan as often as is asked for, each challenge in a process of its own, and tells what came of it
/// on standard output. The process must have one thread.
/// @param session  one challenge: takes actions from standard input and writes events.
/// @return the exit code.
/// @throws UsageError for a plan or a file that is of no use.
[[nodiscard]] int play(const PlayOptions& options, const std::function<int()>& session);

} // namespace korvane::challenge
