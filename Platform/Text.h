#pragma once

#include "Platform/Export.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// The length of a UTF-8 text in user-perceived characters (extended grapheme clusters, UAX 29).
/// Octets that are not UTF-8 count as one replacement character each run that ICU makes of them.
KORVANE_EXPORT [[nodiscard]] std::size_t characterCount(std::string_view text);

/// The text with every octet run that is not UTF-8 replaced by U+FFFD.
KORVANE_EXPORT [[nodiscard]] std::string repairedUtf8(std::string_view text);

enum class LineBreaks { escaped, kept };

/// The text with each control character (C0, DEL, C1) and each line or paragraph separator as "\u" and four
/// digits, so that nobody's text begins a line of its own or steers a terminal; octets that are not UTF-8 are
/// replaced by U+FFFD.
/// @param lineBreaks  whether a line feed goes out as it is: for texts whose line breaks are one's own.
KORVANE_EXPORT [[nodiscard]] std::string escapedControls(std::string_view text,
                                                         LineBreaks lineBreaks = LineBreaks::escaped);

/// The first characters of a text, counted as code points, so that the result has at most four octets for
/// each; octets that are not UTF-8 are replaced by U+FFFD.
KORVANE_EXPORT [[nodiscard]] std::string firstCharacters(std::string_view text, std::size_t count);

/// The text without those combining marks that follow 30 others in a row (the bound of UAX 15 section 13),
/// over which no script gets and shaping takes quadratic time. Octets that are not UTF-8 stay as they are.
KORVANE_EXPORT [[nodiscard]] std::string withBoundedMarks(std::string_view text);

/// Whether the first character that has a direction is written from the right to the left (UAX 9, P2 and P3).
KORVANE_EXPORT [[nodiscard]] bool isRightToLeft(std::string_view text);

/// The texts in their order, with commas and no blanks between them.
KORVANE_EXPORT [[nodiscard]] std::string joined(const std::vector<std::string>& texts);

/// All matches of a regular expression (ICU syntax, no options) in `text`: per match its groups from 0, the
/// whole match, on; a group that took no part is empty. An expression that does not compile gives no match.
KORVANE_EXPORT [[nodiscard]] std::vector<std::vector<std::string>>
regularExpressionMatches(std::string_view pattern, std::string_view text);

} // namespace korvane
