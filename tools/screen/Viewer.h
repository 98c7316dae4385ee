#pragma once

#include "tools/screen/Stage.h"

#include <QFileSystemWatcher>
#include <QTimer>

namespace korvane::screen {

/// A window with the screen of a CRes, which follows its files: what cannot be shown is told in it, and on
/// standard error, until they are mended. Main queue only.
class Viewer {
public:
    explicit Viewer(const Options& options);

private:
    /// If a file is not what it was.
    void loadIfChanged();
    void load();
    void watch();
    /// Of what the files are at this moment.
    [[nodiscard]] QString stamp() const;
    void tell(const QString& reason);

    const Options options_;
    Stage stage_;
    QFileSystemWatcher watcher_;
    QTimer pause_;
    QString loaded_;     // the stamp of what is shown
    QQuickItem* notice_; // the window's
};

} // namespace korvane::screen
