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
    const UIColor red = UIColor::red(), blue = UIColor::blue();
    // the indicator, whether the application has a text, and a warning with or without its image; what is shown
    const std::tuple<const char*, bool, std::optional<bool>, double, std::optional<UIColor>> rows[] = {
        {"Y", false, std::nullopt, 45, {}},
        {"N", false, true, 0, {}},
        {"Y", true, std::nullopt, 45, blue},
        {"Y", false, false, 0, red},
        {"Y", true, true, 45, red}}; // the warning's look over the text's
    for (const auto& [indicator, hasText, showsWarning, width, color] : rows) {
        SCOPED_TRACE(width);
        CRes cRes = screenCRes(UiType::TEXT);
        cRes.challengeInfoTextIndicator = indicator;
        const auto text = std::make_shared<CustTextCustomization>(FontValues{"Courier", 12, {}}, blue, blue);
        text->setCustomText(*cRes.challengeInfoText, "Look at your phone.");
        look = std::make_shared<UiCustomization>();
        if (hasText) look->setCustTextCustomization(text, CustTextViewType::CHALLENGE_INFO_TEXT);
        if (showsWarning)
            look->setCustWarning(std::make_shared<CustWarning>(*showsWarning, false, red, red, std::nullopt));
        const auto screen = made(cRes);
        const UITextView& shown = *screen->challengeInfoText.get();
        EXPECT_EQ(screen->warningWidthConstraint->constant(), width);
        EXPECT_EQ(shown.text(), hasText ? "Look at your phone." : *cRes.challengeInfoText);
        EXPECT_EQ(shown.font() == UIFont::make("Courier", 12), hasText);
        EXPECT_TRUE(!color || shown.textColor() == *color);
        EXPECT_EQ(shown.backgroundColor() == red, color == red);
        EXPECT_EQ(text->textColor, blue) << "the warning's look is a copy";
        *cRes.challengeInfoText += " ";
        EXPECT_EQ(made(cRes)->challengeInfoText->text(), *cRes.challengeInfoText) << "another text";
    }
}

} // namespace
} // namespace korvane
