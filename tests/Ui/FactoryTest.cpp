#include "tests/Ui/ScreenSupport.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

namespace korvane {
namespace {

using testing::Contains;
using testing::HasSubstr;

using Native = ChallengeNativeViewController;
using enum SdkErrorCase;

class Factory : public ScreenTest {
protected:
    std::shared_ptr<Native> made(const CRes& cRes, Orientation orientation = Orientation::PORTRAIT) {
        return std::dynamic_pointer_cast<Native>(
            factory().getViewControllerContainer(cRes).controllersMap().at(orientation));
    }
    void expectFailure(const CRes& cRes, SdkErrorCase failure, const std::string& text,
                       const std::string& logged) {
        const RecordingLogger log;
        EXPECT_TRUE(raises(
            failure, [&] { return factory().getViewControllerContainer(cRes); }, text.c_str()));
        EXPECT_THAT(log.lines(), Contains(HasSubstr(logged)));
    }
};

TEST_F(Factory, ResponsesWithoutAScreenFailWithTheirTextAndKind) {
    struct Row {
        std::optional<std::string> kind, page;
        SdkErrorCase failure;
        const char* text;
        const char* logged;
    };
    const char* const unknown = "Unknown cRes.acsUiType";
    const Row rows[] = {
        {std::nullopt, "", InvalidAcsResponseException, unknown, unknown},
        {"1", "", InvalidAcsResponseException, unknown, unknown},
        {"05", std::nullopt, InvalidInputException, "Can not get cRes.acsHTML", "Can not get cRes.acsHTML"},
        {"05", "PGI*\nforged", SDKRuntimeException, "Can not encode cRes.acsHTML from base64url to base64.",
         "Can not encode cRes.acsHTML from base64url to base64.\nPGI*\\u000aforged"},
        {"05", "_w", SDKRuntimeException, "Can not create HTML string from base64 encoded cRes.acsHTML.",
         "Can not create HTML string from base64 encoded cRes.acsHTML"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.kind.value_or("none") + " " + row.page.value_or("none"));
        CRes cRes = screenCRes(UiType::TEXT);
        cRes.acsUiType = row.kind;
        cRes.acsHTML = row.page;
        expectFailure(cRes, row.failure, row.text, row.logged);
    }
}

TEST_F(Factory, WithoutItsSceneEveryBuilderFailsWithItsOwnTextAndKind) {
    struct Row {
        UiType kind;
        SdkErrorCase failure;
        const char* text;
    };
    const Row rows[] = {
        {UiType::TEXT, InvalidInputException, "portrait ChallengeTextNativeViewController"},
        {UiType::SINGLE_SELECT, SDKRuntimeException, "portrait ChallengeSingleSelectNativeViewController"},
        {UiType::MULTI_SELECT, SDKRuntimeException, "portrait ChallengeMultiSelectNativeViewController"},
        {UiType::OOB, SDKRuntimeException, "portrait ChallengeOobNativeViewController"},
        {UiType::HTML_OTHER, SDKRuntimeException, "ChallengeWebViewController"}};
    const std::string resources = "Frameworks/Korvane.framework/KorvaneResources.bundle";
    const TemporaryFolder folder(resources);
    platform.script().mainBundlePath = folder.path();
    const std::string failed = "Failed initialization of ";
    for (const Row& row : rows)
        expectFailure(screenCRes(row.kind), row.failure, failed + row.text, "ChallengeStoryboard");
    for (const char* wrong : {"UIViewController", "ChallengeOobNativeViewController"}) {
        folder.write(resources + "/ChallengeStoryboard.json",
                     asBytes(JSON{{"scenes", {{"nativeOobChallengeVc", {{"class", wrong}}}}}}.dump()));
        const std::string text = failed + (*wrong == 'U' ? "portrait " : "landscape Landscape") +
                                 "ChallengeOobNativeViewController";
        expectFailure(screenCRes(UiType::OOB), SDKRuntimeException, text, text);
    }
}

TEST_F(Factory, WhatAResponseHasIsReadAndTheRestIsHiddenOnBothTwins) {
    struct Row {
        std::optional<std::string> CRes::*part;
        const char* view;
        const char* hidden = nullptr;
    };
    const Row rows[] = {{&CRes::challengeInfoHeader, "challengeInfoHeader"},
                        {&CRes::challengeInfoText, "challengeInfoText"},
                        {&CRes::challengeInfoLabel, "challengeInfoLabel", "challengeInfoLabel"},
                        {&CRes::submitAuthenticationLabel, "submitButton"},
                        {&CRes::resendInformationLabel, "resendButton", "resendButton"},
                        {&CRes::whitelistingInfoText, "whitelistingInfo", "whitelistingInfo"},
                        {&CRes::whyInfoLabel, "whyInfoButton", "whyInfoButton"},
                        {&CRes::whyInfoText, "whyInfo", "whyInfoButton"},
                        {&CRes::expandInfoLabel, "extInfoButton", "extInfoButton"},
                        {&CRes::expandInfoText, "extInfo", "extInfoButton"}};
    for (const Row& row : rows)
        for (const Orientation orientation : {Orientation::LANDSCAPE, Orientation::PORTRAIT}) {
            SCOPED_TRACE(row.view);
            CRes cRes = screenCRes(UiType::TEXT);
            cRes.whitelistingInfoText = "Trust this shop?";
            const auto full = made(cRes, orientation);
            EXPECT_EQ(viewNamed(*full->view(), row.view).accessibilityLabel(), *(cRes.*row.part));
            EXPECT_FALSE(viewNamed(*full->view(), row.view).isHidden());
            (cRes.*row.part).reset();
            const auto bare = made(cRes, orientation);
            EXPECT_EQ(row.hidden != nullptr,
                      viewNamed(*bare->view(), row.hidden ? row.hidden : row.view).isHidden());
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
                        {"a warning with its colours", "Y", false, true, true, 45, red},
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
