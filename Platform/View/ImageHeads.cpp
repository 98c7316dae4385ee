#include "Platform/View/ImageHeads.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <string_view>

namespace korvane {

namespace {

/// An unsigned number of big-endian bytes that the caller knows to be there.
double bigEndian(ByteView data, std::size_t at, std::size_t length) {
    double number = 0;
    for (std::size_t index = 0; index < length; ++index)
        number = number * 256 + data[at + index];
    return number;
}

/// A size that can be drawn; what is no number is none.
std::optional<CGSize> drawable(double width, double height) {
    constexpr double kShortest = 0.01;
    constexpr double kLongest = 4096;
    const auto isSide = [](double side) { return side >= kShortest && side <= kLongest; };
    return isSide(width) && isSide(height) ? std::optional(CGSize{width, height}) : std::nullopt;
}

/// W3C PNG, section 11.2.2: the header chunk comes first.
std::optional<CGSize> pngSize(ByteView data) {
    using namespace std::string_view_literals;
    if (data.size() < 24 || !asText(data).starts_with("\x89PNG\r\n\x1A\n"sv)) return std::nullopt;
    if (asText(data).substr(12, 4) != "IHDR") return std::nullopt;
    return drawable(bigEndian(data, 16, 4), bigEndian(data, 20, 4));
}

/// GIF89a, section 18: little-endian.
std::optional<CGSize> gifSize(ByteView data) {
    const std::string_view head = asText(data);
    if (data.size() < 10 || (!head.starts_with("GIF87a") && !head.starts_with("GIF89a"))) return std::nullopt;
    return drawable(data[6] + data[7] * 256, data[8] + data[9] * 256);
}

/// Whether a marker begins a frame (ITU-T T.81, table B.1).
bool isFrameMarker(unsigned marker) {
    return marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 && marker != 0xCC;
}

/// ITU-T T.81, annex B: segments of a marker and a length, up to the frame's.
std::optional<CGSize> jpegSize(ByteView data) {
    if (data.size() < 4 || data[0] != 0xFF || data[1] != 0xD8) return std::nullopt;
    std::size_t at = 2;
    while (at + 4 <= data.size() && data[at] == 0xFF) {
        if (data[at + 1] == 0xFF) { // a fill byte
            ++at;
            continue;
        }
        if (isFrameMarker(data[at + 1])) {
            if (at + 9 > data.size()) return std::nullopt;
            return drawable(bigEndian(data, at + 7, 2), bigEndian(data, at + 5, 2));
        }
        at += 2 + static_cast<std::size_t>(bigEndian(data, at + 2, 2));
    }
    return std::nullopt;
}

/// The value of an attribute inside a start tag, or an empty text.
std::string_view attribute(std::string_view tag, std::string_view name) {
    for (std::size_t at = tag.find(name); at != std::string_view::npos; at = tag.find(name, at + 1)) {
        const std::string_view rest = tag.substr(at + name.size());
        const bool isWhole =
            at > 0 && std::string_view(" \t\r\n").find(tag[at - 1]) != std::string_view::npos;
        if (!isWhole || rest.size() < 2 || rest[0] != '=' || (rest[1] != '"' && rest[1] != '\'')) continue;
        return rest.substr(2, rest.find(rest[1], 2) - 2);
    }
    return {};
}

/// The number that a length begins with; 0 for a share of something else.
double leadingNumber(std::string_view text) {
    double number = 0;
    const char* const end = text.data() + text.size();
    const char* const unit = std::from_chars(text.data(), end, number).ptr;
    return unit != end && *unit == '%' ? 0 : number;
}

/// SVG 1.1, section 7: the size that the root asks for, else that of its view box.
std::optional<CGSize> svgSize(ByteView data) {
    constexpr std::size_t kHead = 4096;
    const std::string_view head = asText(data).substr(0, kHead);
    const std::size_t start = head.find("<svg");
    if (start == std::string_view::npos) return std::nullopt;
    const std::string_view tag = head.substr(start, head.find('>', start) - start);
    if (const auto size =
            drawable(leadingNumber(attribute(tag, "width")), leadingNumber(attribute(tag, "height"))))
        return size;

    std::string_view box = attribute(tag, "viewBox");
    std::array<double, 4> numbers{};
    for (double& number : numbers) {
        const std::size_t next = box.find_first_not_of(" ,\t\r\n");
        if (next == std::string_view::npos) return std::nullopt;
        box.remove_prefix(next);
        number = leadingNumber(box);
        box.remove_prefix(std::min(box.find_first_of(" ,\t\r\n"), box.size()));
    }
    return drawable(numbers[2], numbers[3]);
}

} // namespace

std::optional<ImageHead> imageHead(ByteView data) {
    struct Row {
        UIImageFormat format;
        std::optional<CGSize> (*size)(ByteView data);
    };
    constexpr Row kRows[] = {{UIImageFormat::png, pngSize},
                             {UIImageFormat::jpeg, jpegSize},
                             {UIImageFormat::gif, gifSize},
                             {UIImageFormat::svg, svgSize}};
    for (const Row& row : kRows)
        if (const auto size = row.size(data)) return ImageHead{row.format, *size};
    return std::nullopt;
}

} // namespace korvane
