#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace korvane::bench {

/// One operation: the library's way and the bare one, for the same bytes.
struct Operation {
    std::string name;
    /// How many times the bare median the library's may take; 0 where nothing is to be reached.
    double target;
    /// How often one call of the library's may allocate; 0 where nothing is to be reached, no value where it is
    /// not counted.
    std::optional<std::size_t> allocationTarget;
    std::function<void()> korvane;
    std::function<void()> bare;
};

/// All of them. Both sides were checked to understand each other.
[[nodiscard]] std::vector<Operation> operations();

} // namespace korvane::bench
