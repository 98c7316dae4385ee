#include "bench/BareOpenSSL.h"
#include "bench/Challenge.h"
#include "bench/Footprint.h"
#include "bench/Growth.h"
#include "bench/Keyboard.h"
#include "bench/Operations.h"
#include "bench/Report.h"
#include "bench/SdkOperations.h"
#include "bench/Silence.h"

#include <benchmark/benchmark.h>

#include <array>
#include <iterator>
#include <vector>

#include <malloc.h>

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

std::vector<Operation> allOperations() {
    const Silence silence;
    std::vector<Operation> rows = operations();
    std::vector<Operation> more = sdkOperations();
    std::move(more.begin(), more.end(), std::back_inserter(rows));
    return rows;
}

void measure(Report& report, const std::vector<Operation>& rows) {
    const Silence silence;
    for (const Operation& operation : rows) {
        add(korvaneCase(operation), operation.korvane);
        add(bareCase(operation), operation.bare);
    }
    benchmark::RunSpecifiedBenchmarks(&report);
    benchmark::ClearRegisteredBenchmarks();
}

/// Keeps what is freed: to give pages back and fetch them again costs more than some operations, and glibc
/// does so or not by what happens to lie at the end of the heap.
void keepMemory() {
    constexpr int kManyBytes = 16 * 1024 * 1024;
    ::mallopt(M_TRIM_THRESHOLD, kManyBytes);
    ::mallopt(M_MMAP_THRESHOLD, kManyBytes);
}

int run(int count, char** arguments) {
    keepMemory();
    bare::countAllocations();
    std::vector<char*> all = withDefaults(count, arguments);
    int left = static_cast<int>(all.size());
    benchmark::Initialize(&left, all.data());
    if (benchmark::ReportUnrecognizedArguments(left, all.data())) return 2;
    printFootprint();
    {
        std::vector<Operation> rows = allOperations();
        Report report;
        measure(report, rows);
        report.printRatios(rows);
        printAllocations(rows);
        const Silence silence;
        rows.clear();
    }
    printChallenge();
    printGrowth();
    printKeyboard();
    benchmark::Shutdown();
    return 0;
}

} // namespace

} // namespace korvane::bench

int main(int count, char** arguments) {
    return korvane::bench::run(count, arguments);
}
