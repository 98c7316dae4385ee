#include "tests/challenge/simulation/Story.h"

#include <CLI/CLI.hpp>

#include <cinttypes>
#include <cstdio>

namespace korvane::simulation {

namespace {

constexpr std::uint64_t kMostFailures = 10;
/// Every how many seeds one is played twice.
constexpr std::uint64_t kReplays = 20;

/// @return whether the story of a seed went as it must. A story that did not is told, and
/// one that is asked for.
bool play(std::uint64_t seed, bool isAskedFor) {
    const Plan plan(seed);
    auto [lines, faults] = Story::play(plan);
    if ((isAskedFor || seed % kReplays == 0) && Story::play(plan).lines != lines)
        faults.emplace_back("replay: the same seed gave another story");
    if (!faults.empty() || isAskedFor) {
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

int playAll(std::uint64_t first, std::uint64_t count) {
    std::uint64_t failures = 0;
    std::uint64_t seed = first;
    for (; seed < first + count && failures < kMostFailures; ++seed)
        if (!play(seed, false)) ++failures;
    std::fprintf(stderr, "%" PRIu64 " seeds from %" PRIu64 ", %" PRIu64 " failed\n", seed - first, first,
                 failures);
    return failures == 0 ? 0 : 1;
}

} // namespace

} // namespace korvane::simulation

int main(int count, char** arguments) {
    using namespace korvane::simulation;
    std::uint64_t first = 1;
    std::uint64_t seeds = 1000;
    std::optional<std::uint64_t> only;
    CLI::App app{
        "Plays whole challenges from seeds and compares them with a model; tells about it on stderr"};
    app.add_option("--first", first, "the first seed")->capture_default_str();
    app.add_option("--seeds", seeds, "how many")->capture_default_str()->check(CLI::PositiveNumber);
    app.add_option("--seed", only, "play one seed, twice, and tell its story line by line");
    CLI11_PARSE(app, count, arguments);
    // What the library itself writes to standard output is not this program's concern.
    if (!std::freopen("/dev/null", "w", stdout)) return 2;
    if (only) return play(*only, true) ? 0 : 1;
    return playAll(first, seeds);
}
