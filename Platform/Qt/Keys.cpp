#include "Platform/Qt/Keys.h"

#include "Platform/Security/Secret.h"
#include "Platform/View/UITextField.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>

#include <optional>

namespace korvane {

namespace {

std::optional<UIKeyboardKey> keyOf(const QKeyEvent& event) {
    using enum UIKeyboardKey;
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) return std::nullopt;
    switch (event.key()) {
    case Qt::Key_Tab: return event.modifiers() & Qt::ShiftModifier ? backTab : tab;
    case Qt::Key_Backtab: return backTab;
    case Qt::Key_Space: return space;
    case Qt::Key_Return:
    case Qt::Key_Enter: return enter;
    case Qt::Key_Escape: return escape;
    case Qt::Key_Up: return up;
    case Qt::Key_Down: return down;
    case Qt::Key_Left: return left;
    case Qt::Key_Right: return right;
    case Qt::Key_PageUp: return pageUp;
    case Qt::Key_PageDown: return pageDown;
    case Qt::Key_Backspace: return backspace;
    default: return std::nullopt;
    }
}

bool isPrinted(const QKeyEvent& event) {
    return !event.text().isEmpty() && event.text().front().isPrint();
}

bool type(UIFocusSystem& focus, const QString& text, bool (UIFocusSystem::*way)(const std::string&)) {
    std::string bytes = text.toStdString();
    const bool isTaken = (focus.*way)(bytes);
    cleanse(bytes);
    return isTaken;
}

} // namespace

bool carryKeyPress(UIWindow& window, const QKeyEvent& event) {
    UIFocusSystem& focus = window.focusSystem();
    if (event.matches(QKeySequence::Paste)) return pasteClipboard(window);
    if (const auto key = keyOf(event)) {
        const bool isPress = key == UIKeyboardKey::space || key == UIKeyboardKey::enter;
        return (isPress && event.isAutoRepeat()) || focus.press(*key);
    }
    return isPrinted(event) && type(focus, event.text(), &UIFocusSystem::type);
}

bool pasteClipboard(UIWindow& window) {
    return type(window.focusSystem(), QGuiApplication::clipboard()->text(), &UIFocusSystem::paste);
}

bool isForScreens(UIWindow& window, const QKeyEvent& event) {
    if (keyOf(event)) return true;
    const bool isText = isPrinted(event) || event.matches(QKeySequence::Paste);
    return isText && std::dynamic_pointer_cast<UITextField>(window.focusSystem().focusedView());
}

} // namespace korvane
