#pragma once

#include "Platform/JSON.h"

#include <string>
#include <string_view>

namespace korvane::tools {

// What a tool writes may end on a terminal, and holds texts of strangers: a control character in them (ESC,
// or U+009B, which says the same in one) would steer it, and one that turns the direction of writing would
// show a text that is not there. These characters leave as `\u009b`.

/// A text for people. Line ends stay; octets that are not UTF-8 are replaced.
[[nodiscard]] std::string printable(std::string_view text);

/// A value as one line of JSON with its end. Texts that are not UTF-8 are repaired; the rest reads back as
/// what it was.
[[nodiscard]] std::string jsonLine(const JSON& value);

} // namespace korvane::tools
