#include "Platform/View/UIScrollView.h"
#include "Platform/View/UITableView.h"
#include "tests/Platform/View/ViewSupport.h"

namespace korvane {
namespace {

using testing::ElementsAre;

class Rows : public UITableViewDataSource {
public:
    int numberOfRowsInSection(UITableView& /*tableView*/, int /*section*/) override { return count; }
    std::shared_ptr<UITableViewCell> cellForRowAt(UITableView& table, IndexPath path) override {
        auto cell = table.dequeueReusableCell("row");
        cell->setTag(path.row);
        asked.push_back(path.row);
        return cell;
    }

    int count = 10;
    std::vector<int> asked;
};

class Table : public ViewTest {
protected:
    /// Rows of 40 points in a table that shows three of them.
    Table() {
        table = add<UITableView>(rootView(), {{0, 100}, {200, 120}});
        table->registerCell(
            [this] {
                ++made;
                return std::make_shared<UITableViewCell>();
            },
            "row");
        table->setRowHeight(40);
        rows = std::make_shared<Rows>();
        table->setDataSource(rows);
        window->layoutIfNeeded();
    }
    std::vector<int> shown() {
        std::vector<int> tags;
        for (const auto& cell : table->visibleCells())
            tags.push_back(cell->tag());
        return tags;
    }

    int made = 0;
    std::shared_ptr<UITableView> table;
    std::shared_ptr<Rows> rows;
};

/// Of 30,000 rows below each other in what scrolls, 400 points of it in sight. Each step moves on from the
/// one before.
TEST_F(Table, AsLongAsItsRowsItHasCellsForAScreenfulEachWayAlone) {
    const auto scroll = add<UIScrollView>(rootView(), {{0, 0}, {200, 400}});
    const auto other = add<UIScrollView>(rootView(), {{200, 0}, {100, 100}});
    other->setContentOffset({0, 1000});
    const auto around = add<UIView>(*scroll, {{0, 0}, {200, 2e6}});
    around->addSubview(table);
    rows->count = 30000;
    table->setFrame({{0, 1000}, {200, 1.2e6}});
    table->reloadData();
    const auto moveTo = [](UIView& view, double y) { view.setFrame({{0, y}, view.frame().size}); };
    struct Row {
        const char* name;
        std::function<void()> change;
        int first;
        int count;
    };
    const std::vector<Row> steps{
        {"far below what is seen", [] {}, 0, 0},
        {"within a screenful of it",
         [&] {
             scroll->setContentOffset({0, 400});
         },
         0, 5},
        {"at the top",
         [&] {
             scroll->setContentOffset({0, 1000});
         },
         0, 20},
        {"in the middle",
         [&] {
             scroll->setContentOffset({0, 601000});
         },
         14990, 30},
        {"what it lies in moves", [&] { moveTo(*around, 400); }, 14980, 30},
        {"it moves itself", [&] { moveTo(*table, 600); }, 14990, 30},
        {"at the end",
         [&] {
             table->scrollToRow({0, 29999});
         },
         29980, 20},
        {"more is seen",
         [&] {
             scroll->setFrame({{0, 0}, {200, 800}});
         },
         29970, 30},
        {"back at the top",
         [&] {
             table->scrollToRow({0, 0});
         },
         0, 40},
        {"it lies in something else", [&] { other->addSubview(around); }, 0, 5},
    };
    for (const Row& step : steps) {
        SCOPED_TRACE(step.name);
        step.change();
        window->layoutIfNeeded();
        const std::vector<int> cells = shown();
        EXPECT_EQ(cells.size(), static_cast<std::size_t>(step.count));
        EXPECT_EQ(cells.empty() ? step.first : cells.front(), step.first);
    }
    EXPECT_LE(made, 60) << "cells, for whatever was seen";
}

TEST_F(Table, ACellInSightStaysTheSameUntilAReload) {
    EXPECT_THAT(shown(), ElementsAre(0, 1, 2));
    const auto cell = table->cellForRow({0, 1});
    table->setContentOffset({0, 10});
    window->layoutIfNeeded();
    EXPECT_THAT(shown(), ElementsAre(0, 1, 2, 3));
    EXPECT_EQ(table->cellForRow({0, 1}), cell);
    EXPECT_EQ(table->cellForRow({0, 3})->frame(), (CGRect{{0, 120}, {200, 40}}));
    rows->asked.clear();
    rows->count = 2;
    table->reloadData();
    window->layoutIfNeeded();
    EXPECT_THAT(rows->asked, ElementsAre(0, 1));
    EXPECT_EQ(table->contentSize(), (CGSize{200, 80}));
}

} // namespace
} // namespace korvane
