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

/// Memory of the scan's own: a piece of the process's, and behind it the secret itself.
class Window {
public:
    Window(int memory, ByteView masked) : memory_(memory), size_(masked.size()) {
        void* const pages =
            mmap(nullptr, kWindow + size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (pages == MAP_FAILED) throw std::system_error(errno, std::generic_category(), "mmap");
        bytes_ = static_cast<std::uint8_t*>(pages);
        std::ranges::transform(masked, bytes_ + kWindow, [](std::uint8_t byte) { return byte ^ kMask; });
    }
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;
    ~Window() { munmap(bytes_, kWindow + size_); }

    /// How often the secret begins in the first `kWindow` bytes of a place but for those that the next
    /// window, which overlaps this one, looks at.
    [[nodiscard]] std::size_t copiesAt(std::uint64_t place, std::uint64_t end) const {
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(kWindow, end - place));
        const ssize_t got = pread(memory_, bytes_, wanted, static_cast<off_t>(place));
        std::size_t found = 0;
        for (const std::uint8_t* at = bytes_; got > 0; ++at, ++found) {
            const auto left = static_cast<std::size_t>(bytes_ + got - at);
            at = static_cast<const std::uint8_t*>(memmem(at, left, bytes_ + kWindow, size_));
            if (!at) break;
        }
        return found;
    }

private:
    int memory_;
    std::size_t size_;
    std::uint8_t* bytes_;
};

} // namespace

Bytes maskedForScan(ByteView secret) {
    Bytes masked(secret.begin(), secret.end());
    for (std::uint8_t& byte : masked)
        byte ^= kMask;
    return masked;
}

std::size_t copiesInMemory(ByteView masked) {
    const std::vector<Region> regions = writableRegions(); // before the window, which is none of them
    const int memory = open("/proc/self/mem", O_RDONLY | O_CLOEXEC);
    if (memory < 0) throw std::system_error(errno, std::generic_category(), "/proc/self/mem");
    std::size_t found = 0;
    {
        const Window window(memory, masked);
        for (const auto& [begin, end] : regions)
            for (std::uint64_t place = begin; place < end; place += kWindow - masked.size() + 1)
                found += window.copiesAt(place, end);
    }
    close(memory);
    return found;
}

} // namespace korvane
