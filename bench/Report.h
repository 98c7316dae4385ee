#pragma once

#include "bench/Operations.h"

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace korvane::bench {

/// Gathers the CPU times of all repetitions, and prints them as ratios at the end instead of one by one.
class Report : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override;

    /// One line for each operation that ran.
    void printRatios(const std::vector<Operation>& operations) const;

private:
    /// Nanoseconds by the name of the case.
    std::map<std::string, std::vector<double>> times_;
};

[[nodiscard]] std::string korvaneCase(const Operation& operation);
[[nodiscard]] std::string bareCase(const Operation& operation);

void printAllocations(const std::vector<Operation>& operations);

} // namespace korvane::bench
