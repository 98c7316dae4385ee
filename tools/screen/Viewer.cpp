#include "tools/screen/Viewer.h"

#include "Platform/Platform.h"
#include "tools/common/Tool.h"

#include <QDateTime>
#include <QFileInfo>
#include <QQmlComponent>
#include <QQmlEngine>

namespace korvane::screen {

namespace {

/// From the last sign of a change: a file may come in several pieces, or as a new one in the old one's place.
constexpr int kPause = 100; // milliseconds

QQuickItem* makeNotice(QQuickWindow& window) {
    auto* const engine = new QQmlEngine(&window);
    QQmlComponent component(engine, QUrl("qrc:/Notice.qml"));
    auto* const notice = qobject_cast<QQuickItem*>(component.create());
    notice->setParent(&window);
    notice->setParentItem(window.contentItem());
    return notice;
}

} // namespace

Viewer::Viewer(const Options& options) : options_(options), notice_(makeNotice(stage_.window())) {
    pause_.setSingleShot(true);
    pause_.setInterval(kPause);
    QObject::connect(&pause_, &QTimer::timeout, &pause_, [this] { loadIfChanged(); });
    const auto wait = [this] { pause_.start(); };
    QObject::connect(&watcher_, &QFileSystemWatcher::fileChanged, &pause_, wait);
    QObject::connect(&watcher_, &QFileSystemWatcher::directoryChanged, &pause_, wait);
    stage_.window().setTitle(QFileInfo(QString::fromStdString(options_.cres)).fileName());
    stage_.set(options_.setting);
    stage_.window().show();
    load();
}

/// Other files in their folders change as well, and what has been typed would be lost for nothing.
void Viewer::loadIfChanged() {
    if (stamp() != loaded_) load();
}

QString Viewer::stamp() const {
    QString stamp;
    for (const std::string& name : {options_.cres, options_.theme}) {
        const QFileInfo file(QString::fromStdString(name));
        stamp += QStringLiteral("%1 %2 ").arg(file.lastModified().toMSecsSinceEpoch()).arg(file.size());
    }
    return stamp;
}

void Viewer::load() {
    loaded_ = stamp();
    watch();
    try {
        stage_.show(readScript(options_.cres, options_.theme));
        tell({});
        if (options_.setting.hasKeyboard)
            Platform::current().dispatch().mainQueue().async([this] { stage_.openKeyboard(); });
    } catch (const std::runtime_error& error) {
        stage_.clear();
        tell(QString::fromUtf8(error.what()));
    }
}

/// The folders too, in which a new file takes the place of one that was watched.
void Viewer::watch() {
    for (const std::string& name : {options_.cres, options_.theme}) {
        if (name.empty()) continue;
        const QFileInfo file(QString::fromStdString(name));
        for (const QString& path : {file.absoluteFilePath(), file.absolutePath()})
            if (QFileInfo::exists(path)) watcher_.addPath(path);
    }
}

void Viewer::tell(const QString& reason) {
    if (!reason.isEmpty() && reason != notice_->property("text").toString())
        tools::complain("korvane-screen", reason.toStdString());
    notice_->setProperty("text", reason);
}

} // namespace korvane::screen
