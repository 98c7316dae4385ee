#include "Platform/View/DrawnPart.h"
#include "Platform/View/TextMeasurer.h"
#include "Platform/View/UIButton.h"
#include "Platform/View/UINavigationBar.h"
#include "Platform/View/UITextView.h"
#include "Platform/View/WKWebView.h"
#include "tests/Platform/View/ViewSupport.h"

namespace korvane {
namespace {

TEST(FixedAdvancesOfText, BreakLinesAtBlanks) {
    const struct {
        const char* text;
        double width;
        int lines;
        CGSize expected; // in advances and lines
    } rows[] = {
        {"", 99, 0, {0, 1}},
        {"ab cd", 5, 0, {5, 1}},
        {"ab cd", 4.9, 0, {3, 2}},
        {"a bcdef", 3, 0, {3, 3}}, // a long word is cut
        {"a\n\nbcd\n", 99, 0, {3, 4}},
        {"a b cccc", 1.9, 2, {1.9, 2}}, // the first lines count
        {"a b c d e f", kUnbounded, 0, {11, 1}},
        {"e\u0301e\u0301", 99, 0, {2, 1}},
        {"abc", 0, 0, {0, 3}},
        {"\xFF\xC3", 99, 0, {2, 1}}, // bytes that are no text
    };
    const UIFont font = UIFont::systemFont(10);
    const double advance = FixedAdvances::kAdvance * 10;
    for (const auto& row : rows) {
        const CGSize size = FixedAdvances().size(row.text, font, row.width * advance + 1e-9, row.lines);
        EXPECT_NEAR(size.width / advance, row.expected.width, 1e-6) << row.text;
        EXPECT_NEAR(size.height / (FixedAdvances::kLineHeight * 10), row.expected.height, 1e-6) << row.text;
    }
    EXPECT_EQ(FixedAdvances().size("\u4E2D", font, kUnbounded, 0).width, FixedAdvances::kWideAdvance * 10);
}

class Content : public ViewTest {};

TEST_F(Content, AButtonShowsItsStateOrTheNormalLook) {
    const auto button = add<UIButton>(rootView(), {{0, 0}, {100, 40}});
    button->setTitle("Go", ControlState::normal);
    button->setTitle("Going", ControlState::highlighted);
    button->setTitleColor(UIColor::red(), ControlState::normal);
    button->setTitleColor(UIColor::blue(), ControlState::disabled);
    const auto looks = [&](const std::string& title, const UIColor& color) {
        return button->titleLabel()->text() == title && button->titleLabel()->textColor() == color;
    };
    button->setHighlighted(true);
    EXPECT_TRUE(looks("Going", UIColor::red()));
    button->setEnabled(false);
    EXPECT_TRUE(looks("Go", UIColor::blue()));
    button->setEnabled(true);
    button->setHighlighted(false);
    EXPECT_TRUE(looks("Go", UIColor::red()));
    button->setImage(UIImage::filled({10, 10}, UIColor::black()), ControlState::selected);
    button->setSelected(true);
    EXPECT_EQ(button->imageView()->image()->size().width, 10);
    button->setSelected(false);
    EXPECT_EQ(button->imageView()->image(), nullptr);
}

TEST_F(Content, AButtonPlacesImageAndTitleByAlignmentAndInsets) {
    using enum UIControlContentHorizontalAlignment;
    const struct {
        UIControlContentHorizontalAlignment alignment;
        UIEdgeInsets titleInsets, imageInsets;
        double imageX, titleX, titleWidth;
    } rows[] = {
        // The image is 10 wide, the title 22 (four characters of 5.5), the button 100.
        {center, {}, {}, 34, 44, 22},
        {left, {}, {}, 0, 10, 22},
        {right, {}, {}, 68, 78, 22},
        {left, {0, -10, 0, 0}, {0, 90, 0, 0}, 90, 0, 22},
        {center, {0, 8, 0, 0}, {0, 0, 0, 8}, 30, 48, 22}, // shifts around the middle count by half
        {left, {0, 40, 0, 35}, {}, 0, 50, 15},            // a title has the room that insets leave
    };
    const auto button = add<UIButton>(rootView(), {{0, 0}, {100, 40}});
    button->titleLabel()->setFont(UIFont::systemFont(10));
    button->setTitle("abcd", ControlState::normal);
    button->setImage(UIImage::filled({10, 20}, UIColor::black()), ControlState::normal);
    for (const auto& row : rows) {
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

TEST_F(Content, TextsShrinkOrGrowToTheirWidth) {
    const auto label = add<UILabel>(rootView(), {{0, 0}, {55, 20}});
    label->setFont(UIFont::systemFont(10));
    label->setText("0123456789012"); // 71.5 points, measured as 72
    EXPECT_EQ(label->scaleFactor(), 1);
    label->setAdjustsFontSizeToFitWidth(true);
    EXPECT_DOUBLE_EQ(label->scaleFactor(), 55.0 / 72);
    label->setMinimumScaleFactor(0.9);
    EXPECT_EQ(label->scaleFactor(), 0.9);
    label->setNumberOfLines(0);
    label->setText(std::string(1 << 20, 'a'));
    const CGSize whole = label->fittingSize(100);
    label->setText(drawnPart(label->text()));
    EXPECT_EQ(label->fittingSize(100), whole) << "measured as far as it is drawn";

    const auto text = add<UITextView>(rootView(), {{0, 0}, {65, 10}});
    text->setFont(UIFont::systemFont(10));
    text->setText("01234 56789"); // both words need 60.5 of the 55 points between the paddings
    EXPECT_EQ(text->contentSize().height, 24 + 16);
    text->setLineFragmentPadding(0);
    EXPECT_EQ(text->contentSize().height, 12 + 16);
    text->setFrame({{0, 0}, {40, 10}});
    EXPECT_EQ(text->contentSize().height, 24 + 16) << "a new width counts at once";
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
    item->setTitle("Paid");
    EXPECT_EQ(bar->titleLabel()->text(), "Paid");
    bar->setItems({});
    item->setTitle("gone");
    EXPECT_EQ(bar->titleLabel()->text(), "");
    EXPECT_EQ(cancel->superview(), nullptr);
}

TEST_F(Content, APageWithoutADelegateMayLeaveAndTheSamePageAgainIsANewOne) {
    WKWebView page;
    WKNavigationActionPolicy decision = WKNavigationActionPolicy::cancel;
    page.decidePolicy({}, [&](WKNavigationActionPolicy policy) { decision = policy; });
    EXPECT_EQ(decision, WKNavigationActionPolicy::allow);
    page.loadHTMLString("<p>");
    page.loadHTMLString("<p>");
    EXPECT_EQ(page.loadCount(), 2);
}

TEST_F(Content, ANamedFontHasTheWeightOfItsFace) {
    const std::pair<const char*, double> rows[] = {{"Inter", 0},
                                                   {"Inter-Italic", 0},
                                                   {"Inter Extra Light", -0.8},
                                                   {"Inter-MediumItalic", 0.23},
                                                   {"Inter Bold", 0.4},
                                                   {"Inter-ExtraBold", 0.56},
                                                   {"Boldini-Oblique", 0}};
    auto& fonts = platform.script().fonts;
    fonts = {{"Inter", {}}, {"Boldini", {}}};
    for (const auto& [name, weight] : rows) {
        fonts[name[0] == 'I' ? 0 : 1].second.emplace_back(name);
        EXPECT_EQ(UIFont::make(name, 12)->weight(), weight) << name;
    }
}

} // namespace
} // namespace korvane
