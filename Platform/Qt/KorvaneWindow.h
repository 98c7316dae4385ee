#pragma once

#include "Platform/Qt/KorvaneHost.h"

#include <QQuickWindow>

namespace korvane {

/// A window for the library's screens alone, for applications that have no Qt Quick scene of their
/// own. It is the device's screen: its size is the screen's. After a `QtPlatform`, before whose end it
/// goes. Main queue only.
class KorvaneWindow : public QQuickWindow {
    Q_OBJECT

public:
    KorvaneWindow();

    /// Fills the window.
    [[nodiscard]] KorvaneHost& host() noexcept { return *host_; }

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    KorvaneHost* host_; // its parent's
};

} // namespace korvane
