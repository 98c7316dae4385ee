#pragma once

#include <cstddef>
#include <deque>
#include <mutex>
#include <string>

namespace korvane::acs {

/// The latest lines of the log, for who asks for them later. Old ones go. Any thread.
class Journal {
public:
    static constexpr std::size_t kMostBytes = std::size_t{16} << 20U;
    static constexpr std::size_t kMostLines = 20000;

    /// Some lines, numbered from 0 since the beginning.
    struct Excerpt {
        /// Of the oldest line that is still there.
        std::size_t oldest;
        /// Of the line after these.
        std::size_t next;
        /// A JSON list of them.
        std::string lines;
    };

    /// @param line  JSON with its line end.
    void add(std::string line);

    /// From a number on, as many as fill a mebibyte.
    [[nodiscard]] Excerpt from(std::size_t number) const;

    /// All that is there.
    [[nodiscard]] std::string text() const;

private:
    mutable std::mutex mutex_;
    std::deque<std::string> lines_;
    std::size_t bytes_ = 0;
    std::size_t oldest_ = 0;
};

} // namespace korvane::acs
