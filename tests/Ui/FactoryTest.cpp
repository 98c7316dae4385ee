#include "tests/Ui/ScreenSupport.h"
#include "tests/support/Failures.h"

namespace korvane {
namespace {

using testing::Contains;
using testing::HasSubstr;

class Factory : public ScreenTest {
protected:
    std::shared_ptr<ChallengeNativeViewController> made(const CRes& cRes,
                                                        Orientation orientation = Orientation::PORTRAIT) {
        return std::dynamic_pointer_cast<ChallengeNativeViewController>(
            factory().getViewControllerContainer(cRes).controllersMap().at(orientation));
    }
};

TEST_F(Factory, PagesThatAreNoTextFailAndForgeNoLogLine) {
    const std::string undecodable = "Can not encode cRes.acsHTML from base64url to base64.",
                      noText = "Can not create HTML string from base64 encoded cRes.acsHTML";
    for (const auto& [page, text, logged] :
         {std::tuple("PGI*\nforged", undecodable, undecodable + "\nPGI*\\u000aforged"),
          {"_w", noText + ".", noText}}) {
        const RecordingLogger log;
        CRes cRes = screenCRes(UiType::HTML_OTHER);
        cRes.acsHTML = page;
        EXPECT_RAISES_SAYING(SdkErrorCase::SDKRuntimeException, text, made(cRes));
        EXPECT_THAT(log.lines(), Contains(HasSubstr(logged)));
    }
}

TEST_F(Factory, WhatAResponseHasIsReadAndTheRestIsHiddenOnBothTwins) {
    const std::tuple<std::optional<std::string> CRes::*, const char*, const char*> rows[] = {
        // what is missing, the view that shows it, what is hidden then
        {&CRes::challengeInfoHeader, "challengeInfoHeader", nullptr},
        {&CRes::challengeInfoText, "challengeInfoText", nullptr},
        {&CRes::challengeInfoLabel, "challengeInfoLabel", "challengeInfoLabel"},
        {&CRes::submitAuthenticationLabel, "submitButton", nullptr},
        {&CRes::resendInformationLabel, "resendButton", "resendButton"},
        {&CRes::whitelistingInfoText, "whitelistingInfo", "whitelistingInfo"},
        {&CRes::whyInfoLabel, "whyInfoButton", "whyInfoButton"},
        {&CRes::whyInfoText, "whyInfo", "whyInfoButton"},
        {&CRes::expandInfoLabel, "extInfoButton", "extInfoButton"},
        {&CRes::expandInfoText, "extInfo", "extInfoButton"}};
    for (const auto& [part, view, hidden] : rows)
        for (const Orientation orientation : {Orientation::LANDSCAPE, Orientation::PORTRAIT}) {
            SCOPED_TRACE(view);
            CRes cRes = screenCRes(UiType::TEXT);
            const auto full = made(cRes, orientation);
            EXPECT_EQ(viewNamed(*full->view(), view).accessibilityLabel(), *(cRes.*part));
            EXPECT_FALSE(viewNamed(*full->view(), view).isHidden());
            (cRes.*part).reset();
            const auto bare = made(cRes, orientation);
            EXPECT_EQ(viewNamed(*bare->view(), hidden ? hidden : view).isHidden(), hidden != nullptr);
        }
}

TEST_F(Factory, AWarningShowsAsTheIndicatorAndTheApplicationSay) {
    struct Row {
        const char* name;
        const char* indicator;
        bool hasText, hasWarning, showsIndicator;
        double width;
        std::optional<UIColor> color; // the application's
    };
    const UIColor red = UIColor::red(), blue = UIColor::blue();
    const Row rows[] = {{"no look", "Y", false, false, true, 45, {}},
                        {"another value", "N", false, true, true, 0, {}},
                        {"a text without a warning", "Y", true, false, true, 45, blue},
                        {"a warning without its image", "Y", false, true, false, 0, red},
                        {"a warning over a text", "Y", true, true, true, 45, red}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        CRes cRes = screenCRes(UiType::TEXT);
        cRes.challengeInfoTextIndicator = row.indicator;
        const auto text = std::make_shared<CustTextCustomization>(FontValues{"Courier", 12, {}}, blue, blue);
        text->setCustomText(*cRes.challengeInfoText, "Look at your phone.");
        look = std::make_shared<UiCustomization>();
        if (row.hasText) look->setCustTextCustomization(text, CustTextViewType::CHALLENGE_INFO_TEXT);
        if (row.hasWarning)
            look->setCustWarning(
                std::make_shared<CustWarning>(row.showsIndicator, false, red, red, std::nullopt));
        const auto screen = made(cRes);
        const UITextView& shown = *screen->challengeInfoText.get();
        EXPECT_EQ(screen->warningWidthConstraint->constant(), row.width);
        EXPECT_EQ(shown.text(), row.hasText ? "Look at your phone." : *cRes.challengeInfoText);
        EXPECT_EQ(shown.font() == UIFont::make("Courier", 12), row.hasText);
        if (row.color) EXPECT_EQ(shown.textColor(), *row.color);
        EXPECT_EQ(shown.backgroundColor() == red, row.color == red);
        EXPECT_EQ(text->textColor, blue) << "the warning's look is a copy";
        *cRes.challengeInfoText += " ";
        EXPECT_EQ(made(cRes)->challengeInfoText->text(), *cRes.challengeInfoText) << "another text";
    }
}

} // namespace
} // namespace korvane
