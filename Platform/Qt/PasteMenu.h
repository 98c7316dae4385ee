#pragma once

#include "Platform/Qt/Mirror.h"
#include "Platform/View/UITextField.h"
#include "Platform/View/UIWindow.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>

class QEvent;

namespace korvane {

/// The menu over a field that pastes into it, for who has no Ctrl+V: a finger or the mouse that stays on the
/// field opens it, and so does the mouse's right button. Nothing opens while there is nothing to paste. Main
/// queue only.
class PasteMenu final : public QObject {
    Q_OBJECT

public:
    /// @param host  the item that everything is shown in; it and the parts outlive the menu.
    PasteMenu(QQuickItem& host, PartFactory& parts, const std::shared_ptr<UIWindow>& window);

    /// Looks at what fingers and the mouse do, before the screens have it.
    void watch(const QEvent& event);
    /// Goes where the field is now, or closes without it.
    void synchronize();
    void close();

signals:
    /// The menu has opened: what is down is no more for the screens.
    void opened();

private slots:
    void paste();

private:
    void press(QPointF at);
    void open();

    QQuickItem& host_;
    PartFactory& parts_;
    std::weak_ptr<UIWindow> window_;
    std::weak_ptr<UITextField> field_; // that is pressed, or that the menu is for
    QPointer<QQuickItem> item_;
    QTimer holding_;
    QPointF start_;
};

} // namespace korvane
