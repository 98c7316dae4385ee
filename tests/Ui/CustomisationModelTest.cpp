#include "Ui/Customisation/UiCustomization.h"
#include "Ui/Customisation/UiCustomizationConstraints.h"

#include <gtest/gtest.h>

namespace korvane {
namespace {

const UIColor kRed = UIColor::red();
const UIColor kBlue = UIColor::blue();
const UIColor kBlack = UIColor::black();

TEST(HexColour, SixDigitsGiveAColourAndOtherLengthsNone) {
    struct Row {
        const char* text;
        std::optional<UIColor> color;
    };
    const Row rows[] = {{"#FF0000", kRed},  {" \n#ff0000 \r\n", kRed}, {"0000fF", kBlue},
                        {"#  00FF", kBlue}, {"#F00", std::nullopt},    {"#FF0000FF", std::nullopt},
                        {"", std::nullopt}, {"zzzzzz", kBlack}};
    for (const Row& row : rows)
        EXPECT_EQ(hexStringToUIColor(row.text), row.color) << row.text;
}

TEST(CustomisationModel, GettersTellDefaultsAndTheFieldsStayAbsent) {
    const ButtonCustomization button;
    EXPECT_EQ(button.getTextFontName(), "System");
    EXPECT_EQ(button.textFontName, std::nullopt);
    EXPECT_EQ(button.getCornerRadius(), 0);
    EXPECT_EQ(ToolbarCustomization().getHeaderText(), "");
    EXPECT_TRUE(ToolbarCustomization({}, kRed, kBlue, "Shop", "Leave", true).isHideShadowImage);
    EXPECT_EQ(TextBoxCustomization().getBorderWidth(), 0);
    const CustWarning warning(false, true, std::nullopt, std::nullopt, std::nullopt);
    EXPECT_EQ(warning.labelCustomization->textColor, kBlack);
    EXPECT_EQ(warning.topConstraint, 5);
    EXPECT_FALSE(warning.isShowIndicator);
}

TEST(CustomisationModel, ACopyHasTheLookWithoutTheReplacements) {
    CustTextCustomization text({"Courier", 12, 300}, kRed, kBlue, {{{"c", "d"}}});
    text.setCustomText("a", "b");
    EXPECT_EQ(text.getCustomText("c"), "d");
    EXPECT_EQ(text.getCustomText("a"), "b");
    EXPECT_EQ(text.getCustomText("A"), std::nullopt);
    const auto copy = text.copy();
    EXPECT_EQ(copy->textFont(), text.textFont());
    EXPECT_EQ(copy->textColor, kRed);
    EXPECT_EQ(copy->backgroundColor, kBlue);
    EXPECT_EQ(copy->getCustomText("a"), std::nullopt);
}

TEST(CustomisationModel, ConstraintsAreKeptByTheirControl) {
    UiCustomizationConstraints all;
    for (int object = 0; object <= static_cast<int>(UiObject::nextButton); ++object)
        all.setConstraints(static_cast<UiObject>(object), {.top = object});
    for (int object = 0; object <= static_cast<int>(UiObject::nextButton); ++object)
        EXPECT_EQ(all.getConstraints(static_cast<UiObject>(object)).top, object);
    EXPECT_EQ(all.whitelistingInfo.top, static_cast<int>(UiObject::whitelistingInfo));
    EXPECT_EQ(all.whyInfoButton.top, static_cast<int>(UiObject::whyInfoButton));
}

} // namespace
} // namespace korvane
