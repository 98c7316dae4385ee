#include "tools/acs/Logo.h"

#include "Crypt/ConcatKDF.h"

#include <array>

namespace korvane::acs {

namespace {

struct LogoRow {
    std::string_view name;
    std::array<std::uint8_t, 3> colour;
};

struct DensityRow {
    std::string_view suffix;
    std::uint8_t width;
};

constexpr std::array<LogoRow, 2> kLogos{{{"issuer", {0x1B, 0x5E, 0x8C}}, {"ps", {0xC2, 0x6A, 0x12}}}};
constexpr std::array<DensityRow, 3> kDensities{
    {{"-medium.png", 48}, {"-high.png", 96}, {"-extraHigh.png", 144}}};

void append(Bytes& bytes, ByteView more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

/// CRC-32 of RFC 1952 section 8, bit by bit: images are small.
std::uint32_t crcOf(ByteView bytes) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const std::uint8_t byte : bytes) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xEDB88320U : 0);
    }
    return ~crc;
}

/// Adler-32 of RFC 1950 section 8.
std::uint32_t adlerOf(ByteView bytes) {
    constexpr std::uint32_t kModulus = 65521;
    std::uint32_t a = 1;
    std::uint32_t b = 0;
    for (const std::uint8_t byte : bytes) {
        a = (a + byte) % kModulus;
        b = (b + a) % kModulus;
    }
    return b << 16 | a;
}

void appendChunk(Bytes& png, std::string_view type, ByteView data) {
    Bytes checked = toBytes(type);
    append(checked, data);
    append(png, bigEndianData(static_cast<std::uint32_t>(data.size())));
    append(png, checked);
    append(png, bigEndianData(crcOf(checked)));
}

/// A zlib stream of one stored block (RFC 1951 section 3.2.4).
Bytes stored(ByteView data) {
    const auto low = static_cast<std::uint8_t>(data.size() & 0xFF);
    const auto high = static_cast<std::uint8_t>(data.size() >> 8);
    Bytes stream{
        0x78, 0x01, 0x01, low, high, static_cast<std::uint8_t>(~low), static_cast<std::uint8_t>(~high)};
    append(stream, data);
    append(stream, bigEndianData(adlerOf(data)));
    return stream;
}

/// Twice as wide as high, one palette index per pixel behind the filter byte of each line.
Bytes draw(const LogoRow& logo, const DensityRow& density) {
    const std::uint8_t height = density.width / 2;
    Bytes png{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    appendChunk(png, "IHDR", Bytes{0, 0, 0, density.width, 0, 0, 0, height, 8, 3, 0, 0, 0});
    appendChunk(png, "PLTE", logo.colour);
    appendChunk(png, "IDAT", stored(Bytes((std::size_t{density.width} + 1) * height, 0)));
    appendChunk(png, "IEND", {});
    return png;
}

} // namespace

std::optional<Bytes> makeLogo(std::string_view name) {
    for (const LogoRow& logo : kLogos)
        for (const DensityRow& density : kDensities)
            if (name == std::string(logo.name) + std::string(density.suffix)) return draw(logo, density);
    return std::nullopt;
}

} // namespace korvane::acs
