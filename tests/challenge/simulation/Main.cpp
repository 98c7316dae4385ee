#include "tests/challenge/simulation/Story.h"

#include <CLI/CLI.hpp>

#include <cinttypes>
#include <cstdio>

namespace korvane::simulation {

namespace {

/// @return whether the story of a seed went as it must. A story that did not is told, and one
/// that is played alone.
bool playSeed(std::uint64_t seed, bool isAlone) {
    const Plan plan(seed);
    const auto [lines, faults] = Story::play(plan);
    if (!faults.empty() || isAlone) {
        std::fprintf(stderr, "seed %" PRIu64 ", %d min, temper %d, animations %d, transaction kept %d\n",
                     seed, static_cast<int>(plan.minutes), static_cast<int>(plan.temper),
                     plan.playsAnimations, plan.keepsTransaction);
        for (const Line& line : lines)
            std::fprintf(stderr, "%s\n", textOf(line).c_str());
    }
    for (const std::string& fault : faults)
        std::fprintf(stderr, "seed %" PRIu64 ": %s\n", seed, fault.c_str());
    return faults.empty();
}

} // namespace

} // namespace korvane::simulation

int main(int count, char** arguments) {
    constexpr std::uint64_t kMostFailures = 10;
    std::uint64_t first = 1;
    std::uint64_t seeds = 1000;
    CLI::App app{
        "Plays whole challenges from seeds and compares them with a model; tells about it on stderr"};
    app.add_option("--first", first, "the first seed")->capture_default_str();
    app.add_option("--seeds", seeds, "how many; the story of one alone is told line by line")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    CLI11_PARSE(app, count, arguments);
    // What the library itself writes to standard output is not this program's concern.
    if (!std::freopen("/dev/null", "w", stdout)) return 2;
    std::uint64_t failures = 0;
    std::uint64_t played = 0;
    for (; played < seeds && failures < kMostFailures; ++played)
        if (!korvane::simulation::playSeed(first + played, seeds == 1)) ++failures;
    std::fprintf(stderr, "%" PRIu64 " seeds from %" PRIu64 ", %" PRIu64 " failed\n", played, first, failures);
    return failures == 0 ? 0 : 1;
}
