#include "Platform/View/DrawnPart.h"
#include "Platform/View/ImageHeads.h"
#include "Platform/View/TextMeasurer.h"
#include "Platform/View/UIButton.h"
#include "Platform/View/UINavigationBar.h"
#include "Platform/View/UITextField.h"
#include "Platform/View/UITextView.h"
#include "Platform/View/WKWebView.h"
#include "tests/Platform/View/ViewSupport.h"

namespace korvane {
namespace {

TEST(FixedAdvancesOfText, BreakLinesAtBlanks) {
    struct Row {
        const char* name;
        const char* text;
        double width;
        int lines;
        CGSize expected; // in advances and lines
    };
    const std::vector<Row> rows{
        {"empty", "", 99, 0, {0, 1}},
        {"fits exactly", "ab cd", 5, 0, {5, 1}},
        {"one too many", "ab cd", 4.9, 0, {3, 2}},
        {"a long word is cut", "abcdefg", 3, 0, {3, 3}},
        {"a long word behind a short one", "a bcdef", 3, 0, {3, 3}},
        {"line feeds", "a\n\nbcd", 99, 0, {3, 3}},
        {"ends with a line feed", "a\n", 99, 0, {1, 2}},
        {"the first lines count", "a b cccc", 1.9, 2, {1.9, 2}},
        {"unbounded", "a b c d e f", kUnbounded, 0, {11, 1}},
        {"a mark has no width", "e\u0301e\u0301", 99, 0, {2, 1}},
        {"no room at all", "abc", 0, 0, {0, 3}},
        {"bytes that are no text", "\xFF\xC3", 99, 0, {2, 1}},
    };
    const UIFont font = UIFont::systemFont(10);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const double advance = FixedAdvances::kAdvance * 10;
        const double width = row.width == kUnbounded ? kUnbounded : row.width * advance + 1e-9;
        const CGSize size = FixedAdvances().size(row.text, font, width, row.lines);
        EXPECT_NEAR(size.width / advance, row.expected.width, 1e-6);
        EXPECT_NEAR(size.height / (FixedAdvances::kLineHeight * 10), row.expected.height, 1e-6);
    }
    EXPECT_EQ(FixedAdvances().size("\u4E2D", font, kUnbounded, 0).width, FixedAdvances::kWideAdvance * 10);
}

TEST(TextField, ShowsEveryLineBreakOnItsOneLine) {
    const std::pair<const char*, const char*> rows[] = {{"", ""},
                                                        {"12\n34", "12\u21B534"},
                                                        {"\n", "\u21B5"},
                                                        {"1\r\n\n", "1\u21B5\u21B5"},
                                                        {"\r1", "\u21B51"},
                                                        {"1\v2\f", "1\u21B52\u21B5"},
                                                        {"\u00851\u2028", "\u21B51\u21B5"},
                                                        {"\u2029\u2030", "\u21B5\u2030"}};
    const SimulatedPlatform platform;
    UITextField field, plain;
    for (const auto& [text, line] : rows) {
        SCOPED_TRACE(line);
        EXPECT_EQ(onOneLine(text), line);
        field.setText(text);
        plain.setText(line);
        EXPECT_EQ(field.intrinsicContentSize(), plain.intrinsicContentSize());
    }
}

TEST(DrawnPart, IsTheWholeTextOrItsBeginningWithAnEllipsis) {
    const auto times = [](std::size_t count, std::string_view piece) {
        std::string text;
        while (count-- > 0)
            text += piece;
        return text;
    };
    struct Row {
        const char* name;
        std::string text;
        std::string expected;
    };
    const std::vector<Row> rows{
        {"nothing", "", ""},
        {"the most code points", times(4000, "\u00E9"), times(4000, "\u00E9")},
        {"one more", times(4001, "\u00E9"), times(3999, "\u00E9") + "\u2026"},
        {"the most bytes of bytes that are no text", times(16384, "\x80"), times(16384, "\x80")},
        {"one more byte, cut before a code point", "ab" + times(16383, "\x80"), "a\u2026"},
        {"the most marks", "e" + times(30, "\u0301") + "f", "e" + times(30, "\u0301") + "f"},
        {"more marks", "e" + times(32, "\u0301") + "f\u0301", "e" + times(30, "\u0301") + "f\u0301"},
        {"marks without an end", times(1 << 20, "\u0301"), times(30, "\u0301") + "\u2026"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(drawnPart(row.text), row.expected);
        EXPECT_EQ(drawnPart(row.expected), row.expected);
    }
}

Bytes bytes(std::string_view text) {
    return toBytes(text);
}

TEST(ImageHead, TellsTheSizeOrThatThereIsNone) {
    using namespace std::string_view_literals;
    const auto head = [](UIImageFormat format, double width, double height) {
        return ImageHead{format, {width, height}};
    };
    struct Row {
        const char* name;
        std::string_view data;
        std::optional<ImageHead> expected;
    };
    constexpr auto kPng = "\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\1\x2C\0\0\0\x64\x08\6\0\0\0"sv;
    constexpr auto kJpeg = "\xFF\xD8\xFF\xE0\0\4JF\xFF\xFF\xC4\0\3x\xFF\xC2\0\x11\x08\0\x64\1\x2C\3"sv;
    const std::vector<Row> rows{
        {"PNG", kPng, head(UIImageFormat::png, 300, 100)},
        {"PNG without its last byte of size", kPng.substr(0, 23), std::nullopt},
        {"PNG with another first chunk", "\x89PNG\r\n\x1A\n\0\0\0\rIDAT\0\0\1\x2C\0\0\0\x64"sv, std::nullopt},
        {"JPEG behind other segments and a fill byte", kJpeg, head(UIImageFormat::jpeg, 300, 100)},
        {"JPEG that ends in its frame", kJpeg.substr(0, 22), std::nullopt},
        {"JPEG with a length beyond the end", "\xFF\xD8\xFF\xE0\xFF\xFFxx"sv, std::nullopt},
        {"JPEG without a frame", "\xFF\xD8\xFF\xD9"sv, std::nullopt},
        {"GIF", "GIF89a\x2C\1\x64\0\0"sv, head(UIImageFormat::gif, 300, 100)},
        {"empty GIF", "GIF89a\0\0\x64\0\0"sv, std::nullopt},
        {"SVG", "<?xml version='1.0'?><svg xmlns='x' width=\"30\" height='10.5px'/>",
         head(UIImageFormat::svg, 30, 10.5)},
        {"SVG by its box, stroke widths aside", "<svg stroke-width='2' viewBox='0, 0 24 12'>",
         head(UIImageFormat::svg, 24, 12)},
        {"SVG of all the room", "<svg width='100%' height='100%' viewBox='0 0 2 1'>",
         head(UIImageFormat::svg, 2, 1)},
        {"SVG without a size", "<svg viewBox='0 0 24'>", std::nullopt},
        {"SVG as wide as there is", "<svg width='inf' height='1'>", std::nullopt},
        {"SVG of no number's width", "<svg viewBox='0 0 nan 1'>", std::nullopt},
        {"SVG as large as can be drawn", "<svg width='4096' height='0.01'>",
         head(UIImageFormat::svg, 4096, 0.01)},
        {"SVG wider", "<svg width='4096.1' height='1'>", std::nullopt},
        {"SVG too low to be seen", "<svg width='1' height='1e-9'>", std::nullopt},
        {"PNG as large as can be drawn", "\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\x10\0\0\0\x10\0"sv,
         head(UIImageFormat::png, 4096, 4096)},
        {"PNG wider", "\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\x10\1\0\0\x10\0"sv, std::nullopt},
        {"SVG that is cut off", "<svg width='3", std::nullopt},
        {"text", "hello", std::nullopt},
        {"nothing", "", std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(imageHead(bytes(row.data)), row.expected);
    }
}

/// A GIF of some pixels a side, whose first frame begins at a place and has the data.
std::string gif(char side, char left, std::string_view data) {
    using namespace std::string_literals;
    const std::string extent = {side, '\0', side, '\0'};
    return "GIF89a" + extent + "\0\0\0\x21\xFE\2hi\0,"s + left + "\0\0\0"s + extent + "\0\2"s +
           static_cast<char>(data.size()) + std::string(data) + '\0';
}

TEST(ForeignImage, IsDecodedAsFarAsItIsBounded) {
    using namespace std::string_literals;
    const auto chunk = [](std::string_view type, char length) {
        return "\0\0\0"s + length + std::string(type) + std::string(static_cast<std::size_t>(length), 'x') +
               "crc!";
    };
    const auto times = [](std::size_t count, std::string_view piece) {
        std::string all;
        while (count-- > 0)
            all += piece;
        return all;
    };
    const std::string png = "\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\0\1\0\0\0\1\x08\3\0\0\0crc!"s;
    const std::string jpeg = "\xFF\xD8\xFF\xC2\0\x11\x08\0\1\0\1\3xxxxxxxxx"s;
    // A GIF's data "\x44\1" are codes of three bits: clear, 0, end.
    const std::string svg = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'>";
    constexpr const char* kNone = "";
    struct Row {
        const char* name;
        std::string data;
        std::string expected; // kNone for none
    };
    const std::vector<Row> rows{
        {"PNG without what is not seen",
         png + chunk("PLTE", 3) + chunk("zTXt", 9) + chunk("tRNS", 1) + chunk("iCCP", 5) + chunk("IDAT", 4),
         png + chunk("PLTE", 3) + chunk("tRNS", 1) + chunk("IDAT", 4)},
        {"PNG that is cut off in a chunk", png + chunk("IDAT", 4) + chunk("IDAT", 4).substr(0, 15),
         png + chunk("IDAT", 4)},
        {"PNG without the end of its header", png.substr(0, 32), kNone},
        {"JPEG with the most scans", jpeg + times(20, "\xFF\xDA"), jpeg + times(20, "\xFF\xDA")},
        {"JPEG with more, each over the whole picture", jpeg + times(21, "\xFF\xDA"), kNone},
        {"JPEG with the most comments", jpeg + times(128, "\xFF\xFE\xFF\xE1"),
         jpeg + times(128, "\xFF\xFE\xFF\xE1")},
        {"JPEG with more, each put behind all others", jpeg + times(257, "\xFF\xFE"), kNone},
        {"GIF with one frame of several", gif(1, 0, "\x44\1") + gif(1, 0, "\x44\1").substr(13),
         gif(1, 0, "\x44\1") + ';'},
        {"GIF with bytes behind its end", gif(1, 0, "\x44\1\1\1\1\1\1\1\1\1"),
         gif(1, 0, "\x44\1\1\1\1\1\1\1\1\1") + ';'},
        {"GIF with more pixels than its frame has", gif(1, 0, "\x04\x0A"), kNone},
        {"GIF with a code that is not defined", gif(2, 0, "\x3C"), kNone},
        {"GIF with a frame beside the picture", gif(1, 1, "\x44\1"), kNone},
        {"GIF that is cut off", gif(1, 0, "\x44\1").substr(0, 30), kNone},
        {"as many bytes as may be", jpeg + std::string((512 << 10) - jpeg.size(), 'x'),
         jpeg + std::string((512 << 10) - jpeg.size(), 'x')},
        {"one byte more", jpeg + std::string((512 << 10) - jpeg.size() + 1, 'x'), kNone},
        {"SVG that names a file", svg + "<image href='file:///etc/hostname'/></svg>", kNone},
        {"a compressed file that is called SVG", "\x1F\x8B\x08\x08xxxx\0\3" + svg, kNone},
        {"another format, with SVG in a comment", "P3 # " + svg + "\n1 1 255 0 0 0", kNone},
        {"too large", "GIF89a\1\x10\1\0\0\0\0"s, kNone},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const auto image = UIImage::make(bytes(row.data));
        ASSERT_EQ(image != nullptr, !row.expected.empty());
        if (!image) continue;
        EXPECT_EQ(asText(image->encoded()->bytes), row.expected);
    }
}

TEST(Color, IsReadFromItsHexText) {
    EXPECT_EQ(UIColor::fromHex("#FF0080"), UIColor(1, 0, 128 / 255.0, 1));
    EXPECT_EQ(UIColor::fromHex("#00000000"), UIColor::clear());
    for (const char* text : {"", "#FFF", "FF00801", "#GG0000", "#-12345", "#12345", "#1234567"})
        EXPECT_EQ(UIColor::fromHex(text), std::nullopt) << text;
    EXPECT_EQ(UIColor::label().resolved(UIUserInterfaceStyle::dark), (RGBA{1, 1, 1, 1}));
}

class Content : public ViewTest {
protected:
    static UIImagePtr image(double width, double height) {
        return UIImage::filled({width, height}, UIColor::black());
    }
};

TEST_F(Content, AButtonShowsItsState) {
    const auto button = add<UIButton>(rootView(), {{0, 0}, {100, 40}});
    button->setTitle("Go", ControlState::normal);
    button->setTitle("Going", ControlState::highlighted);
    button->setTitleColor(UIColor::red(), ControlState::normal);
    button->setTitleColor(UIColor::blue(), ControlState::disabled);
    button->setImage(image(10, 10), ControlState::selected);
    EXPECT_EQ(button->titleLabel()->text(), "Go");
    EXPECT_EQ(button->accessibilityLabel(), "Go");
    button->setHighlighted(true);
    EXPECT_EQ(button->titleLabel()->text(), "Going");
    EXPECT_EQ(button->titleLabel()->textColor(), UIColor::red());
    button->setEnabled(false);
    EXPECT_EQ(button->titleLabel()->text(), "Go");
    EXPECT_EQ(button->titleLabel()->textColor(), UIColor::blue());
    EXPECT_EQ(button->imageView(), nullptr);
    button->setEnabled(true);
    button->setHighlighted(false);
    button->setSelected(true);
    EXPECT_EQ(button->imageView()->image()->size().width, 10);
    button->setSelected(false);
    EXPECT_EQ(button->imageView()->image(), nullptr);
}

TEST_F(Content, AButtonPlacesImageAndTitleByAlignmentAndInsets) {
    using enum UIControlContentHorizontalAlignment;
    struct Row {
        const char* name;
        UIControlContentHorizontalAlignment alignment;
        UIEdgeInsets titleInsets, imageInsets;
        double imageX, titleX, titleWidth;
    };
    // The image is 10 wide, the title 22 (four characters of 5.5), the button 100.
    const std::vector<Row> rows{
        {"in the middle", center, {}, {}, 34, 44, 22},
        {"at the left", left, {}, {}, 0, 10, 22},
        {"at the right", right, {}, {}, 68, 78, 22},
        {"the image pushed to the far end, the title to its place",
         left,
         {0, -10, 0, 0},
         {0, 90, 0, 0},
         90,
         0,
         22},
        {"shifts around the middle count by half", center, {0, 8, 0, 0}, {0, 0, 0, 8}, 30, 48, 22},
        {"a title has the room that insets leave", left, {0, 40, 0, 35}, {}, 0, 50, 15},
    };
    const auto button = add<UIButton>(rootView(), {{0, 0}, {100, 40}});
    button->titleLabel()->setFont(UIFont::systemFont(10));
    button->setTitle("abcd", ControlState::normal);
    button->setImage(image(10, 20), ControlState::normal);
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        button->setContentHorizontalAlignment(row.alignment);
        button->setTitleEdgeInsets(row.titleInsets);
        button->setImageEdgeInsets(row.imageInsets);
        window->layoutIfNeeded();
        EXPECT_EQ(button->imageView()->frame(), (CGRect{{row.imageX, 10}, {10, 20}}));
        EXPECT_EQ(button->titleLabel()->frame(), (CGRect{{row.titleX, 14}, {row.titleWidth, 12}}));
    }
    button->setTitleEdgeInsets({});
    button->setContentEdgeInsets({1, 2, 3, 4});
    EXPECT_EQ(button->intrinsicContentSize(), (CGSize{38, 24}));
    button->titleLabel()->setFont(UIFont::systemFont(20));
    EXPECT_EQ(button->intrinsicContentSize(), (CGSize{60, 28})) << "the label's font counts for the button";
}

TEST_F(Content, ATextIsMeasuredAsFarAsItIsDrawn) {
    UILabel label;
    label.setNumberOfLines(0);
    label.setText(std::string(1 << 20, 'a'));
    const CGSize whole = label.fittingSize(100);
    label.setText(drawnPart(label.text()));
    EXPECT_EQ(label.fittingSize(100), whole);
}

TEST_F(Content, TextsShrinkOrGrowToTheirWidth) {
    const auto label = add<UILabel>(rootView(), {{0, 0}, {55, 20}});
    label->setFont(UIFont::systemFont(10));
    label->setText("0123456789012"); // 71.5 points, measured as 72
    EXPECT_EQ(label->scaleFactor(), 1);
    label->setAdjustsFontSizeToFitWidth(true);
    EXPECT_DOUBLE_EQ(label->scaleFactor(), 55.0 / 72);
    label->setMinimumScaleFactor(0.9);
    EXPECT_EQ(label->scaleFactor(), 0.9);

    const auto text = add<UITextView>(rootView(), {{0, 0}, {65, 10}});
    text->setFont(UIFont::systemFont(10));
    text->setText("01234 56789"); // both words need 60.5 of the 55 points between the paddings
    EXPECT_EQ(text->contentSize().height, 24 + 16);
    text->setLineFragmentPadding(0);
    EXPECT_EQ(text->contentSize().height, 12 + 16);
    text->setTextContainerInset({});
    EXPECT_EQ(text->sizeThatFits({65, kUnbounded}), (CGSize{61, 12}));
    text->setFrame({{0, 0}, {40, 10}});
    EXPECT_EQ(text->contentSize().height, 24) << "a new width counts at once";
}

TEST_F(Content, ABarPlacesItsEndsAndTheTitleBetweenThem) {
    const auto bar = add<UINavigationBar>(rootView(), {{0, 0}, {320, 44}});
    const auto cancel = std::make_shared<UIView>(CGRect{{0, 0}, {60, 30}});
    const auto item = std::make_shared<UINavigationItem>("Pay");
    item->setRightBarButtonItem(std::make_shared<UIBarButtonItem>(cancel));
    bar->setItems({std::make_shared<UINavigationItem>("below"), item});
    window->layoutIfNeeded();
    EXPECT_EQ(cancel->frame(), (CGRect{{252, 7}, {60, 30}}));
    EXPECT_EQ(bar->titleLabel()->frame(), (CGRect{{76, 0}, {168, 44}}));
    bar->setTitleTextAttributes({UIFont::boldSystemFont(20), std::nullopt});
    EXPECT_EQ(bar->titleLabel()->font(), UIFont::boldSystemFont(20));
    bar->setItems({});
    item->setTitle("gone");
    EXPECT_EQ(bar->titleLabel()->text(), "");
    EXPECT_EQ(cancel->superview(), nullptr);
}

TEST_F(Content, APageAsksItsDelegateBeforeItLeaves) {
    class Policy : public WKNavigationDelegate {
    public:
        void webView(WKWebView& /*webView*/, const WKNavigationAction& action,
                     const DecisionHandler& decide) override {
            decide(action.request ? WKNavigationActionPolicy::allow : WKNavigationActionPolicy::cancel);
        }
    };
    const auto page = add<WKWebView>(rootView(), {});
    std::vector<WKNavigationActionPolicy> decisions;
    const auto decide = [&](WKNavigationActionPolicy policy) { decisions.push_back(policy); };
    page->decidePolicy({}, decide);
    auto policy = std::make_shared<Policy>();
    page->setNavigationDelegate(policy);
    page->decidePolicy({}, decide);
    policy.reset();
    page->decidePolicy({}, decide);
    using enum WKNavigationActionPolicy;
    EXPECT_THAT(decisions, testing::ElementsAre(allow, cancel, allow));
    page->loadHTMLString("<p>");
    page->loadHTMLString("<p>");
    EXPECT_EQ(page->loadCount(), 2) << "the same page again is a new one";
}

TEST_F(Content, ANamedFontHasTheWeightOfItsFace) {
    struct Row {
        const char* name;
        double weight;
    };
    const Row rows[] = {{"Inter", 0},
                        {"Inter-Regular", 0},
                        {"Inter-Italic", 0},
                        {"Inter Extra Light", -0.8},
                        {"Inter-Light", -0.4},
                        {"Inter-MediumItalic", 0.23},
                        {"Inter-SemiBold", 0.3},
                        {"Inter Bold", 0.4},
                        {"Inter-ExtraBold", 0.56},
                        {"Inter-Black", 0.62},
                        {"Boldini", 0},
                        {"Boldini-Oblique", 0}};
    auto& fonts = platform.script().fonts;
    fonts = {{"Inter", {}}, {"Boldini", {}}};
    for (const Row& row : rows) {
        fonts[std::string_view(row.name).starts_with("Inter") ? 0 : 1].second.push_back(row.name);
        const auto font = UIFont::make(row.name, 12);
        ASSERT_TRUE(font) << row.name;
        EXPECT_EQ(font->weight(), row.weight) << row.name;
    }
}

} // namespace
} // namespace korvane
