#include "Platform/Qt/Fingers.h"

#include <QEasingCurve>
#include <QMouseEvent>
#include <QTouchEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <optional>

namespace korvane {

namespace {

constexpr std::uint64_t kMouse = 1;
constexpr std::uint64_t kFirstTouch = 2;

/// What one step of a wheel scrolls, in points, and its angle.
constexpr double kWheelStep = 60;
constexpr double kWheelAngle = 120;

/// A finger that rests so long before it leaves does not throw, in milliseconds.
constexpr qint64 kRest = 80;
/// How long what was thrown goes on, in milliseconds, and how far: in milliseconds of its first speed.
constexpr int kGlide = 700;
constexpr double kGlideReach = 230;
constexpr double kSlowestThrow = 0.15;

std::optional<UITouchPhase> phaseOf(QEventPoint::State state) {
    switch (state) {
    case QEventPoint::State::Pressed: return UITouchPhase::began;
    case QEventPoint::State::Updated: return UITouchPhase::moved;
    case QEventPoint::State::Released: return UITouchPhase::ended;
    default: return std::nullopt;
    }
}

/// The innermost view around a point that has something to scroll.
std::shared_ptr<UIScrollView> scrollAt(UIWindow& window, CGPoint point) {
    for (auto view = window.hitTest(point); view; view = view->superview())
        if (auto scroll = std::dynamic_pointer_cast<UIScrollView>(view); scroll && scroll->canScroll())
            return scroll;
    return nullptr;
}

CGPoint asPoint(QPointF point) {
    return {point.x(), point.y()};
}

} // namespace

Fingers::Fingers(std::weak_ptr<UIWindow> window) : window_(std::move(window)) {
    clock_.start();
    gliding_.setEasingCurve(QEasingCurve::OutCubic);
    gliding_.setDuration(kGlide);
}

bool Fingers::handle(QEvent& event) {
    const auto window = window_.lock();
    if (!window) return false;
    switch (event.type()) {
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel: touch(*window, static_cast<QTouchEvent&>(event)); return true;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::MouseButtonRelease: mouse(*window, static_cast<QMouseEvent&>(event)); return true;
    case QEvent::Wheel: wheel(*window, static_cast<QWheelEvent&>(event)); return true;
    default: return false;
    }
}

void Fingers::touch(UIWindow& window, const QTouchEvent& event) {
    std::vector<UIWindow::TouchPoint> all;
    for (const QEventPoint& point : event.points()) {
        const auto phase =
            event.type() == QEvent::TouchCancel ? UITouchPhase::cancelled : phaseOf(point.state());
        if (!phase) continue;
        const auto identifier = kFirstTouch + static_cast<std::uint64_t>(point.id());
        const auto some = news(window, {identifier, *phase, asPoint(point.position())});
        all.insert(all.end(), some.begin(), some.end());
    }
    if (!all.empty()) window.sendTouches(all);
}

void Fingers::mouse(UIWindow& window, const QMouseEvent& event) {
    const auto send = [&](UITouchPhase phase) {
        const auto some = news(window, {kMouse, phase, asPoint(event.position())});
        if (!some.empty()) window.sendTouches(some);
    };
    if (event.type() == QEvent::MouseMove) {
        if (event.buttons() & Qt::LeftButton) send(UITouchPhase::moved);
    } else if (event.button() == Qt::LeftButton) {
        send(event.type() == QEvent::MouseButtonRelease ? UITouchPhase::ended : UITouchPhase::began);
    }
}

void Fingers::loseMouse() {
    lose(kMouse);
}

void Fingers::loseTouches() {
    while (!fingers_.empty() && fingers_.rbegin()->first >= kFirstTouch)
        lose(fingers_.rbegin()->first);
}

void Fingers::lose(std::uint64_t identifier) {
    const auto found = fingers_.find(identifier);
    if (found == fingers_.end()) return;
    const Finger lost = found->second;
    fingers_.erase(found);
    const auto window = window_.lock();
    if (window && !lost.isScrolling) window->sendTouch({identifier, UITouchPhase::cancelled, lost.last});
}

/// A finger that comes down twice went up unseen in between.
std::vector<UIWindow::TouchPoint> Fingers::news(UIWindow& window, const UIWindow::TouchPoint& point) {
    if (point.phase == UITouchPhase::began) {
        lose(point.identifier);
        gliding_.stop();
        fingers_[point.identifier] = {point.location, point.location, clock_.elapsed(), 0,
                                      scrollAt(window, point.location)};
        return {point};
    }
    const auto found = fingers_.find(point.identifier);
    if (found == fingers_.end()) return {};
    Finger& finger = found->second;
    const bool isMoved = point.phase == UITouchPhase::moved;
    std::vector<UIWindow::TouchPoint> told;
    const double strayed = point.location.y - finger.start.y;
    if (isMoved && !finger.isScrolling && std::abs(strayed) > kSlack && finger.scroll.lock()) {
        finger.isScrolling = true;
        finger.last.y = finger.start.y + std::copysign(kSlack, strayed);
        told.push_back({point.identifier, UITouchPhase::cancelled, point.location});
    } else if (!finger.isScrolling) {
        told.push_back(point);
    }
    if (finger.isScrolling && isMoved) drag(finger, point.location);
    if (isMoved) return told;
    const Finger left = finger;
    fingers_.erase(found);
    if (left.isScrolling && clock_.elapsed() - left.when < kRest) glide(left.scroll.lock(), left.speed);
    return told;
}

void Fingers::drag(Finger& finger, CGPoint to) {
    const auto scroll = finger.scroll.lock();
    if (!scroll) return;
    const double up = finger.last.y - to.y;
    const qint64 now = clock_.elapsed();
    const qint64 span = std::max<qint64>(1, now - finger.when);
    finger.speed = (finger.speed + up / static_cast<double>(span)) / 2;
    finger.when = now;
    finger.last = to;
    scroll->scrollBy(up);
}

/// What a finger throws goes on for a while and comes to rest.
void Fingers::glide(const std::shared_ptr<UIScrollView>& scroll, double speed) {
    if (!scroll || std::abs(speed) < kSlowestThrow) return;
    gliding_.disconnect();
    gliding_.setStartValue(scroll->contentOffset().y);
    gliding_.setEndValue(scroll->contentOffset().y + speed * kGlideReach);
    QObject::connect(&gliding_, &QVariantAnimation::valueChanged, &gliding_,
                     [weak = std::weak_ptr(scroll)](const QVariant& offset) {
                         if (const auto thrown = weak.lock()) thrown->scrollTo(offset.toDouble());
                     });
    gliding_.start();
}

void Fingers::wheel(UIWindow& window, const QWheelEvent& event) {
    const auto scroll = scrollAt(window, asPoint(event.position()));
    if (!scroll) return;
    gliding_.stop();
    const double down = event.pixelDelta().isNull() ? event.angleDelta().y() * kWheelStep / kWheelAngle
                                                    : event.pixelDelta().y();
    scroll->scrollBy(-down);
}

} // namespace korvane
