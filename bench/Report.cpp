#include "bench/Report.h"

#include "bench/Allocations.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace korvane::bench {

namespace {

const char* verdict(bool isWithin) {
    return isWithin ? "ok" : "above";
}

/// A figure to reach, or nothing where there is none.
std::string targetText(double figure, double target) {
    if (target == 0) return {};
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%8.2f  %s", target, verdict(figure <= target));
    return text.data();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

} // namespace

std::string korvaneCase(const Operation& operation) {
    return operation.name + "/korvane";
}

std::string bareCase(const Operation& operation) {
    return operation.name + "/bare";
}

void Report::ReportRuns(const std::vector<Run>& runs) {
    constexpr double kNanoseconds = 1e9;
    for (const Run& run : runs)
        if (run.run_type == Run::RT_Iteration && !run.error_occurred)
            times_[run.run_name.function_name].push_back(run.cpu_accumulated_time * kNanoseconds /
                                                         static_cast<double>(run.iterations));
}

void Report::printRatios(const std::vector<Operation>& operations) const {
    constexpr double kMicrosecond = 1000;
    std::printf("%-32s %12s %12s %8s %8s\n", "operation", "korvane us", "bare us", "ratio", "target");
    for (const Operation& operation : operations) {
        const auto korvane = times_.find(korvaneCase(operation));
        const auto bare = times_.find(bareCase(operation));
        if (korvane == times_.end() || bare == times_.end()) continue;
        const double ours = median(korvane->second);
        const double theirs = median(bare->second);
        const double ratio = ours / theirs;
        std::printf("%-32s %12.2f %12.2f %8.3f %s\n", operation.name.c_str(), ours / kMicrosecond,
                    theirs / kMicrosecond, ratio, targetText(ratio, operation.target).c_str());
    }
}

void printAllocations(const std::vector<Operation>& operations) {
    std::printf("\n%-32s %12s %12s %8s\n", "heap allocations of one call", "korvane", "bare", "target");
    for (const Operation& operation : operations) {
        if (!operation.allocationTarget) continue;
        const Allocations korvane = allocationsOf(operation.korvane);
        const Allocations bare = allocationsOf(operation.bare);
        const std::size_t total = korvane.ours + korvane.openssl;
        const auto target = static_cast<double>(*operation.allocationTarget);
        std::printf("%-32s %5zu (%zu+%zu) %5zu (%zu+%zu) %s\n", operation.name.c_str(), total, korvane.ours,
                    korvane.openssl, bare.ours + bare.openssl, bare.ours, bare.openssl,
                    targetText(static_cast<double>(total), target).c_str());
    }
    std::printf("in brackets: operator new, and OpenSSL's own\n");
}

} // namespace korvane::bench
