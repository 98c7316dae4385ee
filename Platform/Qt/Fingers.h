#pragma once

#include "Platform/View/UIScrollView.h"
#include "Platform/View/UIWindow.h"

#include <QElapsedTimer>
#include <QVariantAnimation>

#include <map>
#include <memory>
#include <vector>

class QEvent;
class QMouseEvent;
class QTouchEvent;
class QWheelEvent;

namespace korvane {

/// Carries what fingers do back into the tree: they and the mouse as touches, dragging and the wheel as
/// scrolling. A finger that scrolls is taken away from what it touched. Main queue only.
class Fingers {
public:
    explicit Fingers(std::weak_ptr<UIWindow> window);

    /// @return whether the event is one of these; it has been carried out then.
    bool handle(QEvent& event);

    /// No more will be heard of the mouse, or of the touches, that are down: they are cancelled.
    void loseMouse();
    void loseTouches();

private:
    /// How far a finger may stray before it scrolls, in points.
    static constexpr double kSlack = 10;

    struct Finger {
        CGPoint start;
        CGPoint last;
        qint64 when = 0;  // in milliseconds
        double speed = 0; // upwards, in points per millisecond
        std::weak_ptr<UIScrollView> scroll;
        bool isScrolling = false;
    };

    void touch(UIWindow& window, const QTouchEvent& event);
    void mouse(UIWindow& window, const QMouseEvent& event);
    void wheel(UIWindow& window, const QWheelEvent& event);

    /// Lets go of one finger, if it is down.
    void lose(std::uint64_t identifier);
    /// @return the finger's news for the tree; none while it scrolls.
    [[nodiscard]] std::vector<UIWindow::TouchPoint> news(UIWindow& window, const UIWindow::TouchPoint& point);
    void drag(Finger& finger, CGPoint to);
    void glide(const std::shared_ptr<UIScrollView>& scroll, double speed);

    std::weak_ptr<UIWindow> window_;
    std::map<std::uint64_t, Finger> fingers_;
    QElapsedTimer clock_;
    QVariantAnimation gliding_;
};

} // namespace korvane
