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

/// A tap that nothing in the cell took selects its row.
void UITableViewCell::touchesEnded(const UITouches& touches) {
    const auto table = std::dynamic_pointer_cast<UITableView>(superview());
    if (table && pointInside(touches.front()->location(this))) table->cellWasTapped(*this);
}

void UITableView::setDataSource(std::weak_ptr<UITableViewDataSource> dataSource) {
    dataSource_ = std::move(dataSource);
    reloadData();
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
        cell->prepareForReuse();
        return cell;
    }
    const auto factory = factories_.find(withIdentifier);
    if (factory == factories_.end()) fatalError("No cell is registered as \"" + withIdentifier + "\".");
    auto cell = factory->second();
    cell->reuseIdentifier_ = withIdentifier;
    return cell;
}

void UITableView::reloadData() {
    needsReload_ = true;
    didChange(UIViewChange::layout);
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

void UITableView::selectRow(std::optional<IndexPath> at) {
    selected_ = at;
    for (const auto& [row, cell] : cells_)
        cell->setSelected(at && at->row == row);
}

void UITableView::cellWasTapped(const UITableViewCell& cell) {
    const auto path = indexPath(cell);
    if (!path) return;
    selectRow(path);
    if (const auto told = delegate_.lock()) told->didSelectRowAt(*this, *path);
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
        cell->setSelected(selected_ && selected_->row == row);
        addSubview(cell);
        cells_.emplace(row, std::move(cell));
    }
    cells_[row]->setFrame({{0, row * rowHeight_}, {bounds().size.width, rowHeight_}});
}

/// Cells come and go with what is in sight; those that stay keep their state.
void UITableView::layoutSubviews() {
    if (std::exchange(needsReload_, false)) {
        const auto source = dataSource_.lock();
        rows_ = source ? source->numberOfRowsInSection(*this, 0) : 0;
        if (selected_ && selected_->row >= rows_) selected_.reset();
        while (!cells_.empty())
            recycle(cells_.begin());
    }
    const double top = contentOffset().y / rowHeight_;
    const double bottom = (contentOffset().y + bounds().size.height) / rowHeight_;
    const double most = rows_;
    const int first = static_cast<int>(std::clamp(std::floor(top), 0.0, most));
    const int last = static_cast<int>(std::clamp(std::ceil(bottom), 0.0, most));
    for (auto cell = cells_.begin(); cell != cells_.end();) {
        const auto next = std::next(cell);
        if (cell->first < first || cell->first >= last) recycle(cell);
        cell = next;
    }
    for (int row = first; row < last; ++row)
        showRow(row);
}

} // namespace korvane
