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
        {"06", "", InvalidAcsResponseException, unknown, unknown},
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
    const UIColor red = UIColor::red();
    struct Row {
        const char* name;
        const char* indicator;
        bool hasLook, hasWarning, showsIndicator;
        double width;
        bool isColoured;
    };
    const Row rows[] = {{"indicator without a look", "Y", false, false, true, 45, false},
                        {"another value", "N", true, true, true, 0, false},
                        {"a look without a warning", "Y", true, false, true, 45, false},
                        {"a warning with its colours", "Y", true, true, true, 45, true},
                        {"a warning without its image", "Y", true, true, false, 0, true}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        look = row.hasLook ? std::make_shared<UiCustomization>() : nullptr;
        if (row.hasWarning)
            look->setCustWarning(
                std::make_shared<CustWarning>(row.showsIndicator, false, red, red, std::nullopt));
        CRes cRes = screenCRes(UiType::TEXT);
        cRes.challengeInfoTextIndicator = row.indicator;
        const auto screen = made(cRes);
        EXPECT_EQ(screen->warningWidthConstraint->constant(), row.width);
        EXPECT_EQ(screen->challengeInfoText->textColor() == red, row.isColoured);
        EXPECT_EQ(screen->challengeInfoText->backgroundColor() == red, row.isColoured);
    }
}

TEST_F(Factory, TheApplicationsOwnTextReplacesTheWholeTextAndAWarningLeavesItsLookUntouched) {
    look = std::make_shared<UiCustomization>();
    const auto text =
        std::make_shared<CustTextCustomization>(FontValues{"Courier", 12, {}}, UIColor::blue(), std::nullopt);
    CRes cRes = screenCRes(UiType::TEXT);
    cRes.challengeInfoTextIndicator = "Y";
    text->setCustomText(*cRes.challengeInfoText, "Look at your phone.");
    look->setCustTextCustomization(text, CustTextViewType::CHALLENGE_INFO_TEXT);
    look->setCustWarning(
        std::make_shared<CustWarning>(true, false, UIColor::red(), std::nullopt, std::nullopt));
    const auto screen = made(cRes);
    EXPECT_EQ(screen->challengeInfoText->text(), "Look at your phone.");
    EXPECT_EQ(screen->challengeInfoText->font(), UIFont::make("Courier", 12));
    EXPECT_EQ(screen->challengeInfoText->textColor(), UIColor::red());
    EXPECT_EQ(text->textColor, UIColor::blue());
    *cRes.challengeInfoText += " ";
    EXPECT_EQ(made(cRes)->challengeInfoText->text(), *cRes.challengeInfoText) << "another text";
}

} // namespace
} // namespace korvane
