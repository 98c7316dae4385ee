#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// Whether a text has the shape of a compact JWE: five parts of Base64URL characters, of which
/// the second alone may be empty. One line terminator at the end is let pass, as by the "$" of
/// ICU's regular expressions.
[[nodiscard]] bool validateJWE(std::string_view text);

/// Whether a text is made of Base64URL characters, one at least. A line terminator at the end as above.
[[nodiscard]] bool validateBase64url(std::string_view text);

/// Turns Base64URL into ordinary padded Base64. Decides nothing: a length of 1 modulo 4 gets three "=".
[[nodiscard]] std::string base64urlToBase64(std::string_view text);

/// All matches of a regular expression (ICU syntax) in `text`, each with its groups from 0, the whole match,
/// on; a group that took no part is empty. An expression that does not compile gives none.
[[nodiscard]] std::vector<std::vector<std::string>> matchingStrings(std::string_view text,
                                                                    std::string_view regex);

} // namespace korvane
