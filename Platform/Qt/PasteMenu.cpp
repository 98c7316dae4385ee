#include "Platform/Qt/PasteMenu.h"

#include "Platform/Qt/Keys.h"
#include "Platform/Qt/Parts/Values.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QRegularExpression>
#include <QTouchEvent>

#include <algorithm>

namespace korvane {

namespace {

/// How long something stays down until it opens the menu, in milliseconds, and how far it may stray.
constexpr int kHold = 500;
constexpr double kSlack = 10;
/// Between the menu and the field.
constexpr double kGap = 8;
/// Above every view, and above the ring.
constexpr double kMenuLevel = 2e9;
constexpr double kTextSize = 17;

/// In the language of Qt's own texts, where the application has installed that, without the mark of its shortcut.
QString pasteWord() {
    static const QRegularExpression kMark(QStringLiteral("\\(&.\\)|&"));
    return QCoreApplication::translate("QWidgetTextControl", "&Paste").remove(kMark);
}

} // namespace

PasteMenu::PasteMenu(QQuickItem& host, PartFactory& parts, const std::shared_ptr<UIWindow>& window)
    : host_(host), parts_(parts), window_(window) {
    holding_.setSingleShot(true);
    holding_.setInterval(kHold);
    connect(&holding_, &QTimer::timeout, this, &PasteMenu::open);
}

void PasteMenu::watch(const QEvent& event) {
    switch (event.type()) {
    case QEvent::MouseButtonPress: {
        const auto& mouse = static_cast<const QMouseEvent&>(event);
        press(mouse.position());
        if (mouse.button() == Qt::RightButton) open();
        return;
    }
    case QEvent::TouchBegin:
        press(static_cast<const QTouchEvent&>(event).points().first().position());
        return;
    case QEvent::MouseMove:
    case QEvent::TouchUpdate: {
        const auto& moved = static_cast<const QPointerEvent&>(event);
        const QPointF way = moved.points().first().position() - start_;
        if (moved.pointCount() > 1 || way.manhattanLength() > kSlack) holding_.stop();
        return;
    }
    case QEvent::MouseButtonRelease:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel: holding_.stop(); return;
    default: return;
    }
}

void PasteMenu::press(QPointF at) {
    close();
    const auto window = window_.lock();
    if (!window) return;
    start_ = at;
    field_ = std::dynamic_pointer_cast<UITextField>(window->hitTest({at.x(), at.y()}));
    if (!field_.expired()) holding_.start();
}

void PasteMenu::open() {
    holding_.stop();
    const auto field = field_.lock();
    if (!field || QGuiApplication::clipboard()->text().isEmpty()) return;
    emit opened();
    if (!item_) {
        item_ = parts_.make("PasteMenu", host_);
        item_->setZ(kMenuLevel);
        connect(item_, SIGNAL(chosen()), this, SLOT(paste()));
    }
    const UIUserInterfaceStyle style = field->traitCollection().userInterfaceStyle;
    item_->setProperty("word", pasteWord());
    item_->setProperty("font", drawnFont(UIFont::systemFont(kTextSize)));
    item_->setProperty("ground", asColor(UIColor::label(), style));
    item_->setProperty("ink", asColor(UIColor::systemBackground(), style));
    item_->setVisible(true);
    synchronize();
}

void PasteMenu::close() {
    holding_.stop();
    field_.reset();
    if (item_) item_->setVisible(false);
}

/// Above the field, or below where there is no room.
void PasteMenu::synchronize() {
    if (!item_ || !item_->isVisible()) return;
    const auto field = field_.lock();
    if (!field || field->window() != window_.lock() || !field->isShown()) {
        close();
        return;
    }
    const QRectF at = asRect(field->convertTo(nullptr, field->bounds()));
    const double above = at.top() - kGap - item_->height();
    const double most = std::max(0.0, host_.width() - item_->width());
    item_->setPosition({std::clamp(at.center().x() - item_->width() / 2, 0.0, most),
                        above >= 0 ? above : at.bottom() + kGap});
}

void PasteMenu::paste() {
    const auto window = window_.lock();
    const auto field = field_.lock();
    close();
    if (!window || !field) return;
    field->becomeFirstResponder();
    pasteClipboard(*window);
}

} // namespace korvane
