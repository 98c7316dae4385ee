#pragma once

#include "Platform/View/UIView.h"

#include <QAccessible>
#include <QQuickItem>

#include <memory>

class QVariantAnimation;

namespace korvane {

class PartFactory;

/// Whether an item appears with what it shows, or is changed while it is seen.
enum class ItemArrival { withOthers, onItsOwn, none };

/// The item of one view: its place, its opacity, its frame (fill, border, shadow), what its kind shows, and
/// what it is to assistive technology. The items of the subviews are its children. Main queue only.
class ViewItem : public QQuickItem {
    Q_OBJECT
    /// Whether assistive technology hears of the item.
    Q_PROPERTY(bool told READ isTold NOTIFY toldChanged)

public:
    explicit ViewItem(QQuickItem* parent = nullptr) : QQuickItem(parent) {}

    /// Once, before anything else.
    void setView(const std::shared_ptr<UIView>& view) { view_ = view; }
    /// Null once the view has gone.
    [[nodiscard]] std::shared_ptr<UIView> view() const { return view_.lock(); }

    /// Takes over how the view is now. Its subviews are the mirror's affair.
    void synchronize(const UIView& view, PartFactory& parts, ItemArrival arrival);

    /// The part of that which is the view's place and opacity.
    void synchronizePlace(const UIView& view, ItemArrival arrival);

    /// What has Qt's focus when the view is focused: a page takes its keys itself.
    [[nodiscard]] QQuickItem& focusTarget();

    /// Leaves the item out of a picture, if its view is hidden from capture, or lets it in again.
    void hideForCapture(bool hide);

    // What the view is to assistive technology; `Accessible.h` tells it.

    [[nodiscard]] bool isTold() const noexcept { return isTold_; }
    /// A `QAccessible::Role`.
    [[nodiscard]] int role() const noexcept { return role_; }
    [[nodiscard]] const QString& label() const noexcept { return label_; }
    /// All that does not change by itself, as whether the item has the focus.
    [[nodiscard]] QAccessible::State accessibleState() const;
    [[nodiscard]] bool isPressable() const noexcept;

    /// Focuses the view, and taps it in its middle, on behalf of assistive technology.
    void press();
    void takeFocus();
    /// Scrolls on by so many screenfuls, as far as the view goes; up if negative.
    void turn(int screenfuls);

signals:
    void toldChanged();

protected:
    /// Frame and content fill the item.
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    struct Place {
        QRectF rect;
        double opacity = 1;
        friend bool operator==(const Place&, const Place&) = default;
    };

    void play(const UIViewAnimation& animation, const Place& from);
    void apply(const Place& place);
    void synchronizeFrame(const UIView& view, PartFactory& parts);
    void synchronizeContent(const UIView& view, PartFactory& parts);
    void synchronizeAccessibility(const UIView& view);

    std::weak_ptr<UIView> view_;
    QQuickItem* frame_ = nullptr;
    QQuickItem* content_ = nullptr;
    QVariantAnimation* movement_ = nullptr;
    Place place_; // where the item is, or will be after its movement
    int role_ = 0;
    QString label_;
    UIAccessibilityState state_;
    bool isTold_ = false;
    bool isFocusable_ = false;
    bool isHidden_ = false;
};

} // namespace korvane
