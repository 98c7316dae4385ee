#pragma once

#include "Platform/Native/JobQueue.h"
#include "Platform/Native/MainLoop.h"

#include <QObject>

#include <functional>

namespace korvane {

/// The event loop of the thread that made this object, as the main queue's loop: one posted event for each
/// job, so that input and frames come in between. Any thread.
class QtMainLoop final : public QObject, public MainLoop {
public:
    QtMainLoop() = default;

    void post(std::function<void()> job) override;
    void runOne() override;
    /// On the whole thread, also outside of jobs: a wait for one would never end.
    [[nodiscard]] bool isCurrent() const override;

protected:
    bool event(QEvent* event) override;

private:
    JobQueue jobs_;
};

} // namespace korvane
