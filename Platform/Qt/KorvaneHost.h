#pragma once

#include "Platform/NotificationCenter.h"
#include "Platform/View/UIWindow.h"

#include <QImage>
#include <QQuickItem>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace korvane {

class Fingers;
class FocusRing;
class Mirror;
class PasteMenu;
class QtPlatform;

/// The item in which the library's screens appear: laid over an application's own scene, it shows nothing and
/// lets all input through until a challenge begins. Its size is the device's screen: wider than high is
/// landscape. One at a time; after a `QtPlatform`, which it ends before. Main queue only. In QML:
///
///     import Korvane 1.0
///     KorvaneHost { anchors.fill: parent }
class KorvaneHost : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// Dark surroundings; at first as the system's palette is.
    Q_PROPERTY(bool dark READ isDark WRITE setDark NOTIFY darkChanged)
    /// Multiplies the size of all text but bars' and keys'; from 0.5 to 3, at first 1.
    Q_PROPERTY(double textScale READ textScale WRITE setTextScale NOTIFY textScaleChanged)
    /// How far a camera or a bar of the system covers each side, in points.
    Q_PROPERTY(double safeAreaTop READ safeAreaTop WRITE setSafeAreaTop NOTIFY safeAreaChanged)
    Q_PROPERTY(double safeAreaBottom READ safeAreaBottom WRITE setSafeAreaBottom NOTIFY safeAreaChanged)
    Q_PROPERTY(double safeAreaLeft READ safeAreaLeft WRITE setSafeAreaLeft NOTIFY safeAreaChanged)
    Q_PROPERTY(double safeAreaRight READ safeAreaRight WRITE setSafeAreaRight NOTIFY safeAreaChanged)
    /// Whether a screen of the library stands or comes.
    Q_PROPERTY(bool active READ isActive NOTIFY activeChanged)

public:
    explicit KorvaneHost(QQuickItem* parent = nullptr);
    ~KorvaneHost() override;

    [[nodiscard]] bool isDark() const noexcept;
    void setDark(bool dark);
    [[nodiscard]] double textScale() const noexcept;
    void setTextScale(double scale);
    [[nodiscard]] double safeAreaTop() const noexcept { return window_->safeAreaInsets().top; }
    [[nodiscard]] double safeAreaBottom() const noexcept { return window_->safeAreaInsets().bottom; }
    [[nodiscard]] double safeAreaLeft() const noexcept { return window_->safeAreaInsets().left; }
    [[nodiscard]] double safeAreaRight() const noexcept { return window_->safeAreaInsets().right; }
    void setSafeAreaTop(double points) { setSafeArea(&UIEdgeInsets::top, points); }
    void setSafeAreaBottom(double points) { setSafeArea(&UIEdgeInsets::bottom, points); }
    void setSafeAreaLeft(double points) { setSafeArea(&UIEdgeInsets::left, points); }
    void setSafeAreaRight(double points) { setSafeArea(&UIEdgeInsets::right, points); }
    [[nodiscard]] bool isActive() const noexcept { return isActive_; }

    /// A picture of this item as anyone may have it, in the window's density: views that are hidden from
    /// capture are left blank. Null if the item is in no window.
    [[nodiscard]] QImage picture();

    /// The tree of views that is shown.
    [[nodiscard]] const std::shared_ptr<UIWindow>& uiWindow() const noexcept { return window_; }

    /// The item that shows a view, once a frame has been made of it; null for a view that is not shown.
    [[nodiscard]] QQuickItem* itemOf(const UIView& view) const;

signals:
    void darkChanged();
    void textScaleChanged();
    void safeAreaChanged();
    void activeChanged();

protected:
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void updatePolish() override;
    bool event(QEvent* event) override;
    void mouseUngrabEvent() override;
    void touchUngrabEvent() override;

private:
    void setSafeArea(double UIEdgeInsets::*side, double points);
    void resizeScreen();
    [[nodiscard]] bool handleFinger(QEvent& event);
    [[nodiscard]] bool handleKey(QEvent& event);
    void setActive(bool isActive);
    void loseFingers();

    std::shared_ptr<UIWindow> window_;
    std::unique_ptr<Mirror> mirror_;
    std::unique_ptr<FocusRing> ring_;
    std::unique_ptr<PasteMenu> menu_;
    std::unique_ptr<Fingers> fingers_;
    NotificationObserver editing_;
    QTimer idle_;
    bool isActive_ = false;
};

} // namespace korvane
