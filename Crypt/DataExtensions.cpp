#include "Crypt/DataExtensions.h"

#include "Platform/JSON.h"

#include <algorithm>
#include <cstring>

namespace korvane {

namespace {

constexpr std::string_view kBase64Alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::string_view kBase64URLAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";

/// Twelve bits to the two characters that stand for them, so that three bytes cost two look-ups.
using PairTable = std::array<std::array<char, 2>, 4096>;

constexpr PairTable makePairs(std::string_view alphabet) {
    PairTable pairs{};
    for (std::size_t bits = 0; bits < pairs.size(); ++bits)
        pairs[bits] = {alphabet[bits >> 6U], alphabet[bits & 63U]};
    return pairs;
}

constexpr PairTable kBase64Pairs = makePairs(kBase64Alphabet);
constexpr PairTable kBase64URLPairs = makePairs(kBase64URLAlphabet);

/// A character's value, moved to each of the four places that it can have in 24 bits; a foreign character
/// sets `kForeign` instead.
using ValueTable = std::array<std::uint32_t, 256>;

constexpr std::uint32_t kForeign = 1U << 24U;

constexpr ValueTable makeValues(std::string_view alphabet, unsigned shift) {
    ValueTable values{};
    values.fill(kForeign);
    for (std::uint32_t value = 0; value < alphabet.size(); ++value)
        values[static_cast<unsigned char>(alphabet[value])] = value << shift;
    return values;
}

/// The ordinary alphabet with "-" and "_" beside "+" and "/".
constexpr ValueTable makeURLValues(unsigned shift) {
    ValueTable values = makeValues(kBase64Alphabet, shift);
    values['-'] = values['+'];
    values['_'] = values['/'];
    return values;
}

using Places = std::array<ValueTable, 4>;

constexpr Places kBase64Places{makeValues(kBase64Alphabet, 18), makeValues(kBase64Alphabet, 12),
                               makeValues(kBase64Alphabet, 6), makeValues(kBase64Alphabet, 0)};
constexpr Places kBase64URLPlaces{makeURLValues(18), makeURLValues(12), makeURLValues(6), makeURLValues(0)};

/// The eight octets as one number.
std::uint64_t bigEndian(const std::uint8_t* octets) {
    return std::uint64_t{octets[0]} << 56U | std::uint64_t{octets[1]} << 48U |
           std::uint64_t{octets[2]} << 40U | std::uint64_t{octets[3]} << 32U |
           std::uint64_t{octets[4]} << 24U | std::uint64_t{octets[5]} << 16U |
           std::uint64_t{octets[6]} << 8U | octets[7];
}

/// The characters of the last twelve bits.
void writePair(const PairTable& pairs, std::uint64_t bits, char* text) {
    std::memcpy(text, pairs[bits & 4095U].data(), 2);
}

/// Writes without padding. Six octets go at a time, of which eight are loaded at once.
void encode(const PairTable& pairs, ByteView bytes, char* text) {
    const std::uint8_t* next = bytes.data();
    std::size_t left = bytes.size();
    for (; left >= 8; left -= 6, next += 6, text += 8) {
        const std::uint64_t bits = bigEndian(next);
        writePair(pairs, bits >> 52U, text);
        writePair(pairs, bits >> 40U, text + 2);
        writePair(pairs, bits >> 28U, text + 4);
        writePair(pairs, bits >> 16U, text + 6);
    }
    for (; left >= 3; left -= 3, next += 3, text += 4) {
        const std::uint32_t bits = (std::uint32_t{next[0]} << 16U) | (std::uint32_t{next[1]} << 8U) | next[2];
        writePair(pairs, bits >> 12U, text);
        writePair(pairs, bits, text + 2);
    }
    if (left == 0) return;
    const std::uint32_t bits =
        (std::uint32_t{next[0]} << 16U) | (left == 2 ? std::uint32_t{next[1]} << 8U : 0U);
    writePair(pairs, bits >> 12U, text);
    if (left == 2) text[2] = pairs[bits & 4095U][0];
}

std::uint32_t bitsAt(const Places& places, std::size_t place, char character) {
    return places[place][static_cast<unsigned char>(character)];
}

/// Decodes text that has lost its padding and whose length is not 1 modulo 4.
std::optional<Bytes> decode(const Places& places, std::string_view text) {
    const std::size_t tail = text.size() % 4;
    Bytes bytes(text.size() / 4 * 3 + (tail == 0 ? 0 : tail - 1));
    const char* next = text.data();
    const char* const wholeEnd = next + (text.size() - tail);
    std::uint8_t* output = bytes.data();
    std::uint32_t seen = 0;
    for (; next != wholeEnd; next += 4, output += 3) {
        // Spelt out: as a loop it stays one, and takes twice the time.
        const std::uint32_t bits = bitsAt(places, 0, next[0]) | bitsAt(places, 1, next[1]) |
                                   bitsAt(places, 2, next[2]) | bitsAt(places, 3, next[3]);
        seen |= bits;
        output[0] = static_cast<std::uint8_t>(bits >> 16U);
        output[1] = static_cast<std::uint8_t>(bits >> 8U);
        output[2] = static_cast<std::uint8_t>(bits);
    }
    if (tail > 0) {
        std::uint32_t bits = 0;
        for (std::size_t place = 0; place < tail; ++place)
            bits |= bitsAt(places, place, next[place]);
        seen |= bits;
        output[0] = static_cast<std::uint8_t>(bits >> 16U);
        if (tail == 3) output[1] = static_cast<std::uint8_t>(bits >> 8U);
    }
    if ((seen & kForeign) != 0) return std::nullopt;
    return bytes;
}

/// Takes one or two "=" from the end of a text of whole quartets; any other "=" is a foreign
/// character to `decode`.
std::string_view withoutPadding(std::string_view text) {
    for (int count = 0; count < 2 && text.ends_with('='); ++count)
        text.remove_suffix(1);
    return text;
}

} // namespace

void writeBase64URL(ByteView bytes, char* text) {
    encode(kBase64URLPairs, bytes, text);
}

std::string base64URLEncodedString(ByteView bytes) {
    std::string text(base64URLLength(bytes.size()), '\0');
    writeBase64URL(bytes, text.data());
    return text;
}

Bytes base64URLEncodedData(ByteView bytes) {
    Bytes text(base64URLLength(bytes.size()));
    writeBase64URL(bytes, reinterpret_cast<char*>(text.data()));
    return text;
}

std::optional<Bytes> fromBase64URL(std::string_view text) {
    // Padding is restored by length, so that a text of 3 modulo 4 which ends in "=" is one that
    // lost its second "=".
    switch (text.size() % 4) {
    case 0: text = withoutPadding(text); break;
    case 1: return std::nullopt;
    case 3:
        if (text.ends_with('=')) text.remove_suffix(1);
        break;
    default: break;
    }
    return decode(kBase64URLPlaces, text);
}

std::optional<Bytes> fromBase64URL(ByteView text) {
    if (!isUtf8(asText(text))) return std::nullopt;
    return fromBase64URL(asText(text));
}

std::string base64EncodedString(ByteView bytes) {
    std::string text((bytes.size() + 2) / 3 * 4, '=');
    encode(kBase64Pairs, bytes, text.data());
    return text;
}

std::optional<Bytes> fromBase64(std::string_view text) {
    if (text.size() % 4 != 0) return std::nullopt;
    return decode(kBase64Places, withoutPadding(text));
}

std::array<std::uint8_t, 8> getByteLengthAsOctetHexData(ByteView bytes) {
    const std::uint64_t bits = std::uint64_t{bytes.size()} * 8;
    std::array<std::uint8_t, 8> octets{};
    for (unsigned index = 0; index < 8; ++index)
        octets[7 - index] = static_cast<std::uint8_t>(bits >> (8 * index));
    return octets;
}

std::string hexEncodedString(ByteView bytes, HexEncodingOptions options) {
    const std::string_view digits =
        options.contains(HexEncodingOptions::upperCase) ? "0123456789ABCDEF" : "0123456789abcdef";
    std::string text;
    text.reserve(2 * bytes.size());
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4U];
        text += digits[byte & 15U];
    }
    return text;
}

std::size_t joinedBase64URLLength(std::span<const DataConvertible> components) {
    std::size_t length = components.empty() ? 0 : components.size() - 1;
    for (const DataConvertible& component : components)
        length += base64URLLength(component.data().size());
    return length;
}

void writeJoinedBase64URL(std::span<const DataConvertible> components, char* text) {
    for (std::size_t index = 0; index < components.size(); ++index) {
        if (index > 0) *text++ = '.';
        writeBase64URL(components[index].data(), text);
        text += base64URLLength(components[index].data().size());
    }
}

std::string joinedBase64URL(std::span<const DataConvertible> components) {
    std::string text(joinedBase64URLLength(components), '\0');
    writeJoinedBase64URL(components, text.data());
    return text;
}

Bytes asJOSESigningInput(std::span<const DataConvertible> components) {
    Bytes text(joinedBase64URLLength(components));
    writeJoinedBase64URL(components, reinterpret_cast<char*>(text.data()));
    return text;
}

} // namespace korvane
