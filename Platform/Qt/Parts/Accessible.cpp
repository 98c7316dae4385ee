#include "Platform/Qt/Parts/Accessible.h"

#include "Platform/Qt/Parts/ViewItem.h"

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QAccessibleObject>
#include <QQuickWindow>

#include <algorithm>

namespace korvane {

namespace {

using Interface = QAccessibleInterface;

/// Null for an item that assistive technology is not told of.
Interface* interfaceOf(QQuickItem& item) {
    const auto* own = qobject_cast<const ViewItem*>(&item);
    return own && !own->isTold() ? nullptr : QAccessible::queryAccessibleInterface(&item);
}

/// What lies in an item, from the back to the front; of what is not told there is what lies in that.
void collect(const QQuickItem& in, QList<Interface*>& to) {
    QList<QQuickItem*> children = in.childItems();
    std::ranges::stable_sort(children, {}, &QQuickItem::z);
    for (QQuickItem* const child : children) {
        if (!child->isVisible()) continue;
        if (Interface* const told = interfaceOf(*child))
            to.append(told);
        else
            collect(*child, to);
    }
}

bool isContainer(QAccessible::Role role) {
    return role == QAccessible::List || role == QAccessible::WebDocument;
}

/// One view, as its item shows it.
class AccessibleView final : public QAccessibleObject, public QAccessibleActionInterface {
public:
    explicit AccessibleView(ViewItem& item) : QAccessibleObject(&item) {}

    [[nodiscard]] QWindow* window() const override { return item().window(); }
    [[nodiscard]] QRect rect() const override {
        if (!item().window()) return {};
        const QRectF place = item().mapRectToScene(item().boundingRect());
        return {item().window()->mapToGlobal(place.topLeft().toPoint()), place.size().toSize()};
    }
    [[nodiscard]] Interface* parent() const override {
        for (QQuickItem* around = item().parentItem(); around; around = around->parentItem())
            if (Interface* const told = interfaceOf(*around)) return told;
        return QAccessible::queryAccessibleInterface(item().window());
    }
    [[nodiscard]] Interface* child(int index) const override { return children().value(index); }
    [[nodiscard]] int childCount() const override { return static_cast<int>(children().size()); }
    [[nodiscard]] int indexOfChild(const Interface* child) const override {
        return static_cast<int>(children().indexOf(child));
    }
    [[nodiscard]] QAccessible::Role role() const override {
        return static_cast<QAccessible::Role>(item().role());
    }
    [[nodiscard]] QString text(QAccessible::Text part) const override {
        return part == QAccessible::Name ? item().label() : QString();
    }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state = item().accessibleState();
        state.invisible = !item().isVisible() || !item().isTold();
        state.focused = item().hasActiveFocus();
        return state;
    }

    [[nodiscard]] void* interface_cast(QAccessible::InterfaceType type) override {
        const bool acts = type == QAccessible::ActionInterface && !actionNames().isEmpty();
        return acts ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }
    [[nodiscard]] QStringList actionNames() const override {
        QStringList names;
        if (state().checkable)
            names << toggleAction();
        else if (item().isPressable())
            names << pressAction();
        if (state().focusable) names << setFocusAction();
        if (role() == QAccessible::List) names << scrollDownAction() << scrollUpAction();
        return names;
    }
    void doAction(const QString& name) override {
        if (name == pressAction() || name == toggleAction()) item().press();
        if (name == setFocusAction()) item().takeFocus();
        if (name == scrollDownAction()) item().turn(1);
        if (name == scrollUpAction()) item().turn(-1);
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString& /*name*/) const override { return {}; }

private:
    [[nodiscard]] ViewItem& item() const { return static_cast<ViewItem&>(*object()); }
    [[nodiscard]] QList<Interface*> children() const {
        QList<Interface*> all;
        if (isContainer(role())) collect(item(), all);
        return all;
    }
};

/// Also for an item that is not told of: Qt keeps what an item got first.
Interface* makeInterface(const QString& /*className*/, QObject* object) {
    auto* const item = qobject_cast<ViewItem*>(object);
    return item ? new AccessibleView(*item) : nullptr;
}

} // namespace

AccessibleItems::AccessibleItems() {
    QAccessible::installFactory(makeInterface);
}

AccessibleItems::~AccessibleItems() {
    QAccessible::removeFactory(makeInterface);
}

} // namespace korvane
