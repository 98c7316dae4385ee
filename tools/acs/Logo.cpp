#include "tools/acs/Logo.h"

#include "Crypt/ConcatKDF.h"

#include <array>
#include <span>
#include <sstream>
#include <vector>

namespace korvane::acs {

namespace {

struct Shape {
    std::array<std::uint8_t, 3> colour;
    /// A closed path on a field of 96 by 48: "M" where it starts, "L" a line, "Q" a curve with its control point first.
    std::string_view path;
};

struct LogoRow {
    std::string_view name;
    /// The later ones lie above the earlier.
    std::span<const Shape> shapes;
};

struct DensityRow {
    std::string_view suffix;
    std::uint8_t width;
};

struct Point {
    double x;
    double y;
};

constexpr double kFieldHeight = 48;

/// Two hills behind a small lake.
constexpr std::array<Shape, 5> kIssuer{{
    {{0x5F, 0xB3, 0xA3}, "M 38 29 L 61 9 Q 65 6 69 9 L 92 29"},
    {{0x1F, 0x7A, 0x6D}, "M 4 29 L 30 5 Q 34 1.5 38 5 L 64 29"},
    {{0xB4, 0xDC, 0xD2}, "M 22.5 12 L 30 5 Q 34 1.5 38 5 L 45.5 12 L 40 15 L 34 11 L 28 15"},
    {{0x2E, 0x8F, 0xB0},
     "M 4 34 Q 14 30 26 34 Q 37 38 48 34 Q 59 30 70 34 Q 82 38 92 34 L 92 39 "
     "Q 82 43 70 39 Q 59 35 48 39 Q 37 43 26 39 Q 14 35 4 39"},
    {{0x7C, 0xC3, 0xD6}, "M 20 43 Q 34 40 48 43 Q 62 46 76 43 L 76 46 Q 62 49 48 46 Q 34 43 20 46"},
}};

/// Three sails, one behind the other.
constexpr std::array<Shape, 3> kScheme{{
    {{0xE8, 0xA3, 0x3D}, "M 6 45 Q 25 38 31 24 Q 33 22 33 25 L 33 42 Q 33 45 30 45"},
    {{0xDB, 0x5A, 0x3C}, "M 32 45 Q 54 36 60 14 Q 62 11 62 15 L 62 42 Q 62 45 59 45"},
    {{0xA8, 0x48, 0x7F}, "M 58 45 Q 83 32 88 4 Q 91 0 91 5 L 91 42 Q 91 45 88 45"},
}};

constexpr std::array<LogoRow, 2> kLogos{{{"issuer", kIssuer}, {"ps", kScheme}}};
constexpr std::array<DensityRow, 3> kDensities{
    {{"-medium.png", 48}, {"-high.png", 96}, {"-extraHigh.png", 144}}};

/// The corners of a path, its curves in short lines.
std::vector<Point> outlineOf(std::string_view path) {
    constexpr int kLines = 8;
    std::istringstream words{std::string(path)};
    std::vector<Point> outline;
    char kind = 0;
    for (Point point{}; words >> kind >> point.x >> point.y;) {
        if (kind != 'Q') {
            outline.push_back(point);
            continue;
        }
        const Point start = outline.back();
        const Point control = point;
        Point end{};
        words >> end.x >> end.y;
        for (int line = 1; line <= kLines; ++line) {
            const double far = static_cast<double>(line) / kLines;
            const double near = 1 - far;
            outline.push_back({near * near * start.x + 2 * near * far * control.x + far * far * end.x,
                               near * near * start.y + 2 * near * far * control.y + far * far * end.y});
        }
    }
    return outline;
}

/// Whether a ray to the right leaves the outline an odd number of times.
bool isWithin(const std::vector<Point>& outline, Point point) {
    bool isInside = false;
    for (std::size_t here = 0, before = outline.size() - 1; here < outline.size(); before = here++) {
        const Point& from = outline[before];
        const Point& to = outline[here];
        if ((from.y > point.y) == (to.y > point.y)) continue;
        const double crossing = from.x + (point.y - from.y) / (to.y - from.y) * (to.x - from.x);
        if (point.x < crossing) isInside = !isInside;
    }
    return isInside;
}

/// A pixel of what covers it: each of its samples shows the topmost shape there, or nothing.
std::array<std::uint8_t, 4> pixelOf(std::span<const Shape> shapes,
                                    const std::vector<std::vector<Point>>& outlines, Point corner,
                                    double size) {
    constexpr int kSide = 4;
    constexpr int kSamples = kSide * kSide;
    constexpr int kOpaque = 255;
    std::array<int, 3> sum{};
    int covered = 0;
    for (int sample = 0; sample < kSamples; ++sample) {
        const Point place{corner.x + (sample % kSide + 0.5) * size / kSide,
                          corner.y + (sample / kSide + 0.5) * size / kSide};
        for (std::size_t shape = shapes.size(); shape-- > 0;) {
            if (!isWithin(outlines[shape], place)) continue;
            for (std::size_t channel = 0; channel < sum.size(); ++channel)
                sum[channel] += shapes[shape].colour[channel];
            ++covered;
            break;
        }
    }
    const auto mean = [&](int value) {
        return static_cast<std::uint8_t>(covered == 0 ? 0 : value / covered);
    };
    return {mean(sum[0]), mean(sum[1]), mean(sum[2]),
            static_cast<std::uint8_t>(kOpaque * covered / kSamples)};
}

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

/// A zlib stream of one stored block (RFC 1951 section 3.2.4), of at most 65,535 bytes.
Bytes stored(ByteView data) {
    const auto low = static_cast<std::uint8_t>(data.size() & 0xFF);
    const auto high = static_cast<std::uint8_t>(data.size() >> 8);
    Bytes stream{
        0x78, 0x01, 0x01, low, high, static_cast<std::uint8_t>(~low), static_cast<std::uint8_t>(~high)};
    append(stream, data);
    append(stream, bigEndianData(adlerOf(data)));
    return stream;
}

/// Twice as wide as high, four bytes a pixel behind the filter byte of each line.
Bytes draw(const LogoRow& logo, const DensityRow& density) {
    const std::uint8_t height = density.width / 2;
    const double size = kFieldHeight / height;
    std::vector<std::vector<Point>> outlines;
    for (const Shape& shape : logo.shapes)
        outlines.push_back(outlineOf(shape.path));
    Bytes lines;
    for (int y = 0; y < height; ++y) {
        lines.push_back(0);
        for (int x = 0; x < density.width; ++x)
            append(lines, pixelOf(logo.shapes, outlines, {x * size, y * size}, size));
    }
    Bytes png{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    appendChunk(png, "IHDR", Bytes{0, 0, 0, density.width, 0, 0, 0, height, 8, 6, 0, 0, 0});
    appendChunk(png, "IDAT", stored(lines));
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
