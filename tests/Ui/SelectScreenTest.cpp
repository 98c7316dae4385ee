#include "Ui/Screens/ChallengeSelectNativeViewController.h"
#include "tests/Ui/ScreenSupport.h"

namespace korvane {
namespace {

using testing::ElementsAre;

using Screen = ChallengeSelectNativeViewController;

class SelectScreen : public ScreenTest {
protected:
    /// The button of a row, which is scrolled to.
    ChallengeSelectButton& option(const Screen& screen, int row) {
        screen.tableView->scrollToRow({0, row});
        window->layoutIfNeeded();
        return *std::static_pointer_cast<ChallengeTableViewCell>(screen.tableView->cellForRow({0, row}))
                    ->button();
    }
    /// Sends what is chosen once the buttons in sight have shown it.
    std::vector<std::string> sent(Screen& screen) {
        for (const auto& cell : screen.tableView->visibleCells()) {
            const bool isChosen =
                screen.isChosen(static_cast<std::size_t>(screen.tableView->indexPath(*cell)->row));
            const auto button = std::static_pointer_cast<ChallengeTableViewCell>(cell)->button();
            auto& image = isChosen ? screen.checkedCheckBox : screen.uncheckedCheckBox;
            EXPECT_EQ(button->isChecked(), isChosen);
            EXPECT_EQ(button->image(ControlState::normal)->name(), image.get()->name());
        }
        tap(*screen.nextButton.get());
        settle();
        return std::exchange(actions->calls, {});
    }
};

TEST_F(SelectScreen, TheListIsAsLongAsItsRows) {
    const std::tuple<Orientation, std::optional<std::size_t>, double> rows[] = {
        {Orientation::PORTRAIT, 3, 120},
        {Orientation::LANDSCAPE, 3, 90},
        {Orientation::PORTRAIT, 40, 1600},
        {Orientation::LANDSCAPE, std::nullopt, 0}};
    for (const UiType kind : {UiType::SINGLE_SELECT, UiType::MULTI_SELECT})
        for (const auto& [orientation, options, height] : rows) {
            CRes cRes = screenCRes(kind);
            cRes.challengeSelectInfo.reset();
            if (options) cRes.challengeSelectInfo.emplace(*options, StringTable{{"k", "Label"}});
            const auto screen = show<Screen>(cRes, orientation);
            EXPECT_EQ(screen->tableView->frame().size.height, height) << rawValue(kind);
            EXPECT_EQ(screen->tableView->numberOfRows(), static_cast<int>(options.value_or(0)));
        }
}

TEST_F(SelectScreen, OfSingleOptionsTheFirstEntryIsShownAndTheLastTappedOneCountsWithAllOfItsKey) {
    CRes cRes = screenCRes(UiType::SINGLE_SELECT);
    cRes.challengeSelectInfo = {{{"b", "Second"}, {"a", "First"}}, {}, {{"a", "Again"}}, {{"c", "C"}}};
    const auto screen = show<Screen>(cRes);
    for (const auto state : {ControlState::normal, ControlState::highlighted}) {
        EXPECT_EQ(option(*screen, 0).title(state), "First");
        EXPECT_EQ(option(*screen, 1).title(state), "") << "an option without an entry";
    }
    for (const int row : {3, 1, 2})
        tap(option(*screen, row));
    EXPECT_TRUE(screen->isChosen(0));
    EXPECT_FALSE(screen->isChosen(1));
    EXPECT_TRUE(screen->isChosen(2));
    EXPECT_THAT(sent(*screen), ElementsAre("data(a) on global"));
    tap(option(*screen, 1));
    EXPECT_THAT(sent(*screen), ElementsAre("data() on global"));
}

/// Cells come and go with what is seen, and what is chosen stays.
TEST_F(SelectScreen, AmongThirtyThousandOptionsAnyCanBeChosen) {
    CRes cRes = screenCRes(UiType::MULTI_SELECT);
    cRes.challengeSelectInfo.emplace();
    for (int row = 0; row < 30000; ++row)
        cRes.challengeSelectInfo->push_back({{"k" + std::to_string(row), "Label"}});
    const auto screen = show<Screen>(cRes);
    for (const int row : {29999, 0, 15000, 7, 7}) {
        tap(option(*screen, row));
        EXPECT_LT(screen->tableView->visibleCells().size(), 80U);
        EXPECT_EQ(option(*screen, row).key, "k" + std::to_string(row));
    }
    EXPECT_THAT(sent(*screen), ElementsAre("data(k0,k15000,k29999) on global"));
}

} // namespace
} // namespace korvane
