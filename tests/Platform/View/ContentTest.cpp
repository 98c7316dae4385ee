#include "Platform/View/DrawnPart.h"
#include "Platform/View/UIButton.h"
#include "tests/Platform/View/ViewSupport.h"

namespace korvane {
namespace {

class Content : public ViewTest {};

TEST_F(Content, AButtonShowsTheLookOfItsState) {
    const auto button = add<UIButton>(rootView(), {{0, 0}, {100, 40}});
    const auto unchecked = UIImage::filled({9, 9}, UIColor::red()),
               checked = UIImage::filled({9, 9}, UIColor::black());
    button->setTitle("Go", ControlState::normal);
    button->setTitleColor(UIColor::blue(), ControlState::disabled);
    button->setImage(unchecked, ControlState::normal);
    button->setEnabled(false);
    EXPECT_EQ(button->titleLabel()->textColor(), UIColor::blue());
    EXPECT_EQ(button->titleLabel()->text(), "Go") << "the normal one, where there is none";
    EXPECT_EQ(button->imageView()->image(), unchecked);
    button->setImage(checked, ControlState::normal);
    EXPECT_EQ(button->imageView()->image(), checked);
}

TEST_F(Content, AButtonPlacesImageAndTitleByAlignmentAndInsets) {
    using enum UIControlContentHorizontalAlignment;
    const struct {
        UIControlContentHorizontalAlignment alignment;
        UIEdgeInsets titleInsets, imageInsets;
        double imageX, titleX, titleWidth;
    } rows[] = {
        // The image is 10 wide, the title 22 (four characters of 5.5), the button 100.
        {center, {0, 8, 0, 0}, {0, 0, 0, 8}, 30, 48, 22}, // shifts around the middle count by half
        {right, {}, {}, 68, 78, 22},
        {left, {0, -10, 0, 0}, {0, 90, 0, 0}, 90, 0, 22},
        {left, {0, 40, 0, 35}, {}, 0, 50, 15}, // a title has the room that insets leave
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
}

TEST_F(Content, LabelsShrinkToTheirWidthAndAreMeasuredAsFarAsTheyAreDrawn) {
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
    EXPECT_EQ(label->fittingSize(100), whole);
}

TEST_F(Content, ANamedFontHasTheWeightOfItsFace) {
    const std::pair<const char*, double> rows[] = {
        {"Inter-Italic", 0}, {"Inter Extra Light", -0.8}, {"Inter-MediumItalic", 0.23}, {"Inter Bold", 0.4}};
    auto& fonts = platform.script().fonts;
    fonts = {{"Inter", {}}};
    for (const auto& [name, weight] : rows) {
        fonts[0].second.emplace_back(name);
        EXPECT_EQ(UIFont::make(name, 12)->weight(), weight) << name;
    }
}

} // namespace
} // namespace korvane
