#pragma once

#include "Platform/Bytes.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Base64URL without padding (RFC 4648 section 5) between buffers of the caller's: nothing is allocated, and a
/// text is right or the process ends.
namespace korvane::bench::bare {

/// Three octets by two look-ups of 12 bits. @return the end of what was written.
char* encodeBase64URL(ByteView octets, char* text);

/// Four characters by four look-ups. @return the end of what was written.
std::uint8_t* decodeBase64URL(std::string_view text, std::uint8_t* octets);

/// The same by vectors of 32 octets, for scale alone: no part of the library depends on a processor.
[[nodiscard]] bool hasVectors();
char* encodeBase64URLByVectors(ByteView octets, char* text);
std::uint8_t* decodeBase64URLByVectors(std::string_view text, std::uint8_t* octets);

} // namespace korvane::bench::bare
