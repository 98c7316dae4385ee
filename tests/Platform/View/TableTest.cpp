#include "Platform/View/UIScrollView.h"
#include "Platform/View/UITableView.h"
#include "tests/Platform/View/ViewSupport.h"

namespace korvane {
namespace {

/// Rows of 40 points in a table that shows three of them.
class Table : public ViewTest {
protected:
    struct Rows : UITableViewDataSource {
        int numberOfRowsInSection(UITableView& /*tableView*/, int /*section*/) override { return count; }
        std::shared_ptr<UITableViewCell> cellForRowAt(UITableView& of, IndexPath path) override {
            auto cell = of.dequeueReusableCell("row");
            cell->setTag(path.row);
            return cell;
        }
        int count = 10;
    };

    Table() {
        const auto make = [this] {
            ++made;
            return std::make_shared<UITableViewCell>();
        };
        table->registerCell(make, "row");
        table->setRowHeight(40);
        table->setDataSource(rows);
        window->layoutIfNeeded();
    }
    std::vector<int> shown() {
        window->layoutIfNeeded();
        std::vector<int> tags;
        for (const auto& cell : table->visibleCells())
            tags.push_back(cell->tag());
        return tags;
    }

    int made = 0;
    std::shared_ptr<UITableView> table = add<UITableView>(rootView(), {{0, 100}, {200, 120}});
    std::shared_ptr<Rows> rows = std::make_shared<Rows>();
};

/// Of 30,000 rows below each other in what scrolls, 400 points of it in sight. Each step moves on
/// from the one before.
TEST_F(Table, AsLongAsItsRowsItHasCellsForAScreenfulEachWayAlone) {
    const auto scroll = add<UIScrollView>(rootView(), {{0, 0}, {200, 400}});
    const auto other = add<UIScrollView>(rootView(), {{200, 0}, {100, 100}});
    other->setContentOffset({0, 1000});
    const auto around = add(*scroll, {{0, 0}, {200, 2e6}});
    around->addSubview(table);
    rows->count = 30000;
    table->setFrame({{0, 1000}, {200, 1.2e6}});
    table->setDataSource(rows);
    const auto moveTo = [](UIView& view, double y) { view.setFrame({{0, y}, view.frame().size}); };
    const auto scrollTo = [&](double y) { scroll->setContentOffset({0, y}); };
    const auto showRow = [&](int row) { table->scrollToRow({0, row}); };
    const struct {
        const char* name;
        std::function<void()> change;
        int first;
        std::size_t count;
    } steps[] = {
        {"far below what is seen", [] {}, 0, 0},
        {"within a screenful of it", [&] { scrollTo(400); }, 0, 5},
        {"at the top", [&] { scrollTo(1000); }, 0, 20},
        {"in the middle", [&] { scrollTo(601000); }, 14990, 30},
        {"what it lies in moves", [&] { moveTo(*around, 400); }, 14980, 30},
        {"it moves itself", [&] { moveTo(*table, 600); }, 14990, 30},
        {"at the end", [&] { showRow(29999); }, 29980, 20},
        {"back at the top", [&] { showRow(0); }, 0, 20},
        {"it lies in something else", [&] { other->addSubview(around); }, 0, 5},
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(step.name);
        step.change();
        const std::vector<int> cells = shown();
        EXPECT_EQ(cells.size(), step.count);
        EXPECT_EQ(cells.empty() ? step.first : cells.front(), step.first);
    }
    EXPECT_LE(made, 60) << "cells, for whatever was seen";
}

TEST_F(Table, ACellInSightStaysTheSame) {
    EXPECT_THAT(shown(), testing::ElementsAre(0, 1, 2));
    const auto cell = table->cellForRow({0, 1});
    table->setContentOffset({0, 10});
    EXPECT_THAT(shown(), testing::ElementsAre(0, 1, 2, 3));
    EXPECT_EQ(table->cellForRow({0, 1}), cell);
}

} // namespace
} // namespace korvane
