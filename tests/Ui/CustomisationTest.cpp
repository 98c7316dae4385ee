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

class Customised : public ScreenTest {
protected:
    Customised() { look = std::make_shared<UiCustomization>(); }

    /// A button by its name, also the one of the bar.
    static ChallengeButton& button(const ChallengeNativeViewController& screen, std::string_view name) {
        return dynamic_cast<ChallengeButton&>(
            name == "cancel" ? *screen.toolBar->topItem()->rightBarButtonItem()->customView()
                             : viewNamed(*screen.toolBar->superview(), name));
    }
};

TEST_F(Customised, EachButtonTakesTheLookOfItsTypeAndVerifyGoesOverSubmit) {
    using enum ButtonType;
    const std::tuple<const char*, ButtonType, UiType> rows[] = {
        {"cancel", CANCEL, UiType::TEXT},
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
    for (const auto& [name, type, kind] : rows) {
        SCOPED_TRACE(name);
        const auto own =
            std::make_shared<ButtonCustomization>(font, kRed, kBlue, ++radius, 3, kRed, kBlack, kBlue);
        look->setButtonCustomization(own, type);
        const auto screen = show(screenCRes(kind));
        ChallengeButton& shown = button(*screen, name);
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
    const RecordingLogger log;
    const UIFont own = button(*show(screenCRes(UiType::TEXT)), "submitButton").titleLabel()->font();
    const std::pair<FontValues, UIFont> rows[] = {
        {{}, own},
        {{{}, {}, 400}, UIFont::systemFont(14, 0.4)},
        {{"System", {}, 300}, UIFont::systemFont(14, 0.3)},
        {{"System", 20, 200}, UIFont::systemFont(20, 0.2)},
        {{"Nowhere", 20, {}}, UIFont::systemFont(20, own.weight())}};
    for (const auto& [values, font] : rows) {
        const auto submit = std::make_shared<ButtonCustomization>();
        submit->setTextFont(values);
        look->setButtonCustomization(submit, ButtonType::SUBMIT);
        EXPECT_EQ(button(*show(screenCRes(UiType::TEXT)), "submitButton").titleLabel()->font(), font);
    }
    EXPECT_THAT(log.lines(), Contains(EndsWith("font with name Nowhere")));
}

std::pair<UIFont, std::optional<UIColor>> fontAndColor(const UIView& view) {
    if (const auto* label = dynamic_cast<const UILabel*>(&view)) return {label->font(), label->textColor()};
    if (const auto* field = dynamic_cast<const UITextField*>(&view))
        return {field->font(), field->textColor()};
    if (const auto* text = dynamic_cast<const UITextView*>(&view)) return {text->font(), text->textColor()};
    const auto& button = dynamic_cast<const UIButton&>(view);
    return {button.titleLabel()->font(), button.titleColor(ControlState::normal)};
}

TEST_F(Customised, EveryTextTakesItsFontAndColour) {
    const FontValues font{"Courier", 31, {}};
    look->setLabelCustomization(std::make_shared<LabelCustomization>(FontValues{}, kRed, font, kRed));
    const auto box = std::make_shared<TextBoxCustomization>();
    box->setTextFont(font);
    box->textColor = kRed;
    look->setTextBoxCustomization(box);
    using enum CustTextViewType;
    for (const auto type : {WHITELISTING_TEXT, WHY_INFO_TEXT, EXT_INFO_TEXT, CHALLENGE_INFO_TEXT})
        look->setCustTextCustomization(std::make_shared<CustTextCustomization>(font, kRed, kBlue), type);
    const std::pair<const char*, UiType> rows[] = {{"challengeInfoHeader", UiType::OOB},
                                                   {"challengeInfoLabel", UiType::TEXT},
                                                   {"challengeInfoLabel", UiType::MULTI_SELECT},
                                                   {"otp", UiType::TEXT},
                                                   {"whitelistingInfo", UiType::OOB},
                                                   {"whyInfo", UiType::OOB},
                                                   {"extInfo", UiType::OOB},
                                                   {"challengeInfoText", UiType::OOB}};
    for (const auto& [view, kind] : rows)
        EXPECT_EQ(fontAndColor(viewNamed(*show(screenCRes(kind))->view(), view)),
                  std::pair(*UIFont::make("Courier", 31), std::optional(kRed)))
            << view;
    const FontValues weighted{"System", 31, 600};
    look->setLabelCustomization(std::make_shared<LabelCustomization>(FontValues{}, kRed, weighted, kRed));
    EXPECT_EQ(show(screenCRes(UiType::OOB))->challengeInfoHeader->font(), UIFont::systemFont(31, 0.6));
}

TEST_F(Customised, TheBarTheFieldAndTheScreenTakeEveryValueAndTheFieldsBorderStays) {
    const auto box = std::make_shared<TextBoxCustomization>();
    box->borderWidth = 3;
    box->cornerRadius = 9;
    box->backgroundColor = box->borderColor = box->cursorColor = kRed;
    look->setTextBoxCustomization(box);
    look->setToolbarCusomization(
        std::make_shared<ToolbarCustomization>(FontValues{"Courier", 20, {}}, kRed, kBlue, "Shop", "Leave"));
    look->setBackgroundCustomization(std::make_shared<BackgroundCustomization>());
    look->getBackgroundCustomization()->setBackgroundColor(kRed);
    const auto screen = show<ChallengeTextNativeViewController>(screenCRes(UiType::TEXT));
    const UILabel& title = *screen->toolBar->titleLabel();
    EXPECT_EQ(title.font(), UIFont::make("Courier", 20));
    EXPECT_EQ(title.textColor(), kRed);
    EXPECT_EQ(title.text(), "Shop");
    EXPECT_EQ(screen->toolBar->barTintColor(), kBlue);
    EXPECT_EQ(screen->vTopArea->backgroundColor(), kBlue);
    EXPECT_EQ(button(*screen, "cancel").title(ControlState::highlighted), "Leave");
    EXPECT_EQ(screen->view()->backgroundColor(), kRed);
    UITextField& field = *screen->otp.get();
    EXPECT_EQ(field.layer().borderWidth(), 3);
    EXPECT_EQ(field.layer().cornerRadius(), 9);
    EXPECT_EQ(field.backgroundColor(), kRed);
    EXPECT_EQ(field.tintColor(), kRed);
    field.layer().setBorderColor(std::nullopt);
    window->setTraits({.userInterfaceStyle = UIUserInterfaceStyle::dark});
    EXPECT_EQ(field.layer().borderColor(), kRed);
}

TEST_F(Customised, TheApplicationsImagesTakeTheirPlaces) {
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
    EXPECT_EQ(screen->arrowUp.get()->color(), UIColor::clear()) << "missing";
    EXPECT_EQ(screen->arrowDown.get()->name(), "velka_sdk_kb_ShiftOff");
    EXPECT_EQ(screen->arrowDown.get()->renderingMode(), UIImageRenderingMode::alwaysTemplate);
    EXPECT_EQ(screen->whyInfoButton->tintColor(), kRed);
    EXPECT_EQ(screen->extInfoButton->tintColor(), kRed);
}

TEST_F(Customised, InsetsPlaceASectionsArrowAndTitle) {
    using Inset = std::optional<double>;
    // the insets, where the arrow lies by the end or by the title, and where the title lies
    const std::tuple<Inset, Inset, Inset, Inset, double, double> rows[] = {
        {{}, {}, {}, 20, 0, 5}, {{}, 6, 4, {}, 10, -16}, {12, 6, {}, 32, 0, -20}};
    for (const auto& [rightImage, leftImage, leftTitle, fromEnd, fromTitle, titleLeft] : rows) {
        const auto section = std::make_shared<ButtonCustomization>();
        section->rightImageInset = rightImage;
        section->leftImageInset = leftImage;
        section->leftTitleInset = leftTitle;
        look->setButtonCustomization(section, ButtonType::CUST_WHY_INFO);
        const auto screen = show(screenCRes(UiType::OOB));
        const UIButton& shown = *screen->whyInfoButton.get();
        EXPECT_EQ(shown.imageEdgeInsets().left, fromEnd ? shown.bounds().size.width - *fromEnd
                                                        : shown.titleLabel()->frame().size.width + fromTitle);
        EXPECT_EQ(shown.titleEdgeInsets().left, titleLeft);
    }
}

} // namespace
} // namespace korvane
