#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// A sequence of octets that its holder owns.
using Bytes = std::vector<std::uint8_t>;

/// Octets that somebody else owns; never kept beyond the call that it is given to.
using ByteView = std::span<const std::uint8_t>;

/// The UTF-8 octets of a text, as a view of the same memory.
inline ByteView asBytes(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// The same octets seen as text. They are not checked to be UTF-8.
inline std::string_view asText(ByteView bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

inline Bytes toBytes(ByteView bytes) {
    return {bytes.begin(), bytes.end()};
}

inline Bytes toBytes(std::string_view text) {
    return toBytes(asBytes(text));
}

} // namespace korvane
