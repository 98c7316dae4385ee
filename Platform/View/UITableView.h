#pragma once

#include "Platform/Export.h"
#include "Platform/View/UIScrollView.h"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace korvane {

/// A row of a table. Tables here have the one section 0.
struct IndexPath {
    int section = 0;
    int row = 0;
    friend bool operator==(const IndexPath&, const IndexPath&) = default;
};

class UITableView;

/// One row's view, which serves other rows once its own has scrolled away. Main queue only.
class KORVANE_EXPORT UITableViewCell : public UIView {
public:
    UITableViewCell();

    [[nodiscard]] UIViewKind kind() const noexcept override { return UIViewKind::tableCell; }

    /// Fills the cell; what the row shows goes in here.
    [[nodiscard]] const std::shared_ptr<UIView>& contentView() const noexcept { return contentView_; }
    [[nodiscard]] const std::string& reuseIdentifier() const noexcept { return reuseIdentifier_; }

    void layoutSubviews() override;

private:
    friend class UITableView;

    std::shared_ptr<UIView> contentView_;
    std::string reuseIdentifier_;
};

class KORVANE_EXPORT UITableViewDataSource {
public:
    virtual ~UITableViewDataSource() = default;

    virtual int numberOfRowsInSection(UITableView& tableView, int section) = 0;
    /// A cell filled for the row; not null.
    virtual std::shared_ptr<UITableViewCell> cellForRowAt(UITableView& tableView, IndexPath indexPath) = 0;
};

enum class UITableViewCellSeparatorStyle { none, singleLine };

/// Rows of one height below each other. Cells there are for rows in sight alone, and for those that one
/// screenful more of what the table lies in would show: what tables cost does not depend on how long they
/// are. Main queue only.
class KORVANE_EXPORT UITableView : public UIScrollView {
public:
    using CellFactory = std::function<std::shared_ptr<UITableViewCell>()>;

    UITableView();

    [[nodiscard]] UIViewKind kind() const noexcept override { return UIViewKind::table; }

    [[nodiscard]] std::shared_ptr<UITableViewDataSource> dataSource() const { return dataSource_.lock(); }
    /// Asks it for everything anew, at the next layout.
    void setDataSource(std::weak_ptr<UITableViewDataSource> dataSource);

    [[nodiscard]] double rowHeight() const noexcept { return rowHeight_; }
    void setRowHeight(double height);
    [[nodiscard]] UITableViewCellSeparatorStyle separatorStyle() const noexcept { return separatorStyle_; }
    void setSeparatorStyle(UITableViewCellSeparatorStyle style) {
        assign(separatorStyle_, style, UIViewChange::paint);
    }

    /// Says how cells of an identifier are made.
    void registerCell(CellFactory factory, const std::string& forCellReuseIdentifier);
    /// A cell that no row uses, or a new one. An identifier that nobody registered ends
    /// the process (`fatalError`).
    [[nodiscard]] std::shared_ptr<UITableViewCell> dequeueReusableCell(const std::string& withIdentifier);

    /// The cells that there are now, from the top.
    [[nodiscard]] std::vector<std::shared_ptr<UITableViewCell>> visibleCells() const;
    /// Null for a row that has none now.
    [[nodiscard]] std::shared_ptr<UITableViewCell> cellForRow(IndexPath at) const;
    /// No value for a cell that shows no row.
    [[nodiscard]] std::optional<IndexPath> indexPath(const UITableViewCell& forCell) const;
    [[nodiscard]] CGRect rectForRow(IndexPath at) const;
    /// Scrolls the table, and what it lies in, as little as shows the row, at once: the next
    /// layout gives it a cell.
    void scrollToRow(IndexPath at);

    [[nodiscard]] CGSize contentSize() const override;
    [[nodiscard]] bool isFocusGroup() const override { return true; }
    void layoutSubviews() override;

protected:
    void didScroll() override { setNeedsLayout(); }
    void placeDidChange() override { setNeedsLayout(); }
    [[nodiscard]] UIAccessibilityRole defaultAccessibilityRole() const override {
        return UIAccessibilityRole::list;
    }

private:
    struct RowRange {
        int first = 0;
        int end = 0;
    };

    void reload();
    [[nodiscard]] RowRange rowsWithCells() const;
    void recycle(std::map<int, std::shared_ptr<UITableViewCell>>::iterator cell);
    void showRow(int row);

    std::weak_ptr<UITableViewDataSource> dataSource_;
    std::map<std::string, CellFactory> factories_;
    std::multimap<std::string, std::shared_ptr<UITableViewCell>> spareCells_;
    std::map<int, std::shared_ptr<UITableViewCell>> cells_; // by row
    UITableViewCellSeparatorStyle separatorStyle_ = UITableViewCellSeparatorStyle::singleLine;
    double rowHeight_ = 44;
    int rows_ = 0;
    bool needsReload_ = true;
};

} // namespace korvane
