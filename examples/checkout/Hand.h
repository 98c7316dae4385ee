#pragma once

#include <QPointF>
#include <QPointingDevice>
#include <QQuickWindow>
#include <QString>

namespace korvane::checkout {

/// A hand at a window: its touches and keys go the way of real ones, through Qt's event system. Places are
/// the scene's. Main thread.
class Hand {
public:
    explicit Hand(QQuickWindow& window);

    void tap(QPointF place);
    /// Puts a finger down, moves it, and lifts it where it came to rest.
    void drag(QPointF from, QPointF to);
    void press(Qt::Key key);
    /// Types on the machine's own keyboard.
    void type(const QString& text);

private:
    QQuickWindow& window_;
    std::unique_ptr<QPointingDevice> screen_;
};

} // namespace korvane::checkout
