#include "Platform/Qt/Mirror.h"

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
        item->hideForCapture(hide);
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
        if (known && std::ranges::find(subviews, known->view()) == subviews.end()) remove(*known);
    }
    for (std::size_t index = 0; index < subviews.size(); ++index) {
        const UIView& subview = *subviews[index];
        ViewItem* known = itemOf(subview);
        const bool isUsable = known && known->parentItem() == &item && PartFactory::suits(*known, subview);
        if (known && !isUsable) remove(*known);
        if (!isUsable) known = &add(subviews[index], item);
        known->setZ(static_cast<double>(index));
        if (isUsable)
            synchronize(*known, subview, arrival);
        else
            synchronize(*known, subview,
                        arrival == ItemArrival::none ? ItemArrival::onItsOwn : ItemArrival::withOthers);
    }
}

ViewItem& Mirror::add(const std::shared_ptr<UIView>& view, QQuickItem& in) {
    ViewItem* const item = parts_.makeItem(*view);
    item->setView(view);
    item->setParent(&in);
    item->setParentItem(&in);
    items_[view.get()] = item;
    return *item;
}

void Mirror::remove(ViewItem& item) {
    for (QQuickItem* const child : item.childItems())
        if (auto* const known = qobject_cast<ViewItem*>(child)) remove(*known);
    std::erase_if(items_, [&item](const auto& entry) { return entry.second == &item; });
    delete &item;
}

} // namespace korvane
