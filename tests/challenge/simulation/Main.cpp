#include "tests/challenge/simulation/Story.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace korvane::simulation {

namespace {

struct Options {
    std::uint64_t first = 1;
    std::uint64_t seeds = 1000;
    std::optional<std::uint64_t> only;
    /// Every how many seeds one is played twice.
    std::uint64_t replays = 20;
};

/// Where this program writes: what the library itself writes to standard output is not its user's concern.
std::FILE* separateOutput() {
    std::FILE* const output = ::fdopen(::dup(STDOUT_FILENO), "w");
    const int nowhere = ::open("/dev/null", O_WRONLY);
    ::dup2(nowhere, STDOUT_FILENO);
    ::close(nowhere);
    return output;
}

void printPlan(std::FILE* output, const Plan& plan) {
    std::fprintf(output, "seed %llu\n", static_cast<unsigned long long>(plan.seed));
    for (const std::string& line : plan.lines())
        std::fprintf(output, "  %s\n", line.c_str());
}

void printStory(std::FILE* output, const Record& story) {
    for (const Line& line : story)
        std::fprintf(output, "%s\n", textOf(line).c_str());
}

std::vector<std::string> faultsOf(const Plan& plan, bool twice, StoryResult& result) {
    result = playStory(plan);
    std::vector<std::string> faults = result.faults;
    if (!twice) return faults;
    const StoryResult again = playStory(plan);
    if (again.story != result.story) faults.emplace_back("replay: the same seed gave another story");
    return faults;
}

bool play(std::FILE* output, std::uint64_t seed, const Options& options) {
    const Plan plan(seed);
    StoryResult result;
    const auto faults = faultsOf(plan, options.only || seed % options.replays == 0, result);
    if (!faults.empty() || options.only) {
        printPlan(output, plan);
        printStory(output, result.story);
    }
    for (const std::string& fault : faults)
        std::fprintf(output, "seed %llu: %s\n", static_cast<unsigned long long>(seed), fault.c_str());
    std::fflush(output);
    return faults.empty();
}

int run(const Options& options) {
    constexpr std::uint64_t kMostFailures = 10;
    std::FILE* const output = separateOutput();
    if (options.only) return play(output, *options.only, options) ? 0 : 1;
    std::uint64_t failures = 0;
    std::uint64_t seed = options.first;
    for (; seed < options.first + options.seeds && failures < kMostFailures; ++seed)
        if (!play(output, seed, options)) ++failures;
    std::fprintf(output, "%llu seeds from %llu, %llu failed\n",
                 static_cast<unsigned long long>(seed - options.first),
                 static_cast<unsigned long long>(options.first), static_cast<unsigned long long>(failures));
    std::fclose(output);
    return failures == 0 ? 0 : 1;
}

} // namespace

} // namespace korvane::simulation

int main(int count, char** arguments) {
    korvane::simulation::Options options;
    CLI::App app{"Plays whole challenges from seeds and compares them with a model"};
    app.add_option("--first", options.first, "the first seed")->capture_default_str();
    app.add_option("--seeds", options.seeds, "how many seeds")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    app.add_option("--seed", options.only, "play one seed, twice, and tell its story line by line");
    app.add_option("--replays", options.replays, "play one seed in so many twice")
        ->capture_default_str()
        ->check(CLI::PositiveNumber);
    try {
        app.parse(count, arguments);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    return korvane::simulation::run(options);
}
