#include "Platform/Qt/Parts/ViewItem.h"

#include "Platform/Qt/Parts/PartFactory.h"
#include "Platform/Qt/Parts/Values.h"
#include "Platform/View/UIButton.h"
#include "Platform/View/UIScrollView.h"
#include "Platform/View/UIWindow.h"

#include <QEasingCurve>
#include <QVariantAnimation>

#include <algorithm>

namespace korvane {

namespace {

// The order of drawing within one item: frame, content, subviews, and what lies over these.
constexpr double kFrameLevel = -2;

QRectF rectOf(const UIView& view) {
    const auto superview = view.superview();
    const CGPoint origin = superview ? superview->bounds().origin : CGPoint{};
    return asRect(CGRectOffset(view.frame(), -origin.x, -origin.y));
}

std::optional<UIColor> pressedTint(const UIView& view) {
    const auto* button = dynamic_cast<const UIButton*>(&view);
    return button ? button->pressedTint() : std::nullopt;
}

/// One colour over another one, which may be clear.
QColor over(const QColor& below, const QColor& above) {
    const float alpha = above.alphaF() + below.alphaF() * (1 - above.alphaF());
    if (alpha <= 0) return below;
    const auto mixed = [&](float lower, float upper) {
        return (upper * above.alphaF() + lower * below.alphaF() * (1 - above.alphaF())) / alpha;
    };
    return QColor::fromRgbF(mixed(below.redF(), above.redF()), mixed(below.greenF(), above.greenF()),
                            mixed(below.blueF(), above.blueF()), alpha);
}

QAccessible::Role accessibleRole(UIAccessibilityRole role) {
    switch (role) {
    case UIAccessibilityRole::none: return QAccessible::NoRole;
    case UIAccessibilityRole::staticText: return QAccessible::StaticText;
    case UIAccessibilityRole::header: return QAccessible::Heading;
    case UIAccessibilityRole::button: return QAccessible::Button;
    case UIAccessibilityRole::image: return QAccessible::Graphic;
    case UIAccessibilityRole::textField: return QAccessible::EditableText;
    case UIAccessibilityRole::checkBox: return QAccessible::CheckBox;
    case UIAccessibilityRole::radioButton: return QAccessible::RadioButton;
    case UIAccessibilityRole::list: return QAccessible::List;
    case UIAccessibilityRole::page: return QAccessible::WebDocument;
    }
    return QAccessible::NoRole;
}

/// What of a state is another one, as its bits.
QAccessible::State differences(const QAccessible::State& one, const QAccessible::State& other) {
    QAccessible::State changed;
    changed.disabled = one.disabled != other.disabled;
    changed.focusable = one.focusable != other.focusable;
    changed.checked = one.checked != other.checked;
    changed.pressed = one.pressed != other.pressed;
    changed.expanded = one.expanded != other.expanded;
    changed.collapsed = one.collapsed != other.collapsed;
    return changed;
}

template <class Event>
void tell(Event event) {
    QAccessible::updateAccessibility(&event);
}

bool hasFrame(const UIView& view) {
    const CALayer& layer = view.layer();
    return view.backgroundColor() || pressedTint(view) || layer.borderWidth() > 0 ||
           layer.shadowOpacity() > 0;
}

} // namespace

void ViewItem::synchronize(const UIView& view, PartFactory& parts, ItemArrival arrival) {
    synchronizePlace(view, arrival);
    isHidden_ = view.isHidden();
    setVisible(!isHidden_);
    setClip(view.clipsToBounds() || dynamic_cast<const UIScrollView*>(&view));
    synchronizeFrame(view, parts);
    synchronizeContent(view, parts);
    synchronizeAccessibility(view);
}

/// A view that appears by itself fades in; one that comes with what it lies in is there at once.
void ViewItem::synchronizePlace(const UIView& view, ItemArrival arrival) {
    const Place place{rectOf(view), view.alpha()};
    if (place == place_ && arrival == ItemArrival::none) return;
    delete std::exchange(movement_, nullptr);
    place_ = place;
    const auto& animation = view.animation();
    const bool isPlayed = animation && animation->duration > Seconds{0} && !view.isHidden() && !isHidden_;
    if (!isPlayed || arrival == ItemArrival::withOthers)
        apply(place);
    else if (arrival == ItemArrival::onItsOwn)
        play(*animation, {place.rect, 0});
    else
        play(*animation, {QRectF(position(), size()), opacity()});
}

/// Moves the item from somewhere to its place.
void ViewItem::play(const UIViewAnimation& animation, const Place& from) {
    const Seconds whole = animation.delay + animation.duration;
    movement_ = new QVariantAnimation(this);
    movement_->setDuration(milliseconds(whole));
    movement_->setStartValue(0.0);
    movement_->setEndValue(whole.count());
    connect(movement_, &QVariantAnimation::valueChanged, this, [=, this, to = place_](const QVariant& value) {
        const double played = (value.toDouble() - animation.delay.count()) / animation.duration.count();
        const double share =
            QEasingCurve(QEasingCurve::InOutQuad).valueForProgress(std::clamp(played, 0.0, 1.0));
        const auto between = [share](double start, double end) { return start + share * (end - start); };
        apply({QRectF(between(from.rect.x(), to.rect.x()), between(from.rect.y(), to.rect.y()),
                      between(from.rect.width(), to.rect.width()),
                      between(from.rect.height(), to.rect.height())),
               between(from.opacity, to.opacity)});
    });
    apply(from);
    movement_->start();
}

void ViewItem::apply(const Place& place) {
    setPosition(place.rect.topLeft());
    setSize(place.rect.size());
    setOpacity(place.opacity);
}

void ViewItem::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    for (QQuickItem* part : {frame_, content_})
        if (part) part->setSize(now.size());
}

void ViewItem::focusInEvent(QFocusEvent* event) {
    QQuickItem::focusInEvent(event);
    if (isTold_ && QAccessible::isActive()) tell(QAccessibleEvent(this, QAccessible::Focus));
}

void ViewItem::synchronizeFrame(const UIView& view, PartFactory& parts) {
    if (!frame_) {
        if (!hasFrame(view)) return;
        frame_ = parts.make("Frame", *this);
        frame_->setZ(kFrameLevel);
        frame_->setSize(size());
    }
    const CALayer& layer = view.layer();
    const UIUserInterfaceStyle style = view.traitCollection().userInterfaceStyle;
    const auto color = [style](const std::optional<UIColor>& one) {
        return one ? asColor(*one, style) : QColor(Qt::transparent);
    };
    const CGSize extent = view.bounds().size;
    frame_->setProperty("color", over(color(view.backgroundColor()), color(pressedTint(view))));
    frame_->setProperty("radius", std::min(layer.cornerRadius(), std::min(extent.width, extent.height) / 2));
    frame_->setProperty("strokeWidth", layer.borderWidth());
    frame_->setProperty("strokeColor", color(layer.borderColor()));
    frame_->setProperty("shadowOpacity", layer.shadowOpacity());
    frame_->setProperty("shadowColor", color(layer.shadowColor()));
    frame_->setProperty("shadowRadius", layer.shadowRadius());
    frame_->setProperty("shadowPath",
                        asRect(CGRectOffset(layer.shadowPath().value_or(CGRect{{0, 0}, extent}),
                                            layer.shadowOffset().width, layer.shadowOffset().height)));
}

void ViewItem::synchronizeContent(const UIView& view, PartFactory& parts) {
    if (!content_ && (content_ = parts.makeContent(view, *this))) content_->setSize(size());
    if (content_) parts.updateContent(*content_, view);
}

void ViewItem::synchronizeAccessibility(const UIView& view) {
    role_ = accessibleRole(view.accessibilityRole());
    isFocusable_ = view.canBecomeFocused();
    QString label = drawnText(view.accessibilityLabel());
    const bool isRenamed = std::exchange(label_, std::move(label)) != label_;
    const QAccessible::State before = accessibleState();
    state_ = view.accessibilityState();
    const bool isTold = view.isAccessibilityElement();
    const bool isNews = std::exchange(isTold_, isTold) != isTold;
    if (isNews) emit toldChanged();
    if (!QAccessible::isActive()) return;
    if (isNews) tell(QAccessibleEvent(this, isTold ? QAccessible::ObjectShow : QAccessible::ObjectHide));
    if (isNews || !isTold) return;
    if (isRenamed) tell(QAccessibleEvent(this, QAccessible::NameChanged));
    const QAccessible::State changed = differences(before, accessibleState());
    if (changed != QAccessible::State()) tell(QAccessibleStateChangeEvent(this, changed));
}

QAccessible::State ViewItem::accessibleState() const {
    QAccessible::State state;
    const bool isTicked = role_ == QAccessible::CheckBox || role_ == QAccessible::RadioButton;
    state.disabled = !state_.isEnabled;
    state.focusable = isFocusable_;
    state.editable = role_ == QAccessible::EditableText;
    state.checkable = isTicked;
    state.checked = isTicked && state_.isSelected;
    state.pressed = !isTicked && state_.isSelected;
    state.expandable = state_.isExpanded.has_value();
    state.expanded = state_.isExpanded.value_or(false);
    state.collapsed = !state_.isExpanded.value_or(true);
    return state;
}

bool ViewItem::isPressable() const noexcept {
    return isFocusable_ && role_ != QAccessible::WebDocument;
}

QQuickItem& ViewItem::focusTarget() {
    return content_ && content_->isFocusScope() ? *content_ : *this;
}

void ViewItem::hideForCapture(bool hide) {
    const auto shown = view();
    if (!shown || shown->layer().value(std::string(CALayer::kCaptureMask)).value_or(0) == 0) return;
    setVisible(!hide && !isHidden_);
}

void ViewItem::press() {
    const auto pressed = view();
    const auto window = pressed ? pressed->window() : nullptr;
    if (!window) return;
    window->focusSystem().focus(pressed);
    window->press(*pressed);
}

void ViewItem::takeFocus() {
    const auto focused = view();
    const auto window = focused ? focused->window() : nullptr;
    if (window) window->focusSystem().focus(focused);
}

void ViewItem::turn(int screenfuls) {
    const auto turned = view();
    for (auto around = turned; around; around = around->superview()) {
        const auto* scroll = dynamic_cast<const UIScrollView*>(around.get());
        if (!scroll || !scroll->isScrollEnabled()) continue;
        const CGRect seen = scroll->convertTo(turned.get(), scroll->bounds());
        const double end = CGRectGetMaxY(turned->bounds());
        const double top = std::clamp(seen.origin.y + screenfuls * seen.size.height, 0.0, end);
        turned->scrollIntoSight({{0, top}, {0, std::min(seen.size.height, end - top)}});
        return;
    }
}

} // namespace korvane
