#include "bench/Allocations.h"

#include "bench/BareOpenSSL.h"

#include <cstdlib>
#include <new>

namespace {

std::size_t allocationCount = 0;

} // namespace

// Replaced for the whole program.
void* operator new(std::size_t size) {
    ++allocationCount;
    if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace korvane::bench {

Allocations allocationsOf(const std::function<void()>& operation) {
    constexpr int kWarmingRuns = 8;
    for (int run = 0; run < kWarmingRuns; ++run)
        operation();
    const std::size_t oursBefore = allocationCount;
    const std::size_t opensslBefore = bare::allocationCount();
    operation();
    return {allocationCount - oursBefore, bare::allocationCount() - opensslBefore};
}

} // namespace korvane::bench
