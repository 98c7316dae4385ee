#include "tests/support/MemoryScan.h"

#include <algorithm>
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <sys/mman.h>
#include <system_error>
#include <unistd.h>

namespace korvane {

namespace {

constexpr std::uint8_t kMask = 0xA5;
constexpr std::size_t kWindow = std::size_t{1} << 20;

/// What the sanitizers reserve for their own books is larger than any heap of a test.
constexpr std::uint64_t kLargestRegion = std::uint64_t{1} << 32;

using Region = std::pair<std::uint64_t, std::uint64_t>;

/// The regions that a process may write to, from the first byte to the one behind the last.
std::vector<Region> writableRegions() {
    std::vector<Region> regions;
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        Region region;
        char rights[5] = {};
        const int found =
            std::sscanf(line.c_str(), "%" SCNx64 "-%" SCNx64 " %4s", &region.first, &region.second, rights);
        if (found == 3 && rights[0] == 'r' && rights[1] == 'w' &&
            region.second - region.first <= kLargestRegion)
            regions.push_back(region);
    }
    return regions;
}

} // namespace

Bytes maskedForScan(ByteView secret) {
    Bytes masked(secret.begin(), secret.end());
    for (std::uint8_t& byte : masked)
        byte ^= kMask;
    return masked;
}

/// Each window overlaps the next one by all of the secret but a byte, so that a copy is in one of them whole.
std::size_t copiesInMemory(ByteView masked) {
    const std::vector<Region> regions = writableRegions(); // before the scan's own memory, which is none
    const std::size_t size = masked.size();
    void* const own =
        mmap(nullptr, kWindow + size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    const int memory = open("/proc/self/mem", O_RDONLY | O_CLOEXEC);
    if (own == MAP_FAILED || memory < 0) throw std::system_error(errno, std::generic_category(), "memory");
    auto* const window = static_cast<std::uint8_t*>(own);
    std::uint8_t* const secret = window + kWindow;
    std::ranges::transform(masked, secret, [](std::uint8_t byte) { return byte ^ kMask; });
    std::size_t found = 0;
    for (const auto& [begin, end] : regions)
        for (std::uint64_t place = begin; place < end; place += kWindow - size + 1) {
            const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(kWindow, end - place));
            const ssize_t got = pread(memory, window, wanted, static_cast<off_t>(place));
            const std::uint8_t* const last = window + std::max<ssize_t>(got, 0);
            const std::uint8_t* at = window;
            for (const void* hit = nullptr;
                 (hit = memmem(at, static_cast<std::size_t>(last - at), secret, size)); ++found)
                at = static_cast<const std::uint8_t*>(hit) + 1;
        }
    munmap(own, kWindow + size);
    close(memory);
    return found;
}

} // namespace korvane
