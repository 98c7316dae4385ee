#include "Platform/View/DrawnPart.h"
#include "Platform/View/ImageHeads.h"
#include "Platform/View/UIImage.h"
#include "tests/Platform/View/ViewSupport.h"

namespace korvane {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

std::string times(std::size_t count, std::string_view piece) {
    std::string text;
    while (count-- > 0)
        text += piece;
    return text;
}

TEST(DrawnPart, IsTheWholeTextOrItsBeginningWithAnEllipsis) {
    const std::pair<std::string, std::string> rows[] = {
        {"", ""},
        {times(4000, "\u00E9"), times(4000, "\u00E9")},
        {times(4001, "\u00E9"), times(3999, "\u00E9") + "\u2026"},
        {"ab" + times(16383, "\x80"), "a\u2026"}, // cut before a code point
        {"e" + times(32, "\u0301") + "f\u0301", "e" + times(30, "\u0301") + "f\u0301"},
        {times(1 << 20, "\u0301"), times(30, "\u0301") + "\u2026"},
    };
    for (const auto& [text, expected] : rows) {
        EXPECT_EQ(drawnPart(text), expected);
        EXPECT_EQ(drawnPart(expected), expected);
    }
}

TEST(ImageHead, TellsTheSizeOrThatThereIsNone) {
    constexpr auto kPng = "\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\1\x2C\0\0\0\x64\x08\6\0\0\0"sv;
    constexpr auto kJpeg = "\xFF\xD8\xFF\xE0\0\4JF\xFF\xFF\xC4\0\3x\xFF\xC2\0\x11\x08\0\x64\1\x2C\3"sv;
    using enum UIImageFormat;
    const std::pair<std::string_view, ImageHead> good[] = {
        {kPng, {png, {300, 100}}},
        {kJpeg, {jpeg, {300, 100}}}, // behind other segments and a fill byte
        {"GIF89a\x2C\1\x64\0\0"sv, {gif, {300, 100}}},
        {"<?xml version='1.0'?><svg xmlns='x' width=\"30\" height='10.5px'/>", {svg, {30, 10.5}}},
        {"<svg stroke-width='2' viewBox='0, 0 24 12'>", {svg, {24, 12}}},
        {"<svg width='4096' height='0.01'>", {svg, {4096, 0.01}}},
        {"\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\x10\0\0\0\x10\0"sv, {png, {4096, 4096}}},
    };
    for (const auto& [data, head] : good)
        EXPECT_EQ(imageHead(toBytes(data)), head) << data;
    for (const auto data :
         {kPng.substr(0, 23), "\x89PNG\r\n\x1A\n\0\0\0\rIDAT\0\0\1\x2C\0\0\0\x64"sv, kJpeg.substr(0, 22),
          "\xFF\xD8\xFF\xE0\xFF\xFFxx"sv, "\xFF\xD8\xFF\xD9"sv, "GIF89a\0\0\x64\0\0"sv,
          "<svg viewBox='0 0 24'>"sv, "<svg width='inf' height='1'>"sv, "<svg viewBox='0 0 nan 1'>"sv,
          "<svg width='4096.1' height='1'>"sv, "<svg width='1' height='1e-9'>"sv, "<svg width='3"sv,
          "hello"sv, ""sv, "\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\x10\1\0\0\x10\0"sv})
        EXPECT_EQ(imageHead(toBytes(data)), std::nullopt) << data;
}

/// A GIF of some pixels a side, whose first frame begins at a place and has the data.
std::string gif(char side, char left, std::string_view data) {
    const std::string extent = {side, '\0', side, '\0'};
    return "GIF89a" + extent + "\0\0\0\x21\xFE\2hi\0,"s + left + "\0\0\0"s + extent + "\0\2"s +
           static_cast<char>(data.size()) + std::string(data) + '\0';
}

TEST(ForeignImage, IsDecodedAsFarAsItIsBounded) {
    const auto chunk = [](std::string_view type, char length) {
        const auto size = static_cast<std::size_t>(length);
        return "\0\0\0"s + length + std::string(type) + std::string(size, 'x') + "crc!";
    };
    const std::string png = "\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1\x08\3\0\0\0crc!"s;
    const std::string palette = png + chunk("PLTE", 3), seen = chunk("tRNS", 1) + chunk("IDAT", 4);
    const std::string jpeg = "\xFF\xD8\xFF\xC2\0\x11\x08\0\1\0\1\3xxxxxxxxx"s;
    const std::string most = jpeg + std::string((512U << 10U) - jpeg.size(), 'x');
    const std::string svg = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>";
    const std::string whole = gif(1, 0, "\x44\1"); // codes of three bits: clear, 0, end
    const std::string longer = gif(1, 0, "\x44\1\1\1\1\1\1\1\1\1");
    const struct {
        const char* name;
        std::string data;
        std::string expected = {}; // empty for no image
    } rows[] = {
        {"PNG without what is not seen", palette + chunk("zTXt", 9) + seen + chunk("iCCP", 5),
         palette + seen},
        {"PNG that is cut off in a chunk", palette + seen + seen.substr(0, 9), palette + seen},
        {"the most scans", jpeg + times(20, "\xFF\xDA"), jpeg + times(20, "\xFF\xDA")},
        {"more scans, each over the whole picture", jpeg + times(21, "\xFF\xDA")},
        {"the most comments", jpeg + times(256, "\xFF\xFE"), jpeg + times(256, "\xFF\xFE")},
        {"more comments, each put behind all others", jpeg + times(257, "\xFF\xFE")},
        {"one frame of several", whole + whole.substr(13), whole + ';'},
        {"GIF with bytes behind its end", longer, longer + ';'},
        {"GIF with more pixels than its frame has", gif(1, 0, "\x04\x0A")},
        {"GIF with a code that is not defined", gif(2, 0, "\x3C")},
        {"GIF with a frame beside the picture", gif(1, 1, "\x44\1")},
        {"GIF that is cut off", whole.substr(0, 30)},
        {"as many bytes as may be", most, most},
        {"one byte more", most + 'x'},
        {"SVG that names a file", svg + "<image href='file:///etc/hostname'/></svg>"},
        {"a compressed file that is called SVG", "\x1F\x8B\x08\x08xxxx\0\3" + svg},
        {"another format, with SVG in a comment", "P3 # " + svg + "\n1 1 255 0 0 0"},
        {"too large", "GIF89a\1\x10\1\0\0\0\0"s},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto image = UIImage::make(toBytes(row.data));
        EXPECT_EQ(image ? std::string(asText(image->encoded()->bytes)) : "", row.expected);
    }
}

} // namespace
} // namespace korvane
