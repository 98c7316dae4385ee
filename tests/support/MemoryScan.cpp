#include "tests/support/MemoryScan.h"

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

struct Region {
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
};

/// The regions that a process may write to.
std::vector<Region> writableRegions() {
    std::vector<Region> regions;
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        Region region;
        char rights[5] = {};
        if (std::sscanf(line.c_str(), "%" SCNx64 "-%" SCNx64 " %4s", &region.begin, &region.end, rights) ==
                3 &&
            rights[0] == 'r' && rights[1] == 'w' && region.end - region.begin <= kLargestRegion)
            regions.push_back(region);
    }
    return regions;
}

std::size_t occurrences(const std::uint8_t* bytes, std::size_t size, ByteView masked) {
    std::size_t found = 0;
    const std::uint8_t* const end = bytes + size;
    const int first = masked[0] ^ kMask;
    for (const std::uint8_t* at = bytes; at + masked.size() <= end; ++at) {
        at = static_cast<const std::uint8_t*>(
            std::memchr(at, first, static_cast<std::size_t>(end - at) - masked.size() + 1));
        if (!at) break;
        std::size_t same = 1;
        while (same < masked.size() && at[same] == (masked[same] ^ kMask))
            ++same;
        if (same == masked.size()) ++found;
    }
    return found;
}

/// Memory that the scan reads into, which is not itself looked through.
class Window {
public:
    Window() : bytes_(mmap(nullptr, kWindow, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {
        if (bytes_ == MAP_FAILED) throw std::system_error(errno, std::generic_category(), "mmap");
    }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    ~Window() { munmap(bytes_, kWindow); }

    [[nodiscard]] std::uint8_t* data() const { return static_cast<std::uint8_t*>(bytes_); }

private:
    void* bytes_;
};

std::size_t occurrencesIn(const Region& region, int memory, const Window& window, ByteView masked) {
    std::size_t found = 0;
    const std::uint64_t step = kWindow - masked.size() + 1; // windows overlap, so that no seam hides a copy
    for (std::uint64_t at = region.begin; at < region.end; at += step) {
        const std::size_t wanted =
            static_cast<std::size_t>(std::min<std::uint64_t>(kWindow, region.end - at));
        const ssize_t got = pread(memory, window.data(), wanted, static_cast<off_t>(at));
        if (got >= static_cast<ssize_t>(masked.size()))
            found += occurrences(window.data(), static_cast<std::size_t>(got), masked);
    }
    return found;
}

} // namespace

Bytes maskedForScan(ByteView secret) {
    Bytes masked(secret.begin(), secret.end());
    for (std::uint8_t& byte : masked)
        byte ^= kMask;
    return masked;
}

std::size_t copiesInMemory(ByteView masked) {
    const std::vector<Region> regions = writableRegions(); // before the window, which is none of them
    const Window window;
    const int memory = open("/proc/self/mem", O_RDONLY | O_CLOEXEC);
    if (memory < 0) throw std::system_error(errno, std::generic_category(), "/proc/self/mem");
    std::size_t found = 0;
    for (const Region& region : regions)
        found += occurrencesIn(region, memory, window, masked);
    close(memory);
    return found;
}

} // namespace korvane
