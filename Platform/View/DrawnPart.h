#pragma once

#include <string>
#include <string_view>

namespace korvane {

/// What is measured, drawn and read out of a text: all of it, or its beginning with an ellipsis, of 4,000
/// code points and 16 KiB at most, with no more marks on a letter than `withBoundedMarks` leaves. Nobody
/// reads more, and layouts take more than twice the time for twice the text. What is stored, judged and sent
/// stays whole. Takes time for those bytes only, and changes nothing the second time. Any thread.
[[nodiscard]] std::string drawnPart(std::string_view text);

} // namespace korvane
