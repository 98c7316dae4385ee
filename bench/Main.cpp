#include "bench/BareOpenSSL.h"
#include "bench/Operations.h"
#include "bench/Report.h"

#include <benchmark/benchmark.h>

#include <array>
#include <vector>

namespace korvane::bench {

namespace {

void add(const std::string& name, const std::function<void()>& operation) {
    benchmark::RegisterBenchmark(name.c_str(), [operation](benchmark::State& state) {
        for (auto _ : state)
            operation();
    });
}

/// The program's arguments behind its own defaults, so that they win.
std::vector<char*> withDefaults(int count, char** arguments) {
    static std::array<char, 45> interleaving{"--benchmark_enable_random_interleaving=true"};
    static std::array<char, 32> repetitions{"--benchmark_repetitions=31"};
    static std::array<char, 32> time{"--benchmark_min_time=0.02"};
    std::vector<char*> all{arguments[0], interleaving.data(), repetitions.data(), time.data()};
    all.insert(all.end(), arguments + 1, arguments + count);
    return all;
}

int run(int count, char** arguments) {
    bare::countAllocations();
    std::vector<char*> all = withDefaults(count, arguments);
    int left = static_cast<int>(all.size());
    benchmark::Initialize(&left, all.data());
    if (benchmark::ReportUnrecognizedArguments(left, all.data())) return 2;
    const std::vector<Operation> rows = operations();
    for (const Operation& operation : rows) {
        add(korvaneCase(operation), operation.korvane);
        add(bareCase(operation), operation.bare);
    }
    Report report;
    benchmark::RunSpecifiedBenchmarks(&report);
    report.printRatios(rows);
    printAllocations(rows);
    benchmark::Shutdown();
    return 0;
}

} // namespace

} // namespace korvane::bench

int main(int count, char** arguments) {
    return korvane::bench::run(count, arguments);
}
