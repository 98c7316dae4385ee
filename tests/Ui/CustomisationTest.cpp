#include "Ui/Screens/ChallengeOobNativeViewController.h"
#include "Ui/Screens/ChallengeSelectNativeViewController.h"
#include "tests/Ui/ScreenSupport.h"

#include <functional>
#include <type_traits>

namespace korvane {
namespace {

using testing::Contains;
using testing::EndsWith;
using testing::Not;

using Text = ChallengeTextNativeViewController;

const UIColor kRed = UIColor::red();
const UIColor kBlue = UIColor::blue();
const UIColor kBlack = UIColor::black();

class Customised : public ScreenTest {
protected:
    Customised() { look = std::make_shared<UiCustomization>(); }

    std::shared_ptr<Text> text() { return show<Text>(screenCRes(UiType::TEXT)); }

    /// A look of which every field differs from the storyboard's.
    static std::shared_ptr<ButtonCustomization> buttonLook(const UIColor& color) {
        return std::make_shared<ButtonCustomization>(FontValues{"Courier", 31, 300}, color, kBlue, 7, 3, kRed,
                                                     kBlack, kBlue);
    }
    static ChallengeButton& cancelOf(ChallengeViewController& screen) {
        return dynamic_cast<ChallengeButton&>(*screen.toolBar->topItem()->rightBarButtonItem()->customView());
    }
};

void expectButtonLook(const ChallengeButton& button, const UIColor& color) {
    EXPECT_EQ(button.titleLabel()->font(), UIFont::make("Courier", 31)->withWeight(0.3));
    EXPECT_EQ(button.titleColor(ControlState::normal), color);
    EXPECT_EQ(button.customTextColor, color);
    EXPECT_EQ(button.backgroundColor(), kBlue);
    EXPECT_EQ(button.customBackgroundColor, kBlue);
    EXPECT_EQ(button.customHighlitedColor, kBlack);
    EXPECT_EQ(button.customHighlitedTextColor, kBlue);
    EXPECT_EQ(button.cornerRadius(), 7);
    EXPECT_EQ(button.borderWidth(), 3);
    EXPECT_EQ(button.layer().borderColor(), kRed);
}

TEST_F(Customised, EachButtonTypeReachesItsButton) {
    struct Row {
        const char* name;
        ButtonType type;
        UiType kind;
        std::function<ChallengeButton&(ChallengeNativeViewController&)> button;
    };
    const auto ofText = [](UIOutlet<ChallengeButton> Text::*outlet) {
        return [outlet](ChallengeNativeViewController& s) -> ChallengeButton& {
            return *(dynamic_cast<Text&>(s).*outlet).get();
        };
    };
    const auto next = [](ChallengeNativeViewController& s) -> ChallengeButton& {
        return *dynamic_cast<ChallengeSelectNativeViewController&>(s).nextButton.get();
    };
    const std::vector<Row> rows{
        {"cancel", ButtonType::CANCEL, UiType::TEXT,
         [](ChallengeNativeViewController& s) -> ChallengeButton& { return cancelOf(s); }},
        {"submit", ButtonType::SUBMIT, UiType::TEXT, ofText(&Text::submitButton)},
        {"verify", ButtonType::VERIFY, UiType::TEXT, ofText(&Text::submitButton)},
        {"resend", ButtonType::RESEND, UiType::TEXT, ofText(&Text::resendButton)},
        {"next, single", ButtonType::NEXT, UiType::SINGLE_SELECT, next},
        {"next, multi", ButtonType::NEXT, UiType::MULTI_SELECT, next},
        {"continue", ButtonType::CONTINUE, UiType::OOB,
         [](ChallengeNativeViewController& s) -> ChallengeButton& {
             return *dynamic_cast<ChallengeOobNativeViewController&>(s).continueButton.get();
         }},
        {"why", ButtonType::CUST_WHY_INFO, UiType::OOB,
         [](ChallengeNativeViewController& s) -> ChallengeButton& { return *s.whyInfoButton.get(); }},
        {"expand", ButtonType::CUST_EXT_INFO, UiType::OOB,
         [](ChallengeNativeViewController& s) -> ChallengeButton& { return *s.extInfoButton.get(); }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        look = std::make_shared<UiCustomization>();
        look->setButtonCustomization(buttonLook(kRed), row.type);
        for (const Orientation orientation : {Orientation::PORTRAIT, Orientation::LANDSCAPE})
            expectButtonLook(row.button(*show(screenCRes(row.kind), orientation)), kRed);
    }
}

TEST_F(Customised, VerifyGoesOverSubmitAndLeavesWhatItDoesNotSay) {
    look->setButtonCustomization(buttonLook(kRed), ButtonType::SUBMIT);
    auto verify = std::make_shared<ButtonCustomization>();
    verify->textColor = kBlack;
    look->setButtonCustomization(verify, ButtonType::VERIFY);
    const auto screen = text();
    EXPECT_EQ(screen->submitButton->titleColor(ControlState::normal), kBlack);
    EXPECT_EQ(screen->submitButton->titleLabel()->font(), UIFont::make("Courier", 31)->withWeight(0.3));
    EXPECT_EQ(screen->submitButton->backgroundColor(), kBlue);
    EXPECT_EQ(screen->submitButton->cornerRadius(), 7);
}

TEST_F(Customised, AButtonsFontFallsBackToTheSystemsAndKeepsTheWeight) {
    struct Row {
        const char* name;
        FontValues values;
        UIFont font;
    };
    const UIFont ownFont = text()->submitButton->titleLabel()->font();
    const double own = ownFont.weight();
    const std::vector<Row> rows{
        {"nothing said", FontValues(), ownFont},
        {"size alone", {.size = 20}, UIFont::systemFont(20, own)},
        {"weight alone", {.weight = 400}, UIFont::systemFont(14, 0.4)},
        {"the system's by name", {"System", 20, 200}, UIFont::systemFont(20, 0.2)},
        {"no such font", {"Nowhere", 20, std::nullopt}, UIFont::systemFont(20, own)},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        auto button =
            std::make_shared<ButtonCustomization>(row.values, std::nullopt, std::nullopt, std::nullopt);
        look->setButtonCustomization(button, ButtonType::SUBMIT);
        EXPECT_EQ(text()->submitButton->titleLabel()->font(), row.font);
    }
}

TEST_F(Customised, TheBarTakesFontColoursAndTexts) {
    struct Row {
        const char* name; // null for none
        std::optional<int> size;
        std::optional<UIFont> shown;
        const char* logged = nullptr;
    };
    const Row rows[] = {
        {"Courier", 20, UIFont::make("Courier", 20)},
        {"System", std::nullopt, UIFont::systemFont(14)},
        {"Nowhere", 20, UIFont::systemFont(20), "Can not find title font with name Nowhere"},
        {nullptr, 20, std::nullopt},
    };
    const UIFont own = text()->toolBar->titleLabel()->font();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name ? row.name : "without a name");
        const RecordingLogger log;
        FontValues values;
        if (row.name) values.name = row.name;
        values.size = row.size;
        look->setToolbarCusomization(
            std::make_shared<ToolbarCustomization>(values, kRed, kBlue, "Shop", "Leave"));
        const auto screen = text();
        EXPECT_EQ(screen->toolBar->titleLabel()->font(), row.shown.value_or(own));
        EXPECT_EQ(screen->toolBar->titleTextAttributes().foregroundColor, kRed);
        EXPECT_EQ(screen->toolBar->barTintColor(), kBlue);
        EXPECT_FALSE(screen->toolBar->isTranslucent());
        EXPECT_EQ(screen->vTopArea->backgroundColor(), kBlue);
        EXPECT_EQ(screen->toolBar->titleLabel()->text(), "Shop");
        EXPECT_EQ(cancelOf(*screen).title(ControlState::normal), "Leave");
        EXPECT_EQ(cancelOf(*screen).title(ControlState::highlighted), "Leave");
        if (row.logged) {
            EXPECT_THAT(log.lines(), Contains(EndsWith(row.logged)));
        }
    }
}

TEST_F(Customised, TheBackgroundIsTheScreens) {
    look->setBackgroundCustomization(std::make_shared<BackgroundCustomization>());
    EXPECT_NE(text()->view()->backgroundColor(), std::nullopt) << "the storyboard's own stays";
    look->getBackgroundCustomization()->setBackgroundColor(kRed);
    EXPECT_EQ(text()->view()->backgroundColor(), kRed);
}

/// The controls that share one font rule, and how each is given its values.
struct FontSite {
    const char* name;
    UiType kind;
    std::function<void(UiCustomization&, const FontValues&)> give;
    std::function<UIFont(ChallengeNativeViewController&)> font;
    const char* subject;
    bool hasWeight = true;
};

void giveLabel(UiCustomization& all, const FontValues& font) {
    all.setLabelCustomization(std::make_shared<LabelCustomization>(FontValues{}, kRed, font, kBlue));
}

std::function<void(UiCustomization&, const FontValues&)> giveText(CustTextViewType type) {
    return [type](UiCustomization& all, const FontValues& font) {
        all.setCustTextCustomization(std::make_shared<CustTextCustomization>(font, kRed, kBlue), type);
    };
}

const std::vector<FontSite>& fontSites() {
    using Screen = ChallengeNativeViewController;
    static const std::vector<FontSite> sites{
        {"header", UiType::TEXT, giveLabel, [](Screen& s) { return s.challengeInfoHeader->font(); },
         "challenge info header label"},
        {"label of the text screen", UiType::TEXT, giveLabel,
         [](Screen& s) { return s.challengeInfoLabel->font(); }, "text challengeInfoLabel label"},
        {"label of multiple options", UiType::MULTI_SELECT, giveLabel,
         [](Screen& s) { return s.challengeInfoLabel->font(); }, "multiselect challengeInfoLabel label"},
        {"whitelisting", UiType::OOB, giveText(CustTextViewType::WHITELISTING_TEXT),
         [](Screen& s) { return s.whitelistingInfo->titleLabel()->font(); },
         "whitelistingTextCustomization label", false},
        {"field", UiType::TEXT,
         [](UiCustomization& all, const FontValues& font) {
             auto box = std::make_shared<TextBoxCustomization>();
             box->setTextFont(font);
             all.setTextBoxCustomization(box);
         },
         [](Screen& s) { return dynamic_cast<Text&>(s).otp->font(); }, "otp text text field"},
        {"why", UiType::OOB, giveText(CustTextViewType::WHY_INFO_TEXT),
         [](Screen& s) { return s.whyInfo->font(); }, "whyInfoTextCustomization text field"},
        {"expand", UiType::OOB, giveText(CustTextViewType::EXT_INFO_TEXT),
         [](Screen& s) { return s.extInfo->font(); }, "extInfoTextCustomization text field"},
        {"challenge text", UiType::OOB, giveText(CustTextViewType::CHALLENGE_INFO_TEXT),
         [](Screen& s) { return s.challengeInfoText->font(); }, "otp text text field"},
    };
    return sites;
}

TEST_F(Customised, OneFontRuleHoldsForEveryText) {
    for (const FontSite& site : fontSites()) {
        SCOPED_TRACE(site.name);
        look = nullptr;
        const auto shownWith = [&](const FontValues& values) {
            look = std::make_shared<UiCustomization>();
            site.give(*look, values);
            return site.font(*show(screenCRes(site.kind)));
        };
        const RecordingLogger log;
        const UIFont own = site.font(*show(screenCRes(site.kind)));
        const double weight = site.hasWeight ? own.weight() : 0;
        EXPECT_EQ(shownWith({std::nullopt, 31, 300}), own) << "without a name nothing changes";
        EXPECT_EQ(shownWith({"System", 31, std::nullopt}), UIFont::systemFont(31, weight));
        EXPECT_EQ(shownWith({"System", std::nullopt, 300}), UIFont::systemFont(14, site.hasWeight ? 0.3 : 0));
        EXPECT_EQ(shownWith({"Courier", 31, 300}), UIFont::make("Courier", 31));
        EXPECT_EQ(shownWith({"Courier", std::nullopt, std::nullopt}), UIFont::make("Courier", 14));
        const std::string missing = "Can not find " + std::string(site.subject) + " font with name Nowhere";
        EXPECT_THAT(log.lines(), Not(Contains(EndsWith(missing))));
        EXPECT_EQ(shownWith({"Nowhere", 31, std::nullopt}), own) << "a missing font is a line of the log";
        EXPECT_THAT(log.lines(), Contains(EndsWith(missing)));
    }
}

TEST_F(Customised, ColoursOfTextsReachTheirControls) {
    giveLabel(*look, {});
    for (const auto type : {CustTextViewType::WHY_INFO_TEXT, CustTextViewType::EXT_INFO_TEXT,
                            CustTextViewType::WHITELISTING_TEXT, CustTextViewType::CHALLENGE_INFO_TEXT})
        giveText(type)(*look, {});
    const auto screen = text();
    EXPECT_EQ(screen->challengeInfoHeader->textColor(), kBlue);
    EXPECT_EQ(screen->challengeInfoLabel->textColor(), kRed);
    EXPECT_EQ(screen->whitelistingInfo->titleColor(ControlState::normal), kRed);
    for (const auto* view : {&screen->whyInfo, &screen->extInfo, &screen->challengeInfoText}) {
        EXPECT_EQ((*view)->textColor(), kRed);
        EXPECT_EQ((*view)->backgroundColor(), kBlue);
    }
    const auto oob = show(screenCRes(UiType::OOB));
    EXPECT_NE(oob->challengeInfoLabel->textColor(), kRed) << "that screen does not take the label's look";
}

TEST_F(Customised, TheFieldTakesEveryValueOfItsBox) {
    auto box = std::make_shared<TextBoxCustomization>();
    box->textColor = kRed;
    box->borderWidth = 3;
    box->borderColor = kBlue;
    box->cornerRadius = 9;
    box->backgroundColor = kBlack;
    box->cursorColor = kRed;
    look->setTextBoxCustomization(box);
    const auto screen = text();
    const UITextField& field = *screen->otp.get();
    EXPECT_EQ(field.borderStyle(), UITextBorderStyle::none);
    EXPECT_EQ(field.textColor(), kRed);
    EXPECT_EQ(field.layer().borderWidth(), 3);
    EXPECT_EQ(field.layer().borderColor(), kBlue);
    EXPECT_EQ(field.layer().cornerRadius(), 9);
    EXPECT_EQ(field.layer().shadowRadius(), 9);
    EXPECT_EQ(field.backgroundColor(), kBlack);
    EXPECT_EQ(field.tintColor(), kRed);
}

// Images and insets.

class CustomisedImages : public Customised {
protected:
    void give(CustImageType type, const std::string& name, std::optional<UIColor> tint = std::nullopt) {
        look->setCustImageCustomization(
            std::make_shared<CustImageCustomization>(CustImageCustomization{bundle, name, tint}), type);
    }
    std::shared_ptr<const NSBundle> bundle = NSBundle::bundleWithPath(
        std::string(KORVANE_MAIN_BUNDLE) + "/Frameworks/Korvane.framework/KorvaneResources.bundle");
};

TEST_F(CustomisedImages, EachImageTakesTheApplicationsPlace) {
    give(CustImageType::WARNING, "velka_sdk_kb_Backspace");
    give(CustImageType::ARROW_UP, "velka_sdk_kb_ShiftOn");
    give(CustImageType::ARROW_DOWN, "velka_sdk_kb_ShiftOff");
    give(CustImageType::CHECKBOX_WHITELISTING_CHECKED, "CheckedCheckbox");
    give(CustImageType::CHECKBOX_WHITELISTING_UNCHECKED, "UncheckedCheckbox");
    CRes cRes = screenCRes(UiType::OOB);
    cRes.whitelistingInfoText = "Trust this shop?";
    const auto screen = show(cRes);
    EXPECT_EQ(screen->warningImage->image()->name(), "velka_sdk_kb_Backspace");
    EXPECT_EQ(screen->extInfoButton->image(ControlState::normal)->name(), "velka_sdk_kb_ShiftOff");
    tap(*screen->extInfoButton.get());
    EXPECT_EQ(screen->extInfoButton->image(ControlState::normal)->name(), "velka_sdk_kb_ShiftOn");
    EXPECT_EQ(screen->whitelistingInfo->image(ControlState::normal)->name(), "UncheckedCheckbox");
    tap(*screen->whitelistingInfo.get());
    EXPECT_EQ(screen->whitelistingInfo->image(ControlState::normal)->name(), "CheckedCheckbox");
}

TEST_F(CustomisedImages, AnArrowsTintColoursBothButtonsAndAMissingArrowIsEmpty) {
    give(CustImageType::ARROW_DOWN, "ArrowDown", kRed);
    give(CustImageType::ARROW_UP, "Nowhere");
    const auto screen = show(screenCRes(UiType::OOB));
    EXPECT_EQ(screen->whyInfoButton->tintColor(), kRed);
    EXPECT_EQ(screen->extInfoButton->tintColor(), kRed);
    EXPECT_EQ(screen->arrowDown.get()->renderingMode(), UIImageRenderingMode::alwaysTemplate);
    EXPECT_EQ(screen->arrowUp.get()->size(), (CGSize{20, 20}));
    EXPECT_EQ(screen->arrowUp.get()->color(), UIColor::clear());
}

TEST_F(Customised, InsetsPlaceASectionsArrowAndTitle) {
    struct Row {
        const char* name;
        std::optional<double> rightImage, leftImage, leftTitle;
        std::function<double(double button, double title)> imageLeft;
        std::optional<double> titleLeft;
    };
    const auto atRight = [](double inset) {
        return [inset](double button, double) { return button - 20 - inset; };
    };
    const auto behindTitle = [](double inset) {
        return [inset](double, double title) { return title + inset; };
    };
    const std::vector<Row> rows{
        {"nothing said", {}, {}, {}, atRight(0), std::nullopt},
        {"from the right", 12, {}, {}, atRight(12), std::nullopt},
        {"behind the title", {}, 6, {}, behindTitle(6), -20},
        {"behind the shifted title", {}, 6, 4, behindTitle(10), -16},
        {"both: the right one places the image", 12, 6, {}, atRight(12), -20},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const auto section = std::make_shared<ButtonCustomization>(
            FontValues{}, std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt, std::nullopt,
            std::nullopt, row.rightImage, row.leftImage, row.leftTitle);
        look->setButtonCustomization(section, ButtonType::CUST_WHY_INFO);
        const auto screen = show(screenCRes(UiType::OOB));
        const UIButton& button = *screen->whyInfoButton.get();
        const double title = button.titleLabel()->frame().size.width;
        EXPECT_EQ(button.imageEdgeInsets().left, row.imageLeft(button.bounds().size.width, title));
        EXPECT_EQ(button.titleEdgeInsets().left, row.titleLeft.value_or(5));
    }
}

} // namespace
} // namespace korvane
