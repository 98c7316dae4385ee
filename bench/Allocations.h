#pragma once

#include <cstddef>
#include <functional>

namespace korvane::bench {

/// What one call takes from the heap: through operator new, and through OpenSSL's allocator.
struct Allocations {
    std::size_t ours;
    std::size_t openssl;
};

/// Runs `operation` a few times, so that what is made once is made, and counts the next run. One thread only.
[[nodiscard]] Allocations allocationsOf(const std::function<void()>& operation);

} // namespace korvane::bench
