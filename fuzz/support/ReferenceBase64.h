#pragma once

#include "Platform/Bytes.h"

#include <optional>
#include <string>
#include <string_view>

namespace korvane::fuzzing {

/// Ordinary Base64 with padding, or Base64URL, which needs none when it is read and has
/// none when it is written.
enum class Alphabet { ordinary, url };

/// A second, plain implementation of RFC 4648 to compare with: bit by bit, without tables.
[[nodiscard]] std::optional<Bytes> referenceDecode(std::string_view text, Alphabet alphabet);

[[nodiscard]] std::string referenceEncode(ByteView bytes, Alphabet alphabet);

} // namespace korvane::fuzzing
