#include "Platform/Qt/Mirror.h"

#include <QAccessible>
#include <QQmlEngine>

#include <algorithm>

namespace korvane {

Mirror::Mirror(QQuickItem& host, QQmlEngine& engine) : host_(host), parts_(engine) {}

Mirror::~Mirror() {
    if (root_) remove(*root_);
}

void Mirror::synchronize(const UIWindow& window) {
    const bool isNew = !root_;
    if (isNew) {
        const auto view = const_cast<UIWindow&>(window).shared_from_this();
        root_ = &add(std::static_pointer_cast<UIView>(view), host_);
    }
    const std::uint64_t latest = window.treeRevision();
    synchronize(*root_, window, isNew ? ItemArrival::withOthers : ItemArrival::none);
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
    if (arrival == ItemArrival::none && view.treeRevision() <= seen_) return;
    // A scrolled view moves its subviews without changing them.
    const bool isChanged = arrival != ItemArrival::none || view.revision() > seen_;
    if (isChanged) item.synchronize(view, parts_, arrival);
    if (isChanged && arrival == ItemArrival::none)
        for (const auto& subview : view.subviews())
            if (ViewItem* const known = itemOf(*subview); known && subview->revision() <= seen_)
                known->synchronize(*subview, parts_, ItemArrival::none);
    synchronizeChildren(item, view, arrival);
}

/// Items are those of the subviews, in their order; a view that was given a role needs another kind of item.
void Mirror::synchronizeChildren(ViewItem& item, const UIView& view, ItemArrival arrival) {
    const auto& subviews = view.subviews();
    for (QQuickItem* const child : item.childItems()) {
        auto* const known = qobject_cast<ViewItem*>(child);
        if (!known) continue;
        const auto shown = known->view();
        if (!shown || std::ranges::find(subviews, shown) == subviews.end()) remove(*known);
    }
    for (std::size_t index = 0; index < subviews.size(); ++index) {
        ViewItem* known = itemOf(*subviews[index]);
        if (known && known->parentItem() != &item) {
            remove(*known);
            known = nullptr;
        }
        const bool isNew = !known;
        if (isNew) known = &add(subviews[index], item);
        known->setZ(static_cast<double>(index));
        const bool isAlone = isNew && arrival == ItemArrival::none;
        synchronize(*known, *subviews[index],
                    isAlone ? ItemArrival::onItsOwn
                    : isNew ? ItemArrival::withOthers
                            : arrival);
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
