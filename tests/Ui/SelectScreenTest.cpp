#include "Ui/Screens/ChallengeSelectNativeViewController.h"
#include "tests/Ui/ScreenSupport.h"

namespace korvane {
namespace {

using Screen = ChallengeSelectNativeViewController;

class SelectScreen : public ScreenTest {};

TEST_F(SelectScreen, OptionsShowTheirFirstEntryAndTheLastTappedOneCountsWithAllOfItsKey) {
    CRes cRes = screenCRes(UiType::SINGLE_SELECT);
    cRes.challengeSelectInfo = {{{"b", "Second"}, {"a", "First"}}, {}, {{"a", "Again"}}, {{"c", "C"}}};
    const auto screen = show<Screen>(cRes);
    std::vector<std::shared_ptr<ChallengeSelectButton>> options;
    for (const auto& cell : screen->tableView->visibleCells())
        options.push_back(std::static_pointer_cast<ChallengeTableViewCell>(cell)->button());
    EXPECT_EQ(options.at(0)->title(ControlState::highlighted), "First");
    EXPECT_EQ(options.at(1)->title(ControlState::normal), "") << "an option without an entry";
    for (const std::size_t row : {3U, 1U, 2U})
        tap(*options.at(row));
    for (std::size_t row = 0; row < 4; ++row) {
        auto& image = row % 2 == 0 ? screen->checkedCheckBox : screen->uncheckedCheckBox;
        EXPECT_EQ(options.at(row)->image(ControlState::normal), image.get());
        EXPECT_EQ(options.at(row)->isChecked(), row % 2 == 0);
    }
    tap(*screen->nextButton.get());
    settle();
    EXPECT_THAT(actions->calls, testing::ElementsAre("data(a/N) on global"));
}

} // namespace
} // namespace korvane
