#include "Platform/Qt/FocusRing.h"

#include "Platform/Qt/Parts/Values.h"
#include "Platform/View/UIScrollView.h"

#include <QQuickWindow>

#include <algorithm>

namespace korvane {

namespace {

/// How far the ring reaches beyond its view, and the least radius of its corners.
constexpr double kReach = 4;
constexpr double kLeastCorner = 8;
/// Above every view.
constexpr double kRingLevel = 1e9;

QRectF reaching(const QRectF& rect) {
    return rect.adjusted(-kReach, -kReach, kReach, kReach);
}

/// The part of the host in which a view can be seen: what scrolls cuts it off, and bars cover it.
QRectF sightOf(const ViewItem& item, const QQuickItem& host) {
    QRectF sight = host.boundingRect();
    for (const QQuickItem* around = item.parentItem(); around && around != &host;
         around = around->parentItem()) {
        const auto* of = qobject_cast<const ViewItem*>(around);
        const auto view = of ? of->view() : nullptr;
        if (view && view->kind() == UIViewKind::navigationBar) return sight;
        const auto* scroll = dynamic_cast<const UIScrollView*>(view.get());
        if (!scroll || !scroll->canScroll()) continue;
        const CGRect seen = UIEdgeInsetsInsetRect({{0, 0}, scroll->bounds().size}, scroll->coveredInset());
        sight &= reaching(around->mapRectToItem(&host, asRect(seen)));
    }
    return sight;
}

} // namespace

FocusRing::FocusRing(QQuickItem& host, Mirror& mirror, const std::shared_ptr<UIWindow>& window)
    : host_(host), mirror_(mirror) {
    connect(host_.window(), &QQuickWindow::activeFocusItemChanged, this,
            [this, weak = std::weak_ptr(window)] {
                if (const auto shown = weak.lock()) followQt(*shown);
            });
}

void FocusRing::synchronize(UIWindow& window) {
    const auto view = window.focusSystem().focusedView();
    ViewItem* const item = view ? mirror_.itemOf(*view) : nullptr;
    if (item != focused_)
        giveFocus(item, window.focusSystem().isMovingBack() ? Qt::BacktabFocusReason : Qt::TabFocusReason);
    isShown_ = item && window.focusSystem().isShown() && view->kind() != UIViewKind::webView;
    if (!ring_) {
        if (!isShown_) return;
        sight_ = new QQuickItem(&host_);
        sight_->setZ(kRingLevel);
        sight_->setClip(true);
        ring_ = mirror_.parts().make("Ring", *sight_);
        connect(host_.window(), &QQuickWindow::afterAnimating, this, &FocusRing::place);
    }
    sight_->setVisible(isShown_);
    if (!isShown_) return;
    const UIUserInterfaceStyle style = window.traits().userInterfaceStyle;
    ring_->setProperty("accent", asColor(view->focusColor(), style));
    ring_->setProperty("halo", asColor(UIColor::systemBackground(), style));
    ring_->setProperty("radius", std::max(kLeastCorner, view->layer().cornerRadius() + kReach));
    place();
}

void FocusRing::giveFocus(ViewItem* to, Qt::FocusReason reason) {
    if (focused_) focused_->focusTarget().setFocus(false);
    focused_ = to;
    if (to) to->focusTarget().setFocus(true, reason);
}

/// Qt's focus has gone to an item by another way, as into a page that was touched.
void FocusRing::followQt(UIWindow& window) {
    for (const QQuickItem* item = host_.window()->activeFocusItem(); item && item != &host_;
         item = item->parentItem())
        if (const auto* of = qobject_cast<const ViewItem*>(item)) {
            const auto view = of->view();
            if (view && view != window.focusSystem().focusedView()) window.focusSystem().focus(view);
            return;
        }
}

/// Around the item as it is drawn in this frame.
void FocusRing::place() {
    if (!isShown_ || !focused_) return;
    const QRectF sight = sightOf(*focused_, host_);
    const QRectF around =
        reaching(focused_->mapRectToItem(&host_, focused_->boundingRect())) & host_.boundingRect();
    sight_->setPosition(sight.topLeft());
    sight_->setSize(sight.size());
    ring_->setPosition(around.topLeft() - sight.topLeft());
    ring_->setSize(around.size());
}

} // namespace korvane
