#pragma once

#include <istream>
#include <ostream>

namespace korvane::jose {

/// What became of the lines of a batch.
enum class BatchEnd {
    allServed,
    someRefused,
    /// An answer could not be written; the rest of the input was left unread.
    outputLost
};

/// Answers each line of `in` with one line on `out`, which is flushed. A line that cannot be served is
/// answered with the reason; a line of more than 64 MiB is passed over and answered so.
/// @throws std::ios_base::failure for input that cannot be read.
[[nodiscard]] BatchEnd serveBatch(std::istream& in, std::ostream& out);

} // namespace korvane::jose
