#include "Platform/Qt/QtMainLoop.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>

#include <utility>

namespace korvane {

namespace {

QEvent::Type jobEvent() {
    static const int type = QEvent::registerEventType();
    return static_cast<QEvent::Type>(type);
}

} // namespace

void QtMainLoop::post(std::function<void()> job) {
    jobs_.push(std::move(job));
    QCoreApplication::postEvent(this, new QEvent(jobEvent()));
}

void QtMainLoop::runOne() {
    jobs_.pop()();
}

bool QtMainLoop::isCurrent() const {
    return QThread::currentThread() == thread();
}

/// A job that was run by `runOne` leaves its event behind.
bool QtMainLoop::event(QEvent* event) {
    if (event->type() != jobEvent()) return QObject::event(event);
    if (const auto job = jobs_.popWithin(Seconds{0})) job();
    return true;
}

} // namespace korvane
