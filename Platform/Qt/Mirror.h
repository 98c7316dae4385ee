#pragma once

#include "Platform/Qt/Parts/PartFactory.h"
#include "Platform/Qt/Parts/ViewItem.h"
#include "Platform/View/UIWindow.h"

#include <QPointer>

#include <cstdint>
#include <unordered_map>
#include <vector>

namespace korvane {

/// Keeps one item for every view of a window: whatever has changed since the last frame is taken over, the
/// rest is not looked at. Views that take turns have their items ahead of their turn, and keep them while they
/// are away. Main queue only.
class Mirror {
public:
    /// @param host  the item that everything is shown in.
    Mirror(QQuickItem& host, QQmlEngine& engine);
    Mirror(const Mirror&) = delete;
    Mirror& operator=(const Mirror&) = delete;
    ~Mirror();

    /// Takes the window over as it is laid out now.
    void synchronize(const std::shared_ptr<UIWindow>& window);

    /// Whether items can be made ahead.
    [[nodiscard]] bool hasWork() const noexcept { return !ahead_.empty(); }
    /// Makes some of them, for so long that no frame is late.
    void workAhead();

    /// Null for a view that has no item.
    [[nodiscard]] ViewItem* itemOf(const UIView& view) const;

    [[nodiscard]] PartFactory& parts() noexcept { return parts_; }

    /// Leaves what is hidden from capture out of a picture, or lets it in again.
    void hideForCapture(bool hide);

private:
    /// An item that is not seen, and what was taken over of its view: all up to a revision, in one style.
    struct Away {
        std::uint64_t seen = 0;
        UIUserInterfaceStyle style = UIUserInterfaceStyle::light;
    };
    /// An item that is still to be made, for a view of the one that is away.
    struct Job {
        std::weak_ptr<UIView> view;
        QPointer<ViewItem> in;
        std::weak_ptr<UIView> away;
        double level = 0;
    };

    void synchronize(ViewItem& item, const UIView& view, ItemArrival arrival);
    [[nodiscard]] bool isWhole(const UIView& view) const;
    void comeBack(ViewItem& item, const UIView& view);
    /// @return whether the item has been put aside for the view's next turn.
    bool putAside(ViewItem& item, const UIView& from);
    void planAhead(const UIView& view);
    void make(const Job& job);
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
    std::unordered_map<const UIView*, Away> away_;
    std::vector<Job> ahead_; // the next one last
};

} // namespace korvane
