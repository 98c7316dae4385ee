#include "bench/Timing.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <vector>

namespace korvane::bench {

namespace {

double cpuMicroseconds() {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

} // namespace

double microsecondsOf(const std::function<void()>& work) {
    const double before = cpuMicroseconds();
    work();
    return cpuMicroseconds() - before;
}

double medianOf(const std::function<double()>& measured) {
    constexpr std::size_t kWarmingRuns = 10;
    constexpr std::size_t kRuns = 201;
    for (std::size_t run = 0; run < kWarmingRuns; ++run)
        static_cast<void>(measured());
    std::vector<double> times(kRuns);
    for (double& time : times)
        time = measured();
    std::sort(times.begin(), times.end());
    return times[kRuns / 2];
}

void printLine(const char* name, double microseconds, double target) {
    std::printf("%-32s %12.2f %12.0f  %s\n", name, microseconds, target,
                microseconds <= target ? "ok" : "above");
}

} // namespace korvane::bench
