#include "examples/checkout/Hand.h"

#include <QTest>

namespace korvane::checkout {

namespace {

constexpr int kFinger = 0;

} // namespace

Hand::Hand(QQuickWindow& window) : window_(window), screen_(QTest::createTouchDevice()) {}

void Hand::tap(QPointF place) {
    const QPoint point = place.toPoint();
    QTest::touchEvent(&window_, screen_.get()).press(kFinger, point, &window_);
    QTest::touchEvent(&window_, screen_.get()).release(kFinger, point, &window_);
}

void Hand::drag(QPointF from, QPointF to) {
    // A step a frame, in milliseconds; a finger that rests before it leaves throws nothing.
    constexpr int kSteps = 8;
    constexpr int kStep = 20;
    constexpr int kRest = 120;
    QTest::touchEvent(&window_, screen_.get()).press(kFinger, from.toPoint(), &window_);
    for (int step = 1; step <= kSteps; ++step) {
        const QPointF place = from + (to - from) * step / kSteps;
        QTest::touchEvent(&window_, screen_.get()).move(kFinger, place.toPoint(), &window_);
        QTest::qWait(kStep);
    }
    QTest::qWait(kRest);
    QTest::touchEvent(&window_, screen_.get()).release(kFinger, to.toPoint(), &window_);
}

void Hand::press(Qt::Key key) {
    QTest::keyClick(&window_, key);
}

void Hand::type(const QString& text) {
    for (const QChar character : text)
        QTest::keyClick(&window_, character.toLatin1());
}

} // namespace korvane::checkout
