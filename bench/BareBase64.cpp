#include "bench/BareBase64.h"

#include "Platform/Failure.h"

#include <array>
#include <cstring>

namespace korvane::bench::bare {

namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";

constexpr auto kPairs = [] {
    std::array<std::array<char, 2>, 4096> pairs{};
    for (std::size_t bits = 0; bits < pairs.size(); ++bits)
        pairs[bits] = {kAlphabet[bits >> 6U], kAlphabet[bits & 63U]};
    return pairs;
}();

constexpr std::uint32_t kForeign = 1U << 31U;

/// Of each of four places: a character's six bits where they belong in 24.
constexpr auto kPlaces = [] {
    std::array<std::array<std::uint32_t, 256>, 4> places{};
    for (std::size_t place = 0; place < places.size(); ++place) {
        places[place].fill(kForeign);
        for (std::uint32_t value = 0; value < kAlphabet.size(); ++value)
            places[place][static_cast<unsigned char>(kAlphabet[value])] = value << (18 - 6 * place);
    }
    return places;
}();

std::uint32_t at(std::size_t place, char character) {
    return kPlaces[place][static_cast<unsigned char>(character)];
}

std::uint64_t bigEndian(const std::uint8_t* octets) {
    return std::uint64_t{octets[0]} << 56U | std::uint64_t{octets[1]} << 48U |
           std::uint64_t{octets[2]} << 40U | std::uint64_t{octets[3]} << 32U |
           std::uint64_t{octets[4]} << 24U | std::uint64_t{octets[5]} << 16U |
           std::uint64_t{octets[6]} << 8U | octets[7];
}

void writePair(std::uint64_t bits, char* text) {
    std::memcpy(text, kPairs[bits & 4095U].data(), 2);
}

} // namespace

char* encodeBase64URL(ByteView octets, char* text) {
    const std::uint8_t* next = octets.data();
    std::size_t left = octets.size();
    // Six at a time, of which eight are loaded at once.
    for (; left >= 8; left -= 6, next += 6, text += 8) {
        const std::uint64_t bits = bigEndian(next);
        writePair(bits >> 52U, text);
        writePair(bits >> 40U, text + 2);
        writePair(bits >> 28U, text + 4);
        writePair(bits >> 16U, text + 6);
    }
    for (; left >= 3; left -= 3, next += 3, text += 4) {
        const std::uint32_t bits = (std::uint32_t{next[0]} << 16U) | (std::uint32_t{next[1]} << 8U) | next[2];
        writePair(bits >> 12U, text);
        writePair(bits, text + 2);
    }
    if (left == 0) return text;
    const std::uint32_t bits =
        (std::uint32_t{next[0]} << 16U) | (left == 2 ? std::uint32_t{next[1]} << 8U : 0);
    writePair(bits >> 12U, text);
    if (left == 2) text[2] = kPairs[bits & 4095U][0];
    return text + left + 1;
}

std::uint8_t* decodeBase64URL(std::string_view text, std::uint8_t* octets) {
    const std::size_t tail = text.size() % 4;
    const char* next = text.data();
    std::uint32_t seen = 0;
    for (const char* const end = next + (text.size() - tail); next != end; next += 4, octets += 3) {
        const std::uint32_t bits = at(0, next[0]) | at(1, next[1]) | at(2, next[2]) | at(3, next[3]);
        seen |= bits;
        octets[0] = static_cast<std::uint8_t>(bits >> 16U);
        octets[1] = static_cast<std::uint8_t>(bits >> 8U);
        octets[2] = static_cast<std::uint8_t>(bits);
    }
    std::uint32_t bits = 0;
    for (std::size_t place = 0; place < tail; ++place)
        bits |= at(place, next[place]);
    if (tail > 1) *octets++ = static_cast<std::uint8_t>(bits >> 16U);
    if (tail > 2) *octets++ = static_cast<std::uint8_t>(bits >> 8U);
    if (((seen | bits) & kForeign) != 0 || tail == 1) fatalError("A text of the benchmark is not Base64URL.");
    return octets;
}

} // namespace korvane::bench::bare
