#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace korvane {

/// U+FEFF in UTF-8, which is no part of a JSON text.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Where a text stops being JSON that the tools read, and why.
struct JSONBreak {
    /// In bytes from 0; the length of the text where it only lacks its end.
    std::size_t position = 0;
    /// A sentence.
    std::string reason;
};

/// @param text  one that `JSONSerialization::jsonObject` gives no value for.
[[nodiscard]] JSONBreak findJSONBreak(std::string_view text);

/// What is to be said of a line of input that is not one JSON object: where it breaks, bytes counted from 1,
/// unless it is another JSON value.
[[nodiscard]] std::string complaintAboutLine(std::string_view line);

} // namespace korvane
