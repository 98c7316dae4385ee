#pragma once

#include <QQuickItem>

#include <memory>

class QQmlEngine;

namespace korvane {

class WKWebView;

/// The item of one page. It fills itself with what its engine draws.
class Page : public QQuickItem {
    Q_OBJECT

public:
    using QQuickItem::QQuickItem;

    /// After a change of the view: shows its page if it is another one than before.
    virtual void synchronize() = 0;
};

/// What shows banks' pages. The rest of this filling does not know which engine it is: another one is a class
/// like this in a file like `WebEngine.cpp`, and what `threat-model.md` says of pages is its to keep. Main
/// thread only.
class PageEngine {
public:
    /// The one that this library was built with; null without any: banks' pages are then never shown.
    [[nodiscard]] static const PageEngine* ofBuild();

    PageEngine() = default;
    PageEngine(const PageEngine&) = delete;
    PageEngine& operator=(const PageEngine&) = delete;
    virtual ~PageEngine() = default;

    /// Before the `QGuiApplication` is made.
    virtual void prepare() const = 0;

    /// @param view    held weakly.
    /// @param parent  the page's owner.
    [[nodiscard]] virtual Page* makePage(QQmlEngine& engine, const std::shared_ptr<WKWebView>& view,
                                         QQuickItem& parent) const = 0;
};

} // namespace korvane
