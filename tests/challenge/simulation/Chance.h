#pragma once

#include <chrono>
#include <cstdint>
#include <initializer_list>
#include <random>

namespace korvane::simulation {

/// A moment or a span of virtual time. Whole nanoseconds, so that sums are exact.
using Time = std::chrono::nanoseconds;

constexpr Time seconds(double span) {
    return Time(static_cast<std::int64_t>(span * 1e9));
}

/// Draws from a seed, the same on every machine.
class Chance {
public:
    explicit Chance(std::uint64_t seed) : random_(seed) {}

    /// A number from 0 to `count` - 1.
    [[nodiscard]] std::size_t below(std::size_t count) { return static_cast<std::size_t>(random_() % count); }
    [[nodiscard]] bool percent(unsigned share) { return random_() % 100 < share; }
    /// Of a span of at least some nanoseconds; two draws hardly ever meet.
    [[nodiscard]] Time between(double from, double to) {
        const Time low = seconds(from);
        const auto width = static_cast<std::uint64_t>((seconds(to) - low).count());
        return low + Time(static_cast<std::int64_t>(random_() % width));
    }
    template <class Value>
    [[nodiscard]] Value oneOf(std::initializer_list<Value> values) {
        return values.begin()[below(values.size())];
    }

private:
    std::mt19937_64 random_;
};

} // namespace korvane::simulation
