#include "Ui/Screens/ChallengeSelectNativeViewController.h"
#include "tests/Ui/ScreenSupport.h"

namespace korvane {
namespace {

using testing::Contains;
using testing::EndsWith;

const UIColor kRed = UIColor::red();
const UIColor kBlue = UIColor::blue();
const UIColor kBlack = UIColor::black();

TEST(HexColour, SixDigitsGiveAColourAndOtherLengthsNone) {
    const std::pair<const char*, std::optional<UIColor>> rows[] = {
        {"#FF0000", kRed},      {" \n#ff0000 \r\n", kRed},   {"0000fF", kBlue},  {"#  00FF", kBlue},
        {"#F00", std::nullopt}, {"#FF0000FF", std::nullopt}, {"", std::nullopt}, {"zzzzzz", kBlack}};
    for (const auto& [text, color] : rows)
        EXPECT_EQ(hexStringToUIColor(text), color) << text;
}

TEST(CustomisationConstraints, AreKeptByTheirControl) {
    UiCustomizationConstraints all;
    for (int object = 0; object <= static_cast<int>(UiObject::nextButton); ++object)
        all.setConstraints(static_cast<UiObject>(object), {.top = object});
    for (int object = 0; object <= static_cast<int>(UiObject::nextButton); ++object)
        EXPECT_EQ(all.getConstraints(static_cast<UiObject>(object)).top, object);
}

class Customised : public ScreenTest {
protected:
    Customised() { look = std::make_shared<UiCustomization>(); }

    /// A button by its name, also the one of the bar.
    static ChallengeButton& button(const ChallengeNativeViewController& screen, std::string_view name) {
        return dynamic_cast<ChallengeButton&>(
            name == "cancel" ? *screen.toolBar->topItem()->rightBarButtonItem()->customView()
                             : viewNamed(*screen.viewIfLoaded(), name));
    }
};

TEST_F(Customised, EachButtonTakesTheLookOfItsTypeAndVerifyGoesOverSubmit) {
    struct Row {
        const char* button;
        ButtonType type;
        UiType kind;
    };
    using enum ButtonType;
    const Row rows[] = {{"cancel", CANCEL, UiType::TEXT},
                        {"submitButton", SUBMIT, UiType::TEXT},
                        {"submitButton", VERIFY, UiType::TEXT}, // over the one before
                        {"resendButton", RESEND, UiType::TEXT},
                        {"nextButton", NEXT, UiType::SINGLE_SELECT},
                        {"nextButton", NEXT, UiType::MULTI_SELECT},
                        {"continueButton", CONTINUE, UiType::OOB},
                        {"whyInfoButton", CUST_WHY_INFO, UiType::OOB},
                        {"extInfoButton", CUST_EXT_INFO, UiType::OOB}};
    const FontValues font{"Courier", 31, 300};
    int radius = 0;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.button);
        const auto own =
            std::make_shared<ButtonCustomization>(font, kRed, kBlue, ++radius, 3, kRed, kBlack, kBlue);
        look->setButtonCustomization(own, row.type);
        const auto screen = show(screenCRes(row.kind));
        ChallengeButton& shown = button(*screen, row.button);
        EXPECT_EQ(shown.titleLabel()->font(), UIFont::make("Courier", 31)->withWeight(0.3));
        EXPECT_EQ(shown.cornerRadius(), radius);
        EXPECT_EQ(shown.borderWidth(), 3);
        EXPECT_EQ(shown.layer().borderColor(), kRed);
        for (const bool isDown : {true, false, true, false}) // a short tap shows the look for its whole time
            shown.setHighlighted(isDown);
        for (const bool isPressed : {true, false}) {
            platform.runFor(Seconds(isPressed ? 0.19 : 0.02));
            EXPECT_EQ(shown.backgroundColor(), isPressed ? kBlack : kBlue);
            EXPECT_EQ(shown.titleColor(ControlState::normal), isPressed ? kBlue : kRed);
        }
    }
}

TEST_F(Customised, AButtonsFontFallsBackToTheSystemsAndKeepsTheWeight) {
    const UIFont own = button(*show(screenCRes(UiType::TEXT)), "submitButton").titleLabel()->font();
    const std::pair<FontValues, UIFont> rows[] = {
        {{}, own},
        {{{}, {}, 400}, UIFont::systemFont(14, 0.4)},
        {{"System", 20, 200}, UIFont::systemFont(20, 0.2)},
        {{"Nowhere", 20, {}}, UIFont::systemFont(20, own.weight())}};
    for (const auto& [values, font] : rows) {
        const auto submit = std::make_shared<ButtonCustomization>();
        submit->setTextFont(values);
        look->setButtonCustomization(submit, ButtonType::SUBMIT);
        EXPECT_EQ(button(*show(screenCRes(UiType::TEXT)), "submitButton").titleLabel()->font(), font);
    }
}

TEST_F(Customised, TheBarTakesFontColoursAndTextsAndTheScreenItsBackground) {
    look->setBackgroundCustomization(std::make_shared<BackgroundCustomization>());
    look->getBackgroundCustomization()->setBackgroundColor(kRed);
    const RecordingLogger log;
    for (const char* name : {"Courier", "Nowhere"}) {
        const FontValues values{name, 20, {}};
        look->setToolbarCusomization(
            std::make_shared<ToolbarCustomization>(values, kRed, kBlue, "Shop", "Leave"));
        const auto screen = show(screenCRes(UiType::TEXT));
        const UILabel& title = *screen->toolBar->titleLabel();
        EXPECT_EQ(title.font(), UIFont::make(name, 20).value_or(UIFont::systemFont(20)));
        EXPECT_EQ(title.textColor(), kRed);
        EXPECT_EQ(title.text(), "Shop");
        EXPECT_EQ(screen->toolBar->barTintColor(), kBlue);
        EXPECT_EQ(screen->vTopArea->backgroundColor(), kBlue);
        EXPECT_EQ(button(*screen, "cancel").title(ControlState::highlighted), "Leave");
        EXPECT_EQ(screen->view()->backgroundColor(), kRed);
    }
    EXPECT_THAT(log.lines(), Contains(EndsWith("Can not find title font with name Nowhere")));
}

/// Red text in one font, wherever the application can have it.
std::shared_ptr<UiCustomization> textsIn(const FontValues& font) {
    auto all = std::make_shared<UiCustomization>();
    all->setLabelCustomization(std::make_shared<LabelCustomization>(FontValues{}, kRed, font, kRed));
    all->setTextBoxCustomization(std::make_shared<TextBoxCustomization>());
    all->getTextBoxCustomization()->setTextFont(font);
    all->getTextBoxCustomization()->textColor = kRed;
    using enum CustTextViewType;
    for (const auto type : {WHITELISTING_TEXT, WHY_INFO_TEXT, EXT_INFO_TEXT, CHALLENGE_INFO_TEXT})
        all->setCustTextCustomization(std::make_shared<CustTextCustomization>(font, kRed, kBlue), type);
    return all;
}

std::pair<UIFont, std::optional<UIColor>> fontAndColor(const UIView& view) {
    if (const auto* label = dynamic_cast<const UILabel*>(&view)) return {label->font(), label->textColor()};
    if (const auto* field = dynamic_cast<const UITextField*>(&view))
        return {field->font(), field->textColor()};
    if (const auto* text = dynamic_cast<const UITextView*>(&view)) return {text->font(), text->textColor()};
    const auto& button = dynamic_cast<const UIButton&>(view);
    return {button.titleLabel()->font(), button.titleColor(ControlState::normal)};
}

TEST_F(Customised, OneFontRuleHoldsForEveryTextAndItsColourReachesIt) {
    struct Row {
        const char* view;
        UiType kind;
        std::string subject; // in the log
        bool hasWeight = true;
    };
    const Row rows[] = {{"challengeInfoHeader", UiType::OOB, "challenge info header label"},
                        {"challengeInfoLabel", UiType::TEXT, "text challengeInfoLabel label"},
                        {"challengeInfoLabel", UiType::MULTI_SELECT, "multiselect challengeInfoLabel label"},
                        {"otp", UiType::TEXT, "otp text text field"},
                        {"whitelistingInfo", UiType::OOB, "whitelistingTextCustomization label", false},
                        {"whyInfo", UiType::OOB, "whyInfoTextCustomization text field"},
                        {"extInfo", UiType::OOB, "extInfoTextCustomization text field"},
                        {"challengeInfoText", UiType::OOB, "otp text text field"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.subject);
        const RecordingLogger log;
        const auto shown = [&] {
            return fontAndColor(viewNamed(*show(screenCRes(row.kind))->view(), row.view));
        };
        look = nullptr;
        const UIFont own = shown().first;
        const std::pair<FontValues, UIFont> fonts[] = {
            {{{}, 31, 300}, own},
            {{"System", 31, {}}, UIFont::systemFont(31, row.hasWeight ? own.weight() : 0)},
            {{"System", {}, 300}, UIFont::systemFont(14, row.hasWeight ? 0.3 : 0)},
            {{"Courier", 31, 300}, *UIFont::make("Courier", 31)},
            {{"Nowhere", 31, {}}, own}};
        for (const auto& [values, font] : fonts) {
            look = textsIn(values);
            EXPECT_EQ(shown(), std::pair(font, std::optional(kRed)));
        }
        EXPECT_THAT(log.lines(),
                    Contains(EndsWith("Can not find " + row.subject + " font with name Nowhere")));
    }
}

TEST_F(Customised, TheFieldTakesEveryValueOfItsBoxAndItsBorderAgainWhenTheTraitsChange) {
    const auto box = std::make_shared<TextBoxCustomization>();
    box->borderWidth = 3;
    box->cornerRadius = 9;
    box->backgroundColor = box->borderColor = box->cursorColor = kRed;
    look->setTextBoxCustomization(box);
    const auto screen = show<ChallengeTextNativeViewController>(screenCRes(UiType::TEXT));
    UITextField& field = *screen->otp.get();
    EXPECT_EQ(field.layer().borderWidth(), 3);
    EXPECT_EQ(field.layer().cornerRadius(), 9);
    EXPECT_EQ(field.backgroundColor(), kRed);
    EXPECT_EQ(field.tintColor(), kRed);
    field.layer().setBorderColor(std::nullopt);
    window->setTraits({.userInterfaceStyle = UIUserInterfaceStyle::dark});
    EXPECT_EQ(field.layer().borderColor(), kRed);
}

TEST_F(Customised, EachImageTakesTheApplicationsPlaceAndAMissingArrowIsEmpty) {
    const std::shared_ptr<const NSBundle> bundle = NSBundle::bundleWithPath(
        std::string(KORVANE_MAIN_BUNDLE) + "/Frameworks/Korvane.framework/KorvaneResources.bundle");
    using enum CustImageType;
    const std::pair<CustImageType, const char*> rows[] = {
        {WARNING, "velka_sdk_kb_Backspace"},
        {ARROW_UP, "Nowhere"},
        {ARROW_DOWN, "velka_sdk_kb_ShiftOff"},
        {CHECKBOX_WHITELISTING_CHECKED, "CheckedCheckbox"},
        {CHECKBOX_WHITELISTING_UNCHECKED, "UncheckedCheckbox"}};
    for (const auto& [type, name] : rows)
        look->setCustImageCustomization(
            std::make_shared<CustImageCustomization>(CustImageCustomization{bundle, name, kRed}), type);
    const auto screen = show(screenCRes(UiType::OOB));
    EXPECT_EQ(screen->warningImage->image()->name(), "velka_sdk_kb_Backspace");
    EXPECT_EQ(screen->checkedWhitelistingCheckBox.get()->name(), "CheckedCheckbox");
    EXPECT_EQ(screen->uncheckedWhitelistingCheckBox.get()->name(), "UncheckedCheckbox");
    EXPECT_EQ(screen->arrowUp.get()->color(), UIColor::clear());
    EXPECT_EQ(screen->arrowDown.get()->name(), "velka_sdk_kb_ShiftOff");
    EXPECT_EQ(screen->arrowDown.get()->renderingMode(), UIImageRenderingMode::alwaysTemplate);
    EXPECT_EQ(screen->whyInfoButton->tintColor(), kRed);
    EXPECT_EQ(screen->extInfoButton->tintColor(), kRed);
}

TEST_F(Customised, InsetsPlaceASectionsArrowAndTitle) {
    struct Row {
        std::optional<double> rightImage, leftImage, leftTitle;
        double beforeRight, behindTitle; // where the image lies, by the one that is not 0
        double titleLeft;
    };
    const Row rows[] = {{{}, {}, {}, 20, 0, 5},
                        {12, {}, {}, 32, 0, 5},
                        {{}, 6, {}, 0, 6, -20},
                        {{}, 6, 4, 0, 10, -16},
                        {12, 6, {}, 32, 0, -20}};
    for (const Row& row : rows) {
        SCOPED_TRACE(&row - rows);
        const auto section = std::make_shared<ButtonCustomization>();
        section->rightImageInset = row.rightImage;
        section->leftImageInset = row.leftImage;
        section->leftTitleInset = row.leftTitle;
        look->setButtonCustomization(section, ButtonType::CUST_WHY_INFO);
        const auto screen = show(screenCRes(UiType::OOB));
        const UIButton& shown = *screen->whyInfoButton.get();
        const double title = shown.titleLabel()->frame().size.width;
        EXPECT_EQ(shown.imageEdgeInsets().left, row.behindTitle > 0
                                                    ? title + row.behindTitle
                                                    : shown.bounds().size.width - row.beforeRight);
        EXPECT_EQ(shown.titleEdgeInsets().left, row.titleLeft);
    }
}

} // namespace
} // namespace korvane
