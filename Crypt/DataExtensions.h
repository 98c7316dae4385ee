#pragma once

#include "Platform/Bytes.h"

#include <array>
#include <concepts>
#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace korvane {

/// Whatever can stand as one component of a compact serialization, seen as its bytes. Borrows them.
class DataConvertible {
public:
    DataConvertible(ByteView bytes) : bytes_(bytes) {}
    DataConvertible(const Bytes& bytes) : bytes_(bytes) {}

    template <class Component>
    requires requires(const Component& component) {
        { component.data() } -> std::same_as<const Bytes&>;
    }
    DataConvertible(const Component& component) : bytes_(component.data()) {}

    [[nodiscard]] ByteView data() const noexcept { return bytes_; }

private:
    ByteView bytes_;
};

/// An option set over a machine word.
struct HexEncodingOptions {
    std::ptrdiff_t rawValue = 0;

    static const HexEncodingOptions upperCase;

    [[nodiscard]] bool contains(HexEncodingOptions options) const {
        return (rawValue & options.rawValue) == options.rawValue;
    }
};

inline constexpr HexEncodingOptions HexEncodingOptions::upperCase{1};

/// Base64URL without padding (RFC 4648 section 5, RFC 7515 section 2).
[[nodiscard]] std::string base64URLEncodedString(ByteView bytes);

/// The same text as its ASCII bytes.
[[nodiscard]] Bytes base64URLEncodedData(ByteView bytes);

/// The number of characters of the Base64URL text of `count` bytes.
[[nodiscard]] constexpr std::size_t base64URLLength(std::size_t count) {
    return count / 3 * 4 + (count % 3 == 0 ? 0 : count % 3 + 1);
}

/// Writes the Base64URL text of `bytes` to `text`, which holds `base64URLLength(bytes.size())` characters.
void writeBase64URL(ByteView bytes, char* text);

/// Decodes Base64URL. Padding of the right length, "+" and "/" are taken too; unused bits of the last
/// character are ignored.
/// @return no value for a length of 1 modulo 4, a character outside the alphabet, white
/// space or a misplaced "=".
[[nodiscard]] std::optional<Bytes> fromBase64URL(std::string_view text);

/// As the form for text; bytes that are not UTF-8 give no value.
[[nodiscard]] std::optional<Bytes> fromBase64URL(ByteView text);

/// Ordinary Base64 with padding (RFC 4648 section 4).
[[nodiscard]] std::string base64EncodedString(ByteView bytes);

/// Decodes ordinary Base64; padding is required.
/// @return no value for a character outside the alphabet, white space or wrong padding.
[[nodiscard]] std::optional<Bytes> fromBase64(std::string_view text);

/// The number of bits in `bytes` as eight big-endian bytes: the value AL of RFC 7518 section 5.2.2.1.
[[nodiscard]] std::array<std::uint8_t, 8> getByteLengthAsOctetHexData(ByteView bytes);

/// Two digits per byte, without separators; lower case unless the options say otherwise.
[[nodiscard]] std::string hexEncodedString(ByteView bytes, HexEncodingOptions options = {});

/// The number of characters of `joinedBase64URL`.
[[nodiscard]] std::size_t joinedBase64URLLength(std::span<const DataConvertible> components);

/// Writes `joinedBase64URL` to `text`, which holds `joinedBase64URLLength(components)` characters.
void writeJoinedBase64URL(std::span<const DataConvertible> components, char* text);

/// The Base64URL texts of the components, joined by ".".
[[nodiscard]] std::string joinedBase64URL(std::span<const DataConvertible> components);

/// The same text as its ASCII bytes: of header and payload the JWS Signing Input (RFC 7515 section 5.1).
[[nodiscard]] Bytes asJOSESigningInput(std::span<const DataConvertible> components);

} // namespace korvane
