#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// What is asked of the tables of Unicode and of the machine's locales. ICU answers, and no source but this header's own
/// includes it: where a platform has such services itself, another source with these functions takes its place.
/// Texts are UTF-8; each run of octets that is not counts as one U+FFFD. Any thread.
namespace korvane::unicode {

/// The length of a text in user-perceived characters (extended grapheme clusters, UAX 29).
[[nodiscard]] std::size_t clusterCount(std::string_view text);

/// The text with every octet run that is not UTF-8 replaced by U+FFFD.
[[nodiscard]] std::string repaired(std::string_view text);

/// Whether the first character that has a direction is written from the right to the left (UAX 9, P2 and P3).
[[nodiscard]] bool isRightToLeft(std::string_view text);

/// A code point of a text: its octets, and whether it is put on the one before it (its combining class is not 0).
struct CodePoint {
    std::size_t octets = 0;
    bool isCombining = false;
};

/// The first code point of a text that is not empty. Of octets that are not UTF-8, as many as make one U+FFFD.
[[nodiscard]] CodePoint firstCodePoint(std::string_view text);

/// All matches of a regular expression (ICU syntax, no options): per match its groups from 0, the whole match, on; a
/// group that took no part is empty. An expression that does not compile gives no match.
[[nodiscard]] std::vector<std::vector<std::string>> matches(std::string_view pattern, std::string_view text);

/// The identifier of a locale of the given POSIX name, as in "en_US": the name in its usual form.
[[nodiscard]] std::string localeIdentifier(const std::string& posixName);

/// The language tag (BCP 47) of a locale of the given POSIX name, as in "en-US"; empty where there is none.
[[nodiscard]] std::string languageTag(const std::string& posixName);

/// The identifiers of all locales that the machine knows.
[[nodiscard]] std::vector<std::string> localeIdentifiers();

/// The text in a charset, and what the charset lacks as "&#8364;" (Encoding Standard, encoding with the error mode
/// "html"); UTF-8 where the charset is unknown. Only a filling with a browser engine of its own asks for it.
[[nodiscard]] std::string inCharset(const std::u16string& text, const std::string& charset);

} // namespace korvane::unicode
