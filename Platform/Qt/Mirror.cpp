#include "Platform/Qt/Mirror.h"

#include <QElapsedTimer>
#include <QQmlEngine>

#include <algorithm>

namespace korvane {

Mirror::Mirror(QQuickItem& host, QQmlEngine& engine) : host_(host), parts_(engine) {}

Mirror::~Mirror() {
    if (root_) remove(*root_);
}

void Mirror::synchronize(const std::shared_ptr<UIWindow>& window) {
    const bool isNew = !root_;
    if (isNew) root_ = &add(window, host_);
    const std::uint64_t latest = window->treeRevision();
    synchronize(*root_, *window, isNew ? ItemArrival::withOthers : ItemArrival::none);
    seen_ = latest;
}

ViewItem* Mirror::itemOf(const UIView& view) const {
    const auto found = items_.find(&view);
    return found == items_.end() ? nullptr : found->second;
}

void Mirror::hideForCapture(bool hide) {
    for (const auto& [view, item] : items_)
        if (!away_.contains(view)) item->hideForCapture(hide);
}

void Mirror::synchronize(ViewItem& item, const UIView& view, ItemArrival arrival) {
    const bool isKnown = arrival == ItemArrival::none;
    if (isKnown && view.treeRevision() <= seen_) return;
    if (!isKnown || view.revision() > seen_) {
        item.synchronize(view, parts_, arrival);
        if (isKnown) moveUnchanged(view);
    }
    synchronizeChildren(item, view, arrival);
}

/// A view that is scrolled moves its subviews without changing them.
void Mirror::moveUnchanged(const UIView& in) {
    for (const auto& view : in.subviews())
        if (ViewItem* const item = itemOf(*view); item && view->revision() <= seen_)
            item->synchronizePlace(*view, ItemArrival::none);
}

/// Items are those of the subviews, in their order; a view that was given a role needs another kind of item.
void Mirror::synchronizeChildren(ViewItem& item, const UIView& view, ItemArrival arrival) {
    const auto& subviews = view.subviews();
    for (QQuickItem* const child : item.childItems()) {
        auto* const known = qobject_cast<ViewItem*>(child);
        if (!known || std::ranges::find(subviews, known->view()) != subviews.end()) continue;
        if (!putAside(*known, view)) remove(*known);
    }
    for (std::size_t index = 0; index < subviews.size(); ++index) {
        const UIView& subview = *subviews[index];
        ViewItem* known = itemOf(subview);
        const bool isUsable = known && known->parentItem() == &item && PartFactory::suits(*known, subview) &&
                              (!away_.contains(&subview) || isWhole(subview));
        if (known && !isUsable) remove(*known);
        if (!isUsable) known = &add(subviews[index], item);
        known->setZ(static_cast<double>(index));
        if (away_.contains(&subview))
            comeBack(*known, subview);
        else if (isUsable)
            synchronize(*known, subview, arrival);
        else
            synchronize(*known, subview,
                        arrival == ItemArrival::none ? ItemArrival::onItsOwn : ItemArrival::withOthers);
    }
    if (arrival != ItemArrival::none) planAhead(view);
}

/// Whose turn comes before all of it has been made ahead is made anew.
bool Mirror::isWhole(const UIView& view) const {
    return itemOf(view) &&
           std::ranges::all_of(view.subviews(), [this](const auto& subview) { return isWhole(*subview); });
}

/// What has changed meanwhile is taken over, and everything if the surroundings have.
void Mirror::comeBack(ViewItem& item, const UIView& view) {
    const Away away = away_.extract(&view).mapped();
    const bool isSameStyle = away.style == view.traitCollection().userInterfaceStyle;
    const std::uint64_t seen = std::exchange(seen_, isSameStyle ? away.seen : 0);
    synchronize(item, view, ItemArrival::none);
    seen_ = seen;
}

bool Mirror::putAside(ViewItem& item, const UIView& from) {
    const auto view = item.view();
    const auto turns = from.alternates();
    if (!view || std::ranges::find(turns, view) == turns.end()) return false;
    item.setVisible(false);
    away_.try_emplace(view.get(), Away{seen_, from.traitCollection().userInterfaceStyle});
    return true;
}

// Items ahead of their turn.

void Mirror::planAhead(const UIView& view) {
    ViewItem* const in = itemOf(view);
    for (const auto& alternate : view.alternates())
        if (!itemOf(*alternate)) ahead_.push_back({alternate, in, alternate, 0});
}

void Mirror::workAhead() {
    constexpr qint64 kMost = 4; // milliseconds
    QElapsedTimer clock;
    clock.start();
    while (!ahead_.empty() && clock.elapsed() < kMost) {
        const Job job = ahead_.back();
        ahead_.pop_back();
        make(job);
    }
}

/// A view whose turn has come meanwhile has its item already. What changes while the rest of it is made is looked
/// at when its turn comes.
void Mirror::make(const Job& job) {
    const auto view = job.view.lock();
    const auto away = job.away.lock();
    if (!view || !away || !job.in || away->superview() || itemOf(*view)) return;
    ViewItem& item = add(view, *job.in);
    item.synchronize(*view, parts_, ItemArrival::withOthers);
    item.setZ(job.level);
    if (view == away) {
        item.setVisible(false);
        away_[view.get()] = {seen_, view->traitCollection().userInterfaceStyle};
    }
    const auto& subviews = view->subviews();
    for (std::size_t index = subviews.size(); index-- > 0;)
        ahead_.push_back({subviews[index], &item, away, static_cast<double>(index)});
}

ViewItem& Mirror::add(const std::shared_ptr<UIView>& view, QQuickItem& in) {
    ViewItem* const item = parts_.makeItem(*view);
    item->setView(view);
    item->setParent(&in);
    item->setParentItem(&in);
    items_[view.get()] = item;
    return *item;
}

/// With all that lies in it.
void Mirror::remove(ViewItem& item) {
    std::erase_if(items_, [this, &item](const auto& entry) {
        if (entry.second != &item && !item.isAncestorOf(entry.second)) return false;
        away_.erase(entry.first);
        return true;
    });
    delete &item;
}

} // namespace korvane
