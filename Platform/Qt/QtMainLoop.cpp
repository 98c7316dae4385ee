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
    {
        const std::lock_guard lock(mutex_);
        jobs_.push_back(std::move(job));
    }
    hasJobs_.notify_one();
    QCoreApplication::postEvent(this, new QEvent(jobEvent()));
}

void QtMainLoop::runOne() {
    std::function<void()> job;
    {
        std::unique_lock lock(mutex_);
        hasJobs_.wait(lock, [this] { return !jobs_.empty(); });
        job = std::move(jobs_.front());
        jobs_.pop_front();
    }
    job();
}

bool QtMainLoop::isCurrent() const {
    return QThread::currentThread() == thread();
}

/// A job that was run by `runOne` leaves its event behind.
bool QtMainLoop::event(QEvent* event) {
    if (event->type() != jobEvent()) return QObject::event(event);
    std::function<void()> job;
    {
        const std::lock_guard lock(mutex_);
        if (jobs_.empty()) return true;
        job = std::move(jobs_.front());
        jobs_.pop_front();
    }
    job();
    return true;
}

} // namespace korvane
