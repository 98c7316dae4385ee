#pragma once

#include <istream>
#include <ostream>

namespace korvane::jose {

/// Answers each line of `in` with one line on `out`, which is flushed. A line that cannot be served is
/// answered with the reason; a line of more than 64 MiB is passed over and answered so.
/// @return false when an answer could not be written; then the rest of the input is left unread.
[[nodiscard]] bool serveBatch(std::istream& in, std::ostream& out);

} // namespace korvane::jose
