#include "Ui/Screens/ChallengeSelectNativeViewController.h"
#include "tests/Ui/ScreenSupport.h"

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Single = ChallengeSingleSelectNativeViewController;
using Multi = ChallengeMultiSelectNativeViewController;

class SelectScreen : public ScreenTest {
protected:
    static std::vector<std::shared_ptr<ChallengeSelectButton>>
    options(ChallengeSelectNativeViewController& screen) {
        std::vector<std::shared_ptr<ChallengeSelectButton>> buttons;
        for (const auto& cell : screen.tableView->visibleCells())
            buttons.push_back(std::dynamic_pointer_cast<ChallengeTableViewCell>(cell)->button());
        return buttons;
    }
    void choose(ChallengeSelectNativeViewController& screen, const std::vector<std::size_t>& rows) {
        for (const std::size_t row : rows)
            tap(*options(screen).at(row));
    }
    static std::vector<std::size_t> chosen(ChallengeSelectNativeViewController& screen) {
        std::vector<std::size_t> rows;
        const auto all = options(screen);
        for (std::size_t row = 0; row < all.size(); ++row) {
            const auto& image = all[row]->isChecked() ? screen.checkedCheckBox : screen.uncheckedCheckBox;
            EXPECT_EQ(all[row]->image(ControlState::normal)->name(), ResourceImage(image).get()->name());
            if (all[row]->isChecked()) rows.push_back(row);
        }
        return rows;
    }
};

TEST_F(SelectScreen, TheListIsAsLongAsItsRows) {
    struct Row {
        Orientation orientation;
        std::optional<std::size_t> options;
        double height;
    };
    const Row rows[] = {{Orientation::PORTRAIT, 3, 120},
                        {Orientation::LANDSCAPE, 3, 90},
                        {Orientation::PORTRAIT, 40, 1600},
                        {Orientation::PORTRAIT, 0, 0},
                        {Orientation::LANDSCAPE, std::nullopt, 0}};
    for (const UiType kind : {UiType::SINGLE_SELECT, UiType::MULTI_SELECT}) {
        for (const Row& row : rows) {
            SCOPED_TRACE(testing::Message() << rawValue(kind) << " " << row.height);
            CRes cRes = screenCRes(kind);
            cRes.challengeSelectInfo.reset();
            if (row.options) cRes.challengeSelectInfo.emplace(*row.options, StringTable{{"k", "Label"}});
            const auto screen = show<ChallengeSelectNativeViewController>(cRes, row.orientation);
            EXPECT_EQ(screen->selectorHeihgtConstraint->constant(), row.height);
            EXPECT_EQ(screen->tableView->visibleCells().size(), row.options.value_or(0))
                << "all are in sight";
        }
    }
}

TEST_F(SelectScreen, OptionsShowTheirFirstEntry) {
    CRes cRes = screenCRes(UiType::SINGLE_SELECT);
    cRes.challengeSelectInfo = {{{"b", "Second"}, {"a", "First"}}, {}};
    const auto screen = show<ChallengeSelectNativeViewController>(cRes);
    const auto shown = options(*screen);
    EXPECT_EQ(shown[0]->key, "a");
    EXPECT_EQ(shown[0]->title(ControlState::normal), "First");
    EXPECT_EQ(shown[0]->title(ControlState::highlighted), "First");
    EXPECT_EQ(shown[1]->title(ControlState::normal), "") << "an option without an entry";
    tap(*shown[1]);
    tap(*screen->nextButton.get());
    settle();
    EXPECT_THAT(actions->calls, ElementsAre("data() on global"));
}

TEST_F(SelectScreen, OfSingleOptionsTheLastTappedOneCountsWithAllOfItsKey) {
    CRes cRes = screenCRes(UiType::SINGLE_SELECT);
    cRes.challengeSelectInfo = {{{"a", "A"}}, {{"b", "B"}}, {{"a", "A again"}}};
    const auto screen = show<Single>(cRes);
    EXPECT_THAT(chosen(*screen), IsEmpty());
    choose(*screen, {0, 1});
    EXPECT_THAT(chosen(*screen), ElementsAre(1));
    choose(*screen, {2});
    EXPECT_THAT(chosen(*screen), ElementsAre(0, 2));
    tap(*screen->nextButton.get());
    platform.runFor(Seconds(0.99));
    EXPECT_THAT(actions->calls, IsEmpty());
    settle();
    EXPECT_THAT(actions->calls, ElementsAre("data(a) on global"));
}

TEST_F(SelectScreen, WithoutAChoiceASingleSelectionSpinsAndAMultipleOneSendsAnEmptyText) {
    const auto single = show<Single>(screenCRes(UiType::SINGLE_SELECT));
    tap(*single->nextButton.get());
    settle();
    EXPECT_NE(single->spinner, nullptr);
    EXPECT_THAT(actions->calls, IsEmpty());
    const auto multi = show<Multi>(screenCRes(UiType::MULTI_SELECT));
    tap(*multi->nextButton.get());
    settle();
    EXPECT_THAT(actions->calls, ElementsAre("data() on global"));
}

TEST_F(SelectScreen, OfMultipleOptionsTheCheckedOnesAreSentInTheListsOrder) {
    CRes cRes = screenCRes(UiType::MULTI_SELECT);
    cRes.whitelistingInfoText = "Trust this shop?";
    const auto screen = show<Multi>(cRes);
    choose(*screen, {2, 1, 0, 1});
    EXPECT_THAT(chosen(*screen), ElementsAre(0, 2));
    tap(*screen->nextButton.get());
    settle();
    EXPECT_THAT(actions->calls, ElementsAre("data(phone,app/N) on global"));
}

TEST_F(SelectScreen, TwinsHaveTheirOwnChoices) {
    const auto container = factory().getViewControllerContainer(screenCRes(UiType::MULTI_SELECT));
    const auto upright = show<Multi>(container);
    choose(*upright, {1});
    const auto lying =
        std::dynamic_pointer_cast<Multi>(container.controllersMap().at(Orientation::LANDSCAPE));
    stack->pushViewController(lying, UIAnimated::no);
    settle();
    EXPECT_THAT(chosen(*lying), IsEmpty());
    stack->popViewController(UIAnimated::no);
    settle();
    EXPECT_THAT(chosen(*upright), ElementsAre(1));
}

} // namespace
} // namespace korvane
