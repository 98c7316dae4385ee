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
    /// The button of a row, which is scrolled to.
    std::shared_ptr<ChallengeSelectButton> option(const ChallengeSelectNativeViewController& screen,
                                                  std::size_t row) {
        const IndexPath path{0, static_cast<int>(row)};
        screen.tableView->scrollToRow(path);
        window->layoutIfNeeded();
        return std::static_pointer_cast<ChallengeTableViewCell>(screen.tableView->cellForRow(path))->button();
    }
    void choose(const ChallengeSelectNativeViewController& screen, const std::vector<std::size_t>& rows) {
        for (const std::size_t row : rows)
            tap(*option(screen, row));
    }
    std::vector<std::size_t> chosen(ChallengeSelectNativeViewController& screen) {
        std::vector<std::size_t> rows;
        for (const auto& cell : screen.tableView->visibleCells()) {
            const auto row = static_cast<std::size_t>(screen.tableView->indexPath(*cell)->row);
            const auto button = std::static_pointer_cast<ChallengeTableViewCell>(cell)->button();
            auto& image = screen.isChosen(row) ? screen.checkedCheckBox : screen.uncheckedCheckBox;
            EXPECT_EQ(button->isChecked(), screen.isChosen(row)) << row;
            EXPECT_EQ(button->image(ControlState::normal)->name(), image.get()->name()) << row;
        }
        for (std::size_t row = 0; row < screen.optionCount(); ++row)
            if (screen.isChosen(row)) rows.push_back(row);
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
            EXPECT_EQ(screen->tableView->numberOfRows(), static_cast<int>(row.options.value_or(0)));
        }
    }
}

TEST_F(SelectScreen, OptionsShowTheirFirstEntry) {
    CRes cRes = screenCRes(UiType::SINGLE_SELECT);
    cRes.challengeSelectInfo = {{{"b", "Second"}, {"a", "First"}}, {}};
    const auto screen = show<ChallengeSelectNativeViewController>(cRes);
    const auto first = option(*screen, 0), second = option(*screen, 1);
    EXPECT_EQ(first->key, "a");
    EXPECT_EQ(first->title(ControlState::normal), "First");
    EXPECT_EQ(first->title(ControlState::highlighted), "First");
    EXPECT_EQ(second->title(ControlState::normal), "") << "an option without an entry";
    tap(*second);
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

/// Cells come and go with what is seen, and what is chosen stays.
TEST_F(SelectScreen, AmongThirtyThousandOptionsAnyCanBeChosen) {
    CRes cRes = screenCRes(UiType::MULTI_SELECT);
    cRes.challengeSelectInfo.emplace();
    for (int row = 0; row < 30000; ++row)
        cRes.challengeSelectInfo->push_back({{"k" + std::to_string(row), "Label"}});
    const auto screen = show<Multi>(cRes);
    for (const std::size_t row : {29999U, 0U, 15000U, 7U, 7U}) {
        choose(*screen, {row});
        EXPECT_LT(screen->tableView->visibleCells().size(), 80U);
        EXPECT_EQ(option(*screen, row)->key, "k" + std::to_string(row));
    }
    EXPECT_THAT(chosen(*screen), ElementsAre(0, 15000, 29999));
    tap(*screen->nextButton.get());
    settle();
    EXPECT_THAT(actions->calls, ElementsAre("data(k0,k15000,k29999) on global"));
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
