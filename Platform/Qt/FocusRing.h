#pragma once

#include "Platform/Qt/Mirror.h"
#include "Platform/View/UIWindow.h"

#include <QObject>
#include <QPointer>

#include <memory>

namespace korvane {

/// Shows in a window's items where its focus is: the item of the focused view has Qt's focus, so that
/// assistive technology follows, and a ring lies around it while keys move it. A page draws its own. Main
/// queue only.
class FocusRing final : public QObject {
public:
    /// @param host  the item that everything is shown in; it and the mirror outlive the ring.
    FocusRing(QQuickItem& host, Mirror& mirror, const std::shared_ptr<UIWindow>& window);

    /// Takes over where the focus of the window is now.
    void synchronize(UIWindow& window);

private:
    void giveFocus(ViewItem* to, Qt::FocusReason reason);
    void followQt(UIWindow& window);
    void place();

    QQuickItem& host_;
    Mirror& mirror_;
    QPointer<QQuickItem> sight_; // where the ring is not cut off
    QPointer<QQuickItem> ring_;
    QPointer<ViewItem> focused_;
    bool isShown_ = false;
};

} // namespace korvane
