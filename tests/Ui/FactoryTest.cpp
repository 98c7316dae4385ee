#include "Ui/Screens/ChallengeOobNativeViewController.h"
#include "Ui/Screens/ChallengeSelectNativeViewController.h"
#include "Ui/Screens/ChallengeWebViewController.h"
#include "tests/Ui/ScreenSupport.h"
#include "tests/support/Failures.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <typeinfo>

namespace korvane {
namespace {

using testing::Contains;
using testing::HasSubstr;

using Change = std::function<void(CRes&)>;
using Native = ChallengeNativeViewController;

class Factory : public ScreenTest {
protected:
    std::shared_ptr<Native> made(const CRes& cRes, Orientation orientation = Orientation::PORTRAIT) {
        const auto container = factory().getViewControllerContainer(cRes);
        return std::dynamic_pointer_cast<Native>(container.controllersMap().at(orientation));
    }
};

TEST_F(Factory, EachKindGivesTwinsOfItsClassesAndAPageOneController) {
    struct Row {
        UiType kind;
        const std::type_info& portrait;
        const std::type_info& landscape;
    };
    const Row rows[] = {
        {UiType::TEXT, typeid(ChallengeTextNativeViewController),
         typeid(LandscapeChallengeTextNativeViewController)},
        {UiType::SINGLE_SELECT, typeid(ChallengeSingleSelectNativeViewController),
         typeid(LandscapeChallengeSingleSelectNativeViewController)},
        {UiType::MULTI_SELECT, typeid(ChallengeMultiSelectNativeViewController),
         typeid(LandscapeChallengeMultiSelectNativeViewController)},
        {UiType::OOB, typeid(ChallengeOobNativeViewController),
         typeid(LandscapeChallengeOobNativeViewController)},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(rawValue(row.kind));
        const CRes cRes = screenCRes(row.kind);
        const auto container = factory().getViewControllerContainer(cRes);
        EXPECT_FALSE(container.isHtmlChallenge());
        EXPECT_EQ(container.cRes(), cRes);
        const ChallengeViewController& portrait = *container.controllersMap().at(Orientation::PORTRAIT);
        const ChallengeViewController& landscape = *container.controllersMap().at(Orientation::LANDSCAPE);
        EXPECT_EQ(typeid(portrait), row.portrait);
        EXPECT_EQ(typeid(landscape), row.landscape);
    }
    platform.script().orientation = UIDeviceOrientation::landscapeLeft;
    const auto page = factory().getViewControllerContainer(screenCRes(UiType::HTML_OTHER));
    EXPECT_TRUE(page.isHtmlChallenge());
    EXPECT_EQ(page.controllersMap().size(), 1u);
    EXPECT_TRUE(page.controllersMap().contains(Orientation::PORTRAIT));
}

TEST_F(Factory, ResponsesWithoutAScreenFailWithTheirTextAndKind) {
    struct Row {
        const char* name;
        UiType kind;
        Change change;
        SdkErrorCase failure;
        const char* text;
    };
    using enum SdkErrorCase;
    const Row rows[] = {
        {"no kind", UiType::TEXT, [](CRes& c) { c.acsUiType.reset(); }, InvalidAcsResponseException,
         "Unknown cRes.acsUiType"},
        {"a kind that there is not", UiType::TEXT, [](CRes& c) { c.acsUiType = "06"; },
         InvalidAcsResponseException, "Unknown cRes.acsUiType"},
        {"a kind without its zero", UiType::TEXT, [](CRes& c) { c.acsUiType = "1"; },
         InvalidAcsResponseException, "Unknown cRes.acsUiType"},
        {"no page", UiType::HTML_OTHER, [](CRes& c) { c.acsHTML.reset(); }, InvalidInputException,
         "Can not get cRes.acsHTML"},
        {"a page that is not Base64URL", UiType::HTML_OTHER, [](CRes& c) { c.acsHTML = "PGI*"; },
         SDKRuntimeException, "Can not encode cRes.acsHTML from base64url to base64."},
        {"a page that is not UTF-8", UiType::HTML_OTHER, [](CRes& c) { c.acsHTML = "_w"; },
         SDKRuntimeException, "Can not create HTML string from base64 encoded cRes.acsHTML."},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        CRes cRes = screenCRes(row.kind);
        row.change(cRes);
        const RecordingLogger log;
        EXPECT_TRUE(raises(
            row.failure, [&] { return factory().getViewControllerContainer(cRes); }, row.text));
        const std::string logged(row.text, std::string_view(row.text).find_last_not_of('.') + 1);
        EXPECT_THAT(log.lines(), Contains(HasSubstr(logged)));
    }
}

TEST_F(Factory, TheLogAloneTellsThePageThatCannotBeDecoded) {
    CRes cRes = screenCRes(UiType::HTML_OTHER);
    cRes.acsHTML = "PGI*\nforged";
    const RecordingLogger log;
    EXPECT_THROW(static_cast<void>(factory().getViewControllerContainer(cRes)), SdkError);
    EXPECT_THAT(
        log.lines(),
        Contains(HasSubstr("Can not encode cRes.acsHTML from base64url to base64.\nPGI*\\u000aforged")));
}

/// A bundle with another storyboard than the library's.
class BrokenStoryboard : public Factory {
protected:
    BrokenStoryboard() {
        folder = std::filesystem::temp_directory_path() / ("korvane-ui-" + std::to_string(getpid()));
        bundle = folder / "Frameworks/Korvane.framework/KorvaneResources.bundle";
        std::filesystem::create_directories(bundle);
        platform.script().mainBundlePath = folder.string();
    }
    ~BrokenStoryboard() override { std::filesystem::remove_all(folder); }

    std::filesystem::path folder, bundle;
};

TEST_F(BrokenStoryboard, EveryBuilderFailsWithItsOwnTextAndTheLogNamesWhatIsMissing) {
    struct Row {
        UiType kind;
        const char* portrait;
        const char* portraitClass;
        SdkErrorCase failure;
        const char* portraitText;
        const char* landscapeText;
    };
    using enum SdkErrorCase;
    const Row rows[] = {
        {UiType::TEXT, "nativeTextChallengeVc", "ChallengeTextNativeViewController", InvalidInputException,
         "Failed initialization of portrait ChallengeTextNativeViewController",
         "Failed initialization of landscape ChallengeTextNativeViewController"},
        {UiType::SINGLE_SELECT, "nativeSingleSelectChallengeVc", "ChallengeSingleSelectNativeViewController",
         SDKRuntimeException, "Failed initialization of portrait ChallengeSingleSelectNativeViewController",
         "Failed initialization of landscape LandscapeChallengeSingleSelectNativeViewController"},
        {UiType::MULTI_SELECT, "nativeMultiSelectChallengeVc", "ChallengeMultiSelectNativeViewController",
         SDKRuntimeException, "Failed initialization of portrait ChallengeMultiSelectNativeViewController",
         "Failed initialization of landscape LandscapeChallengeMultiSelectNativeViewController"},
        {UiType::OOB, "nativeOobChallengeVc", "ChallengeOobNativeViewController", SDKRuntimeException,
         "Failed initialization of portrait ChallengeOobNativeViewController",
         "Failed initialization of landscape LandscapeChallengeOobNativeViewController"},
        {UiType::HTML_OTHER, "htmlChallengeVc", "ChallengeWebViewController", SDKRuntimeException,
         "Failed initialization of ChallengeWebViewController", nullptr},
    };
    const auto fails = [&](const Row& row, const char* text, const std::string& logged) {
        const RecordingLogger log;
        EXPECT_TRUE(raises(
            row.failure, [&] { return factory().getViewControllerContainer(screenCRes(row.kind)); }, text));
        EXPECT_THAT(log.lines(), Contains(HasSubstr(text)));
        EXPECT_THAT(log.lines(), Contains(HasSubstr(logged)));
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.portraitText);
        std::filesystem::remove(bundle / "ChallengeStoryboard.json");
        fails(row, row.portraitText, "ChallengeStoryboard");

        JSON scenes = JSON::object();
        std::ofstream(bundle / "ChallengeStoryboard.json") << JSON{{"scenes", scenes}};
        fails(row, row.portraitText, row.portrait);
        // A scene of another class than the builder's, and its twin missing.
        scenes[row.portrait] = JSON{{"class", "UIViewController"}};
        std::ofstream(bundle / "ChallengeStoryboard.json") << JSON{{"scenes", scenes}};
        fails(row, row.portraitText, row.portraitText);
        if (!row.landscapeText) continue;
        scenes[row.portrait] = JSON{{"class", row.portraitClass}};
        std::ofstream(bundle / "ChallengeStoryboard.json") << JSON{{"scenes", scenes}};
        fails(row, row.landscapeText, "Landscape");
    }
}

TEST_F(Factory, WhatAResponseDoesNotHaveIsHidden) {
    struct Row {
        const char* name;
        Change change;
        std::function<const UIView&(Native&)> view;
        bool isHidden;
    };
    const auto why = [](Native& n) -> const UIView& { return *n.whyInfoButton.get(); };
    const auto ext = [](Native& n) -> const UIView& { return *n.extInfoButton.get(); };
    const auto label = [](Native& n) -> const UIView& { return *n.challengeInfoLabel.get(); };
    const auto question = [](Native& n) -> const UIView& { return *n.whitelistingInfo.get(); };
    const auto resend = [](Native& n) -> const UIView& {
        return *dynamic_cast<ChallengeTextNativeViewController&>(n).resendButton.get();
    };
    const Row rows[] = {
        {"why, both parts", [](CRes&) {}, why, false},
        {"why without a text", [](CRes& c) { c.whyInfoText.reset(); }, why, true},
        {"why without a label", [](CRes& c) { c.whyInfoLabel.reset(); }, why, true},
        {"expand, both parts", [](CRes&) {}, ext, false},
        {"expand without a text", [](CRes& c) { c.expandInfoText.reset(); }, ext, true},
        {"expand without a label", [](CRes& c) { c.expandInfoLabel.reset(); }, ext, true},
        {"label", [](CRes&) {}, label, false},
        {"no label", [](CRes& c) { c.challengeInfoLabel.reset(); }, label, true},
        {"whitelisting", [](CRes& c) { c.whitelistingInfoText = "Trust this shop?"; }, question, false},
        {"no whitelisting", [](CRes&) {}, question, true},
        {"resend", [](CRes&) {}, resend, false},
        {"no resend", [](CRes& c) { c.resendInformationLabel.reset(); }, resend, true},
    };
    for (const Row& row : rows) {
        CRes cRes = screenCRes(UiType::TEXT);
        row.change(cRes);
        for (const Orientation orientation : {Orientation::LANDSCAPE, Orientation::PORTRAIT}) {
            SCOPED_TRACE(std::string(row.name) + " " + std::string(rawValue(orientation)));
            EXPECT_EQ(row.view(*made(cRes, orientation)).isHidden(), row.isHidden);
        }
    }
}

TEST_F(Factory, TextsOfTheResponseReachTheirControls) {
    CRes cRes = screenCRes(UiType::TEXT);
    cRes.whitelistingInfoText = "Trust this shop?";
    const auto screen = std::dynamic_pointer_cast<ChallengeTextNativeViewController>(made(cRes));
    EXPECT_EQ(screen->challengeInfoHeader->text(), *cRes.challengeInfoHeader);
    EXPECT_EQ(screen->challengeInfoLabel->text(), *cRes.challengeInfoLabel);
    EXPECT_EQ(screen->challengeInfoText->text(), *cRes.challengeInfoText);
    EXPECT_EQ(screen->whyInfo->text(), *cRes.whyInfoText);
    EXPECT_EQ(screen->extInfo->text(), *cRes.expandInfoText);
    EXPECT_EQ(screen->whitelistingInfo->title(ControlState::normal), "Trust this shop?");
    for (const auto state : {ControlState::normal, ControlState::highlighted}) {
        EXPECT_EQ(screen->whyInfoButton->title(state), *cRes.whyInfoLabel);
        EXPECT_EQ(screen->extInfoButton->title(state), *cRes.expandInfoLabel);
        EXPECT_EQ(screen->submitButton->title(state), *cRes.submitAuthenticationLabel);
        EXPECT_EQ(screen->resendButton->title(state), *cRes.resendInformationLabel);
    }
    cRes.challengeInfoHeader.reset();
    cRes.submitAuthenticationLabel.reset();
    const auto bare = std::dynamic_pointer_cast<ChallengeTextNativeViewController>(made(cRes));
    EXPECT_EQ(bare->challengeInfoHeader->text(), "");
    EXPECT_EQ(bare->submitButton->title(ControlState::normal), "Submit") << "the storyboard's own";
}

TEST_F(Factory, WhitelistingSetsTheSectionsHeightAndItsAbsenceItsOwnToNothing) {
    CRes cRes = screenCRes(UiType::OOB);
    EXPECT_EQ(made(cRes)->whitelistingInfoHeightConstraint->constant(), 0);
    EXPECT_EQ(made(cRes)->whyInfoHeightConstraint->constant(), 0);
    cRes.whitelistingInfoText = "Trust this shop?";
    EXPECT_GT(made(cRes)->whitelistingInfoHeightConstraint->constant(), 0);
    EXPECT_EQ(made(cRes)->whyInfoHeightConstraint->constant(), 40);
}

TEST_F(Factory, TheChallengeTextIsAsHighAsItsLinesAndAMargin) {
    struct Row {
        const char* name;
        Change change;
        double beyondText;
    };
    const Row rows[] = {
        {"with a label below", [](CRes&) {}, 20},
        {"without one", [](CRes& c) { c.challengeInfoLabel.reset(); }, 40},
        {"narrowed by the warning", [](CRes& c) { c.challengeInfoTextIndicator = "Y"; }, 20},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        CRes cRes = screenCRes(UiType::OOB);
        cRes.challengeInfoText = "A text that needs more than one line on a telephone, or else it would not "
                                 "tell a height that was measured from one that was not.";
        row.change(cRes);
        for (const Orientation orientation : {Orientation::LANDSCAPE, Orientation::PORTRAIT}) {
            const auto screen = made(cRes, orientation);
            screen->view()->layoutIfNeeded();
            const UITextView& text = *screen->challengeInfoText.get();
            const double lines = text.fittingSize(text.frame().size.width).height;
            EXPECT_DOUBLE_EQ(text.frame().size.height, lines + row.beyondText);
            EXPECT_GT(lines, 50) << "more than one line";
        }
    }
}

TEST_F(Factory, AWarningShowsAsTheIndicatorAndTheApplicationSay) {
    const UIColor red = UIColor::red();
    const UIColor blue = UIColor::blue();
    struct Row {
        const char* name;
        std::optional<std::string> indicator;
        bool hasLook, hasWarning, showsIndicator;
        double width;
        std::optional<UIColor> textColor;
        bool isWarning;
    };
    const Row rows[] = {
        {"no indicator", std::nullopt, false, false, true, 0, std::nullopt, false},
        {"indicator without a look", "Y", false, false, true, 45, std::nullopt, false},
        {"another value", "N", true, true, true, 0, std::nullopt, false},
        {"a look without a warning", "Y", true, false, true, 45, std::nullopt, false},
        {"a warning with its colours", "Y", true, true, true, 45, red, true},
        {"a warning without its image", "Y", true, true, false, 0, red, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        look = row.hasLook ? std::make_shared<UiCustomization>() : nullptr;
        if (row.hasWarning) {
            look->setCustWarning(
                std::make_shared<CustWarning>(row.showsIndicator, false, red, blue, std::nullopt));
            look->getCustWarning()->isWarning = true;
        }
        CRes cRes = screenCRes(UiType::TEXT);
        cRes.challengeInfoTextIndicator = row.indicator;
        const auto screen = made(cRes);
        EXPECT_EQ(screen->warningWidthConstraint->constant(), row.width);
        if (row.textColor) {
            EXPECT_EQ(screen->challengeInfoText->textColor(), *row.textColor);
            EXPECT_EQ(screen->challengeInfoText->backgroundColor(), blue);
        } else {
            EXPECT_NE(screen->challengeInfoText->textColor(), red);
        }
        if (row.hasWarning) {
            EXPECT_EQ(look->getCustWarning()->isWarning, row.isWarning);
        }
    }
}

TEST_F(Factory, TheApplicationsOwnTextReplacesTheWholeTextAndItsLookStaysUntouched) {
    look = std::make_shared<UiCustomization>();
    const auto text = std::make_shared<CustTextCustomization>();
    text->setCustomText("We have sent you a code.", "Look at your phone.");
    look->setCustTextCustomization(text, CustTextViewType::CHALLENGE_INFO_TEXT);
    look->setCustWarning(
        std::make_shared<CustWarning>(true, false, UIColor::red(), std::nullopt, std::nullopt));
    CRes cRes = screenCRes(UiType::TEXT);
    cRes.challengeInfoTextIndicator = "Y";
    EXPECT_EQ(made(cRes)->challengeInfoText->text(), "Look at your phone.");
    EXPECT_EQ(text->textColor, std::nullopt) << "the warning's colour is a copy's";
    cRes.challengeInfoText = "We have sent you a code";
    EXPECT_EQ(made(cRes)->challengeInfoText->text(), "We have sent you a code") << "another text";
}

TEST_F(Factory, LogosShowOnBothTwins) {
    const auto ps = UIImage::filled({20, 10}, UIColor::red());
    const auto bank = UIImage::filled({30, 10}, UIColor::blue());
    const auto container = VCFactory(ps, bank, nullptr).getViewControllerContainer(screenCRes(UiType::OOB));
    for (const auto& [orientation, controller] : container.controllersMap()) {
        const auto& screen = dynamic_cast<Native&>(*controller);
        EXPECT_EQ(screen.psLogo->image(), ps);
        EXPECT_EQ(screen.bankLogo->image(), bank);
    }
    EXPECT_EQ(made(screenCRes(UiType::OOB))->psLogo->image(), nullptr);
}

TEST_F(Factory, PagesAreLoadedAsTheyCameAndABrokenReturnPageIsLeftOut) {
    CRes cRes = screenCRes(UiType::HTML_OTHER);
    cRes.acsHTMLRefresh = encodedPage("<p>back</p>");
    const auto screenOf = [this](const CRes& response) {
        return std::dynamic_pointer_cast<ChallengeWebViewController>(
            factory().getHtmlVC(response).controllersMap().at(Orientation::PORTRAIT));
    };
    const auto screen = screenOf(cRes);
    EXPECT_EQ(screen->pageString, "<p>page</p>");
    EXPECT_EQ(screen->challengeWebView->htmlString(), "<p>page</p>");
    EXPECT_EQ(screen->challengeWebView->baseURL(), std::nullopt);
    EXPECT_EQ(screen->returnFromOobPage, "<p>back</p>");
    cRes.acsHTMLRefresh = "PGI*";
    EXPECT_EQ(screenOf(cRes)->returnFromOobPage, std::nullopt);
}

} // namespace
} // namespace korvane
