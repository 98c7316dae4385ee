#pragma once

#include "Platform/Qt/Parts/PartFactory.h"
#include "Platform/Qt/Parts/ViewItem.h"
#include "Platform/View/UIWindow.h"

#include <QPointer>

#include <cstdint>
#include <unordered_map>

namespace korvane {

/// Keeps one item for every view of a window: whatever has changed since the last frame is taken over, the
/// rest is not looked at. Main queue only.
class Mirror {
public:
    /// @param host  the item that everything is shown in.
    Mirror(QQuickItem& host, QQmlEngine& engine);
    Mirror(const Mirror&) = delete;
    Mirror& operator=(const Mirror&) = delete;
    ~Mirror();

    /// Takes the window over as it is laid out now.
    void synchronize(const std::shared_ptr<UIWindow>& window);

    /// Null for a view that has no item.
    [[nodiscard]] ViewItem* itemOf(const UIView& view) const;

    [[nodiscard]] PartFactory& parts() noexcept { return parts_; }

    /// Leaves what is hidden from capture out of a picture, or lets it in again.
    void hideForCapture(bool hide);

private:
    void synchronize(ViewItem& item, const UIView& view, ItemArrival arrival);
    /// Puts the items of subviews that have not changed themselves where they are seen now.
    void moveUnchanged(const UIView& in);
    void synchronizeChildren(ViewItem& item, const UIView& view, ItemArrival arrival);
    [[nodiscard]] ViewItem& add(const std::shared_ptr<UIView>& view, QQuickItem& in);
    void remove(ViewItem& item);

    QQuickItem& host_;
    PartFactory parts_;
    std::unordered_map<const UIView*, ViewItem*> items_;
    QPointer<ViewItem> root_;
    std::uint64_t seen_ = 0;
};

} // namespace korvane
