#include "Ui/Screens/ChallengeOobNativeViewController.h"
#include "Ui/Screens/ChallengeSelectNativeViewController.h"
#include "tests/Ui/ScreenSupport.h"

#include <functional>
#include <stdexcept>

namespace korvane {
namespace {

using testing::ElementsAre;

constexpr std::string_view kLongText =
    "A text of several lines, which is what makes a section grow beyond the screen when it is opened: it has "
    "more words than anybody reads, and it goes on and on until the telephone has no more room for it. "
    "A text of several lines, which is what makes a section grow beyond the screen when it is opened.";

class NativeScreen : public ScreenTest {
protected:
    std::shared_ptr<ChallengeNativeViewController>
    shown(UIOutlet<UITextView> ChallengeNativeViewController::*text) {
        CRes cRes = screenCRes(UiType::OOB);
        auto screen = show(cRes);
        ((*screen).*text)->setText(std::string(kLongText));
        settle();
        return screen;
    }
};

struct SectionRow {
    const char* name;
    UIOutlet<UITextView> ChallengeNativeViewController::*text;
    UIOutlet<ShowInfoButtonButton> ChallengeNativeViewController::*button;
    UIOutlet<NSLayoutConstraint> ChallengeNativeViewController::*height;
};

const SectionRow kSections[] = {
    {"why", &ChallengeNativeViewController::whyInfo, &ChallengeNativeViewController::whyInfoButton,
     &ChallengeNativeViewController::whyInfoHeightConstraint},
    {"expand", &ChallengeNativeViewController::extInfo, &ChallengeNativeViewController::extInfoButton,
     &ChallengeNativeViewController::extInfoHeightConstraint},
};

TEST_F(NativeScreen, ASectionOpensToItsTextAndClosesToWhatWasBefore) {
    for (const SectionRow& row : kSections) {
        SCOPED_TRACE(row.name);
        const auto screen = shown(row.text);
        const auto& text = (*screen).*row.text;
        const auto down = screen->arrowDown.get();
        const auto up = UIImage::filled({20, 20}, UIColor::red());
        screen->arrowUp.set(up);
        const double before = screen->scrollView->contentSize().height;
        EXPECT_EQ(before, CGRectGetMaxY(screen->extInfo->frame()));

        tap(*((*screen).*row.button).get());
        const double needed = text->contentSize().height;
        EXPECT_GT(needed, 60);
        EXPECT_EQ(text->frame().size.height, needed);
        EXPECT_EQ(((*screen).*row.button)->image(ControlState::normal), up);
        EXPECT_EQ(screen->scrollView->contentSize().height, before + needed);
        EXPECT_EQ(CGRectGetMaxY(screen->extInfo->frame()), before + needed) << "all can be reached";

        tap(*((*screen).*row.button).get());
        EXPECT_EQ(((*screen).*row.height)->constant(), 0);
        EXPECT_EQ(text->frame().size.height, 0);
        EXPECT_EQ(((*screen).*row.button)->image(ControlState::normal), down);
        EXPECT_EQ(screen->scrollView->contentSize().height, before);
    }
}

TEST_F(NativeScreen, OpeningScrollsOnlyAsFarAsTheScreenIsTooShort) {
    const auto roomy = shown(&ChallengeNativeViewController::whyInfo);
    tap(*roomy->whyInfoButton.get());
    EXPECT_EQ(roomy->scrollView->contentOffset().y, 0);

    resize({320, 300});
    const auto screen = shown(&ChallengeNativeViewController::whyInfo);
    tap(*screen->whyInfoButton.get());
    const double over = screen->scrollView->contentSize().height - 300;
    ASSERT_GT(over, 0);
    EXPECT_EQ(screen->scrollView->contentOffset().y, over);
    window->layoutIfNeeded();
    EXPECT_EQ(screen->toolBar->frame().origin.y, over) << "the bar stays at the top of what is seen";
    tap(*screen->whyInfoButton.get());
    EXPECT_EQ(screen->scrollView->contentOffset().y, over) << "closing does not scroll";
}

TEST_F(NativeScreen, EveryAppearanceBeginsClosedAndUncheckedToTheEye) {
    CRes cRes = screenCRes(UiType::OOB);
    cRes.whitelistingInfoText = "Trust this shop?";
    const auto screen = show(cRes);
    tap(*screen->whyInfoButton.get());
    tap(*screen->whitelistingInfo.get());
    const auto checked = screen->checkedWhitelistingCheckBox.get();
    EXPECT_EQ(screen->whitelistingInfo->image(ControlState::normal), checked);
    stack->pushViewController(std::make_shared<UIViewController>(), UIAnimated::no);
    stack->popViewController(UIAnimated::no);
    settle();
    EXPECT_EQ(screen->whyInfo->frame().size.height, 0);
    EXPECT_EQ(screen->whyInfoButton->image(ControlState::normal), screen->arrowDown.get());
    EXPECT_EQ(screen->whitelistingInfo->image(ControlState::normal),
              screen->uncheckedWhitelistingCheckBox.get());
    EXPECT_EQ(screen->getWhitelistingDataEntry(), YesNoSelector::Y) << "the answer stays";
}

TEST_F(NativeScreen, WhitelistingIsAnsweredWhereItIsAsked) {
    CRes cRes = screenCRes(UiType::OOB);
    EXPECT_EQ(show(cRes)->getWhitelistingDataEntry(), std::nullopt);
    cRes.whitelistingInfoText = "Trust this shop?";
    const auto screen = show(cRes);
    EXPECT_EQ(screen->getWhitelistingDataEntry(), YesNoSelector::N) << "nobody touched it";
    EXPECT_EQ(screen->whitelistingInfo->checked(), std::nullopt);
    tap(*screen->whitelistingInfo.get());
    EXPECT_EQ(screen->getWhitelistingDataEntry(), YesNoSelector::Y);
    EXPECT_TRUE(screen->whitelistingInfo->accessibilityState().isSelected);
    tap(*screen->whitelistingInfo.get());
    EXPECT_EQ(screen->getWhitelistingDataEntry(), YesNoSelector::N);
}

TEST_F(NativeScreen, TheAnswerIsTheOneThatStandsWhenItIsSent) {
    struct Row {
        UiType kind;
        std::function<void(UIViewController&)> press;
        std::string call;
        std::string queue;
    };
    const auto next = [](UIViewController& screen) {
        tap(*dynamic_cast<ChallengeSelectNativeViewController&>(screen).nextButton.get());
    };
    const std::vector<Row> rows{
        {UiType::TEXT,
         [](UIViewController& screen) {
             auto& text = dynamic_cast<ChallengeTextNativeViewController&>(screen);
             text.otp->setText("12");
             tap(*text.submitButton.get());
         },
         "data(12", ") on main"},
        {UiType::MULTI_SELECT, next, "data(", ") on global"},
        {UiType::OOB,
         [](UIViewController& screen) {
             tap(*dynamic_cast<ChallengeOobNativeViewController&>(screen).continueButton.get());
         },
         "oobContinue(", ") on global"}};
    UIApplication::shared().setPlaysAnimations(true);
    for (const Row& row : rows) {
        SCOPED_TRACE(rawValue(row.kind));
        CRes cRes = screenCRes(row.kind);
        present(std::make_shared<UIViewController>());
        auto screen = factory().getViewControllerContainer(cRes).controllersMap().at(Orientation::PORTRAIT);
        stack->setViewControllers({screen}, UIAnimated::yes);
        ASSERT_FALSE(screen->hasAppeared()) << "the change is seen only now";
        row.press(*screen);
        settle();
        EXPECT_THAT(std::exchange(actions->calls, {}), ElementsAre(row.call + row.queue))
            << "nothing was asked";

        cRes.whitelistingInfoText = "Trust this shop?";
        const auto asking = show(cRes);
        row.press(*asking);
        platform.runFor(Seconds(0.9));
        tap(*asking->whitelistingInfo.get());
        settle();
        EXPECT_THAT(std::exchange(actions->calls, {}), ElementsAre(row.call + "/Y" + row.queue));
    }
}

TEST_F(NativeScreen, WhatFollowsAnotherWidthOrSizeOfTextCanBeReadToItsEnd) {
    struct Row {
        const char* name;
        CGSize size;
        double textScale = 1;
        UiConstraints place = {}; // of the challenge text
    };
    const Row rows[] = {{"as it was made", {390, 844}},
                        {"narrowed by the application", {390, 844}, 1, {.leading = 150}},
                        {"narrower", {320, 844}},
                        {"larger text", {390, 844}, 2},
                        {"both", {320, 568}, 1.5}};
    places = std::make_shared<UiCustomizationConstraints>();
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        resize({390, 844});
        UIApplication::shared().setTextScale(1);
        places->setConstraints(UiObject::challengeInfoText, row.place);
        CRes cRes = screenCRes(UiType::OOB);
        for (auto* text :
             {&cRes.challengeInfoText, &cRes.whyInfoText, &cRes.expandInfoText, &cRes.whitelistingInfoText})
            *text = std::string(kLongText);
        const auto container = factory().getViewControllerContainer(cRes);
        const auto screen = show(container);
        tap(*screen->whyInfoButton.get());
        const auto expectFitting = [](ChallengeNativeViewController& one) {
            const auto& text = *one.challengeInfoText.get();
            EXPECT_EQ(text.frame().size.height, text.contentSize().height + 20);
            const auto& question = *one.whitelistingInfo.get();
            EXPECT_GE(question.frame().size.height, question.fittingSize(question.frame().size.width).height);
            EXPECT_EQ(one.scrollView->contentSize().height, CGRectGetMaxY(one.extInfo->frame()));
        };
        expectFitting(*screen);
        UIApplication::shared().setTextScale(row.textScale);
        resize(row.size);
        expectFitting(*screen);
        EXPECT_EQ(screen->whyInfo->frame().size.height, screen->whyInfo->contentSize().height);
        EXPECT_EQ(screen->extInfo->frame().size.height, 0);

        const auto twin = container.controllersMap().at(Orientation::LANDSCAPE);
        stack->pushViewController(twin, UIAnimated::no);
        settle();
        expectFitting(dynamic_cast<ChallengeNativeViewController&>(*twin));
    }
}

TEST_F(NativeScreen, CancelReachesTheTransactionAtOnce) {
    const auto screen = show(screenCRes(UiType::OOB));
    tap(dynamic_cast<UIControl&>(*screen->toolBar->topItem()->rightBarButtonItem()->customView()));
    EXPECT_THAT(actions->calls, ElementsAre("cancel() on main"));
    stack->transaction = nullptr;
    screen->interruptChallenge();
    EXPECT_EQ(actions->calls.size(), 1u) << "without a transaction nothing happens";
}

// Buttons.

TEST_F(NativeScreen, AShortTapShowsThePressedLookForItsWholeTime) {
    const auto button = std::make_shared<ChallengeButton>();
    button->setBackgroundColor(UIColor::white());
    button->awakeFromNib();
    button->customHighlitedColor = UIColor::red();
    button->customTextColor = UIColor::black();
    button->customHighlitedTextColor = UIColor::blue();
    button->setHighlighted(true);
    button->setHighlighted(false);
    button->setHighlighted(true);
    button->setHighlighted(false);
    platform.runFor(Seconds(0.19));
    EXPECT_EQ(button->backgroundColor(), UIColor::red());
    EXPECT_EQ(button->titleLabel()->textColor(), UIColor::blue());
    EXPECT_TRUE(button->isPressed);
    platform.runFor(Seconds(0.02));
    EXPECT_EQ(button->backgroundColor(), UIColor::white());
    EXPECT_EQ(button->titleLabel()->textColor(), UIColor::black());
    EXPECT_FALSE(button->isPressed);
    EXPECT_EQ(platform.leftAlive(), LeftAlive{}) << "one press, one end";
}

TEST_F(NativeScreen, ASectionsArrowStandsAtItsRightEdge) {
    for (const Orientation orientation : {Orientation::PORTRAIT, Orientation::LANDSCAPE}) {
        resize(orientation == Orientation::PORTRAIT ? CGSize{390, 844} : CGSize{844, 390});
        const auto screen = show(screenCRes(UiType::OOB), orientation);
        const UIButton& button = *screen->whyInfoButton.get();
        EXPECT_EQ(CGRectGetMaxX(button.imageView()->frame()), button.bounds().size.width);
    }
}

// The application's constraints.

/// One constant of the application's and where it is to be seen.
struct PlaceRow {
    UiObject object;
    const char* view;
    std::optional<double> UiConstraints::*side;
    double value;
    const char* neighbour = nullptr; // null for the screen
};

UIView& viewNamed(const UIView& screen, std::string_view name) {
    for (const auto& view : screen.subviews())
        if (view->accessibilityIdentifier() == name) return *view;
    throw std::out_of_range(std::string(name));
}

/// What the constant sets, as the views lie.
double measured(const UIView& screen, const PlaceRow& row) {
    const CGRect frame = viewNamed(screen, row.view).frame();
    const CGRect other = row.neighbour ? viewNamed(screen, row.neighbour).frame() : CGRect{};
    if (row.side == &UiConstraints::height) return frame.size.height;
    if (row.side == &UiConstraints::width) return frame.size.width;
    if (row.side == &UiConstraints::top) return frame.origin.y - CGRectGetMaxY(other);
    if (row.side == &UiConstraints::leading) return frame.origin.x - CGRectGetMaxX(other);
    return CGRectGetMaxX(frame) - screen.bounds().size.width;
}

TEST_F(NativeScreen, ConstantsOfTheApplicationReachTheControlsAtEveryLayout) {
    const auto leading = &UiConstraints::leading, trailing = &UiConstraints::trailing;
    const auto top = &UiConstraints::top, height = &UiConstraints::height, width = &UiConstraints::width;
    const PlaceRow rows[] = {
        {UiObject::bankLogo, "bankLogo", leading, 40},
        {UiObject::bankLogo, "bankLogo", top, 90},
        {UiObject::psLogo, "psLogo", trailing, -40},
        {UiObject::psLogo, "psLogo", width, 50},
        {UiObject::challengeInfoHeader, "challengeInfoHeader", top, 33, "bankLogo"},
        {UiObject::warningImage, "warningImage", height, 20},
        {UiObject::challengeInfoText, "challengeInfoText", leading, 12, "warningImage"},
        {UiObject::challengeInfoLabel, "challengeInfoLabel", top, 31, "challengeInfoText"},
        {UiObject::otp, "otp", height, 60},
        {UiObject::submitButton, "submitButton", top, 29, "otp"},
        {UiObject::resendButton, "resendButton", leading, 70},
        {UiObject::whitelistingInfo, "whitelistingInfo", top, 27, "resendButton"},
        {UiObject::whitelistingInfo, "whitelistingInfo", height, 30},
        {UiObject::challengeInfoText, "challengeInfoText", height, 70},
        {UiObject::whyInfoButton, "whyInfoButton", height, 50},
        {UiObject::whyInfo, "whyInfo", leading, 44},
        {UiObject::extInfoButton, "extInfoButton", top, 26, "whyInfo"},
        {UiObject::extInfo, "extInfo", height, 88},
    };
    CRes cRes = screenCRes(UiType::TEXT);
    cRes.whitelistingInfoText = std::string(kLongText); // needs more than any row gives
    for (const PlaceRow& row : rows) {
        SCOPED_TRACE(row.view);
        places = nullptr;
        EXPECT_NE(measured(*show(cRes)->view(), row), row.value);
        places = std::make_shared<UiCustomizationConstraints>();
        UiConstraints constraints;
        constraints.*row.side = row.value;
        places->setConstraints(row.object, constraints);
        const auto screen = show(cRes);
        EXPECT_EQ(measured(*screen->view(), row), row.value);
        const auto drawn = screen->view()->treeRevision();
        screen->view()->setNeedsLayout();
        window->layoutIfNeeded();
        EXPECT_EQ(screen->view()->treeRevision(), drawn) << "the layout has settled";
    }
}

TEST_F(NativeScreen, ConstantsWithoutAConstraintChangeNothing) {
    const auto constants = [](const ChallengeNativeViewController& screen) {
        std::vector<double> all;
        for (const auto& constraint : screen.viewIfLoaded()->constraints())
            all.push_back(constraint->constant());
        return all;
    };
    const auto ordinary = constants(*show(screenCRes(UiType::TEXT)));
    places = std::make_shared<UiCustomizationConstraints>();
    places->setConstraints(UiObject::tableView, {1, 1, 1, 1, 1, 1});
    places->setConstraints(UiObject::nextButton, {1, 1, 1, 1, 1, 1});
    places->setConstraints(UiObject::challengeInfoHeader, {.height = 1});
    places->setConstraints(UiObject::bankLogo, {.trailing = 1, .bottom = 1});
    places->setConstraints(UiObject::otp, {});
    EXPECT_EQ(constants(*show(screenCRes(UiType::TEXT))), ordinary);
}

} // namespace
} // namespace korvane
