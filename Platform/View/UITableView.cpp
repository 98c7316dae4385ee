#include "Platform/View/UITableView.h"

#include "Platform/Failure.h"

#include <algorithm>
#include <cmath>

namespace korvane {

UITableViewCell::UITableViewCell() : contentView_(std::make_shared<UIView>()) {
    addSubview(contentView_);
}

void UITableViewCell::layoutSubviews() {
    contentView_->setFrame({{0, 0}, bounds().size});
}

UITableView::UITableView() {
    watchPlace();
}

void UITableView::setDataSource(std::weak_ptr<UITableViewDataSource> dataSource) {
    dataSource_ = std::move(dataSource);
    needsReload_ = true;
    didChange(UIViewChange::layout);
}

void UITableView::setRowHeight(double height) {
    assign(rowHeight_, height, UIViewChange::layout);
}

void UITableView::registerCell(CellFactory factory, const std::string& forCellReuseIdentifier) {
    factories_[forCellReuseIdentifier] = std::move(factory);
}

std::shared_ptr<UITableViewCell> UITableView::dequeueReusableCell(const std::string& withIdentifier) {
    if (const auto spare = spareCells_.find(withIdentifier); spare != spareCells_.end()) {
        auto cell = std::move(spare->second);
        spareCells_.erase(spare);
        return cell;
    }
    const auto factory = factories_.find(withIdentifier);
    if (factory == factories_.end()) fatalError("No cell is registered as \"" + withIdentifier + "\".");
    auto cell = factory->second();
    cell->reuseIdentifier_ = withIdentifier;
    return cell;
}

std::vector<std::shared_ptr<UITableViewCell>> UITableView::visibleCells() const {
    std::vector<std::shared_ptr<UITableViewCell>> cells;
    for (const auto& [row, cell] : cells_)
        cells.push_back(cell);
    return cells;
}

std::shared_ptr<UITableViewCell> UITableView::cellForRow(IndexPath at) const {
    const auto found = cells_.find(at.row);
    return found == cells_.end() ? nullptr : found->second;
}

std::optional<IndexPath> UITableView::indexPath(const UITableViewCell& forCell) const {
    for (const auto& [row, cell] : cells_)
        if (cell.get() == &forCell) return IndexPath{0, row};
    return std::nullopt;
}

CGRect UITableView::rectForRow(IndexPath at) const {
    return {{0, at.row * rowHeight_}, {bounds().size.width, rowHeight_}};
}

void UITableView::scrollToRow(IndexPath at) {
    const CGRect row = rectForRow(at);
    if (isScrollEnabled()) scrollRectToVisible(row, UIAnimated::no);
    scrollIntoSight(row);
}

CGSize UITableView::contentSize() const {
    return {bounds().size.width, rows_ * rowHeight_};
}

void UITableView::recycle(std::map<int, std::shared_ptr<UITableViewCell>>::iterator cell) {
    const auto spare = cell->second;
    cells_.erase(cell);
    spare->removeFromSuperview();
    spareCells_.emplace(spare->reuseIdentifier_, spare);
}

void UITableView::showRow(int row) {
    const auto source = dataSource_.lock();
    if (!source) return;
    if (!cells_.contains(row)) {
        auto cell = source->cellForRowAt(*this, {0, row});
        addSubview(cell);
        cells_.emplace(row, std::move(cell));
    }
    cells_[row]->setFrame(rectForRow({0, row}));
}

void UITableView::reload() {
    const auto source = dataSource_.lock();
    rows_ = source ? source->numberOfRowsInSection(*this, 0) : 0;
    while (!cells_.empty())
        recycle(cells_.begin());
}

/// A table can be as long as its rows and lie in what scrolls: it is seen through that. The screenful beyond
/// is for whoever goes from one control to the next without looking, as assistive technology does.
UITableView::RowRange UITableView::rowsWithCells() const {
    double top = contentOffset().y;
    double bottom = top + bounds().size.height;
    for (auto view = superview(); view; view = view->superview()) {
        const auto* scroll = dynamic_cast<const UIScrollView*>(view.get());
        if (!scroll) continue;
        const CGRect seen = scroll->convertTo(this, scroll->bounds());
        top = std::max(top, seen.origin.y - seen.size.height);
        bottom = std::min(bottom, CGRectGetMaxY(seen) + seen.size.height);
    }
    const auto row = [this](double exact) {
        return static_cast<int>(std::clamp(exact, 0.0, static_cast<double>(rows_)));
    };
    return {row(std::floor(top / rowHeight_)), row(std::ceil(bottom / rowHeight_))};
}

/// Cells come and go with what is in sight; those that stay keep their state.
void UITableView::layoutSubviews() {
    if (std::exchange(needsReload_, false)) reload();
    const RowRange rows = rowsWithCells();
    for (auto cell = cells_.begin(); cell != cells_.end();) {
        const auto next = std::next(cell);
        if (cell->first < rows.first || cell->first >= rows.end) recycle(cell);
        cell = next;
    }
    for (int row = rows.first; row < rows.end; ++row)
        showRow(row);
}

} // namespace korvane
