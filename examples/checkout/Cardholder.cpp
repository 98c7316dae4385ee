#include "examples/checkout/Cardholder.h"

#include <QDir>
#include <QTest>

#include <algorithm>

namespace korvane::checkout {

namespace {

// What scenarios/page.json looks like: its head, and from its top left corner the places of field and button.
constexpr QColor kPageHead(0x12, 0x34, 0x3B);
constexpr CGPoint kInPageHead{10, 10};
constexpr CGPoint kPageField{120, 242};
constexpr CGPoint kPageButton{120, 308};

template <class Predicate>
QQuickItem* firstItem(QQuickItem& item, const Predicate& isWanted) {
    if (!item.isVisible()) return nullptr;
    if (isWanted(item)) return &item;
    for (QQuickItem* child : item.childItems())
        if (QQuickItem* found = firstItem(*child, isWanted)) return found;
    return nullptr;
}

/// The topmost view that is wanted.
template <class Predicate>
std::shared_ptr<UIView> lastView(const std::shared_ptr<UIView>& view, const Predicate& isWanted) {
    if (view->isHidden() || view->alpha() <= 0) return nullptr;
    const auto& below = view->subviews();
    for (auto child = below.rbegin(); child != below.rend(); ++child)
        if (auto found = lastView(*child, isWanted)) return found;
    return isWanted(*view) ? view : nullptr;
}

/// Keys leave their touches to the keyboard that they lie on.
bool takesTouches(const UIView& view, UIWindow& window) {
    const auto hit = window.hitTest(view.middleInWindow());
    return hit && (hit->isDescendant(view) || (view.isDescendant(*hit) && !hit->viewController()));
}

/// Until what a drag has moved lies where it was a moment before.
void waitForRest(const std::function<double()>& place) {
    constexpr int kMoment = 50;
    double before = place();
    Cardholder::waitUntil("what was scrolled to rest", [&] {
        QTest::qWait(kMoment);
        return std::exchange(before, place()) == before;
    });
}

QQuickItem& itemNamed(QQuickWindow& window, const QString& name) {
    auto* found = firstItem(*window.contentItem(),
                            [&name](const QQuickItem& item) { return item.objectName() == name; });
    if (!found) throw Stuck("an item named " + name.toStdString());
    return *found;
}

} // namespace

Cardholder::Cardholder(QQuickWindow& window, QString shots)
    : window_(window), shots_(std::move(shots)), host_(dynamic_cast<KorvaneHost&>(itemNamed(window, "host"))),
      hand_(window) {}

void Cardholder::beginPayment(const QString& name) {
    payment_ = name;
    picture_ = 0;
}

void Cardholder::waitUntil(const std::string& what, const std::function<bool()>& isTrue,
                           std::chrono::milliseconds limit) {
    if (!QTest::qWaitFor(isTrue, static_cast<int>(limit.count()))) throw Stuck(what);
}

// The shop's pages.

QQuickItem* Cardholder::item(const QString& name) const {
    return firstItem(*window_.contentItem(), [&name](const QQuickItem& each) {
        return each.objectName() == name && each.isEnabled();
    });
}

void Cardholder::tapItem(const QString& name) {
    const std::string what = "the shop's control " + name.toStdString();
    waitUntil(what, [this, &name] { return item(name) != nullptr; });
    const auto place = [this, &name] {
        const QQuickItem* found = item(name);
        return found ? found->mapToScene(found->boundingRect().center()) : QPointF();
    };
    const auto distance = [&] { return place().y() - host_.mapToScene(host_.boundingRect().center()).y(); };
    const auto isInSight = [this, &name, &place] {
        const QQuickItem* around = item(name);
        while (around && (!around->clip() || around->contains(around->mapFromScene(place()))))
            around = around->parentItem();
        return !around;
    };
    reveal(what, isInSight, distance);
    hand_.tap(place());
}

void Cardholder::typeInto(const QString& name, const QString& text) {
    tapItem(name);
    waitUntil("the focus of " + name.toStdString(), [this, &name] {
        const QQuickItem* found = item(name);
        return found && found->hasActiveFocus();
    });
    hand_.type(text);
}

void Cardholder::goTo(const QString& name) {
    constexpr int kMostSteps = 40;
    const auto isThere = [this, &name] {
        const QQuickItem* found = item(name);
        return found && found->hasActiveFocus();
    };
    waitUntil("the shop's control " + name.toStdString(), [this, &name] { return item(name) != nullptr; });
    for (int steps = 0; !isThere(); ++steps) {
        if (steps == kMostSteps) throw Stuck("the tabulator to reach " + name.toStdString());
        hand_.press(Qt::Key_Tab);
    }
}

void Cardholder::enterItem(const QString& name) {
    goTo(name);
    hand_.press(Qt::Key_Return);
}

void Cardholder::typeIntoByKeys(const QString& name, const QString& text) {
    goTo(name);
    hand_.type(text);
}

// The library's screens.

std::shared_ptr<UIView> Cardholder::reachable(const std::string& label) const {
    return lastView(host_.uiWindow(), [&label](const UIView& view) {
        using enum UIAccessibilityRole;
        const auto role = view.accessibilityRole();
        return (role == button || role == checkBox || role == radioButton) &&
               view.accessibilityLabel() == label;
    });
}

QPointF Cardholder::placeOf(const UIView& view) const {
    const CGPoint middle = view.middleInWindow();
    return host_.mapToScene({middle.x, middle.y});
}

void Cardholder::tap(const std::string& label) {
    tapView(label, [this, &label] { return reachable(label); });
}

void Cardholder::tapView(const std::string& what, const std::function<std::shared_ptr<UIView>()>& find) {
    waitUntil("\"" + what + "\"", [&] { return find() != nullptr; });
    const auto isReached = [&] {
        const auto view = find();
        return view && takesTouches(*view, *host_.uiWindow());
    };
    const auto distance = [&] {
        const auto view = find();
        return view ? view->middleInWindow().y - host_.height() / 2 : 0;
    };
    const auto isInSight = [&] { return isReached() || std::abs(distance()) < host_.height() / 4; };
    reveal("\"" + what + "\" in sight", isInSight, distance);
    waitUntil("\"" + what + "\" free to touch", isReached);
    hand_.tap(placeOf(*find()));
}

void Cardholder::see(const std::string& text) {
    constexpr double kLeast = 10; // of a line and of a word, in points
    waitUntil("the text \"" + text + "\" in sight", [this, &text] {
        const auto view = lastView(host_.uiWindow(), [this, &text](const UIView& each) {
            if (each.accessibilityLabel().find(text) == std::string::npos) return false;
            const QRectF part = partInSight(each);
            return part.width() >= kLeast && part.height() >= kLeast;
        });
        return view != nullptr;
    });
}

QRectF Cardholder::partInSight(const UIView& view) const {
    const QQuickItem* const item = host_.itemOf(view);
    if (!item || !item->isVisible()) return {};
    QRectF part = host_.mapRectFromItem(item, item->boundingRect()) & host_.boundingRect();
    for (const QQuickItem* around = item->parentItem(); around != &host_; around = around->parentItem())
        if (around->clip()) part &= host_.mapRectFromItem(around, around->boundingRect());
    return part;
}

void Cardholder::typeCode(const std::string& code) {
    const auto field = [this] {
        return lastView(host_.uiWindow(), [](const UIView& view) {
            return view.accessibilityRole() == UIAccessibilityRole::textField;
        });
    };
    const bool isOpen = reachable("123") || reachable("ABC");
    if (!isOpen) tapView("the field for the code", field);
    waitUntil("the keyboard", [this] { return reachable("123") || reachable("ABC"); });
    for (const char character : code) {
        const std::string key(1, character);
        if (!reachable(key)) tap("123");
        tap(key);
    }
}

void Cardholder::closeKeyboard() {
    tap("Close");
    waitUntil("the keyboard to go", [this] { return !reachable("Close"); });
}

void Cardholder::lookAround() {
    const double far = host_.height() / 2;
    scroll(far);
    shoot("scrolled");
    scroll(-far);
}

void Cardholder::fillPage(const QString& code) {
    const auto page = [this] {
        return lastView(host_.uiWindow(), [](const UIView& view) {
            return view.accessibilityRole() == UIAccessibilityRole::page;
        });
    };
    waitUntil("the bank's page", [&] { return page() && takesTouches(*page(), *host_.uiWindow()); });
    const auto place = [&](CGPoint point) {
        const CGPoint inWindow = page()->convertTo(nullptr, point);
        return host_.mapToScene({inWindow.x, inWindow.y});
    };
    waitUntil("the page's head", [&] { return colourAt(place(kInPageHead)) == kPageHead; });
    shoot("page");
    // A page answers from a process of its own; what can be seen of it says when it has.
    seeChange("the field's focus", [&] { hand_.tap(place(kPageField)); });
    seeChange("the digits", [&] { hand_.type(code); });
    shoot("filled");
    hand_.tap(place(kPageButton));
}

// Scrolling.

/// A screen that has just come may not move at the first drag.
void Cardholder::reveal(const std::string& what, const std::function<bool()>& isReached,
                        const std::function<double()>& distance) {
    constexpr int kMostDrags = 12;
    for (int drags = 0; !isReached(); ++drags) {
        if (drags == kMostDrags) throw Stuck(what);
        scroll(distance());
        waitForRest(distance);
    }
}

/// Along the margin, where nothing else takes the finger.
void Cardholder::scroll(double distance) {
    constexpr double kMargin = 12;
    const QRectF device = host_.mapRectToScene(host_.boundingRect());
    const double most = device.height() * 0.3;
    const double x = device.left() + host_.safeAreaLeft() + kMargin;
    const double way = std::clamp(distance, -most, most);
    const QPointF middle(x, device.center().y());
    hand_.drag(middle + QPointF(0, way / 2), middle - QPointF(0, way / 2));
}

// Pictures.

QColor Cardholder::colourAt(QPointF place) const {
    return grab().pixelColor((place * window_.effectiveDevicePixelRatio()).toPoint());
}

QImage Cardholder::grab() const {
    return window_.grabWindow();
}

void Cardholder::waitForStillness() const {
    constexpr std::chrono::milliseconds kLimit{3000};
    constexpr int kBeat = 60;
    QImage before = grab();
    waitUntil(
        "a picture that stands still",
        [this, &before] {
            QTest::qWait(kBeat);
            QImage now = grab();
            return before == std::exchange(before, now);
        },
        kLimit);
}

void Cardholder::seeChange(const std::string& what, const std::function<void()>& act) {
    const QImage before = grab();
    act();
    waitUntil(what, [&] { return grab() != before; });
    waitForStillness();
}

void Cardholder::shoot(const QString& step) {
    waitForStillness();
    shootMoving(step);
}

/// The software renderer paints only what has changed, and leaves traces of letters that reach out of their
/// rectangles. What was seen through is painted anew, all of it.
void Cardholder::repaint() const {
    constexpr double kAlmostOpaque = 0.99;
    window_.contentItem()->setOpacity(kAlmostOpaque);
    grab();
    window_.contentItem()->setOpacity(1);
}

void Cardholder::shootMoving(const QString& step) {
    repaint();
    const QQuickItem& stage = itemNamed(window_, "stage");
    const QRectF place = stage.mapRectToScene(stage.boundingRect());
    const double ratio = window_.effectiveDevicePixelRatio();
    save(grab().copy(QRectF(place.topLeft() * ratio, place.size() * ratio).toAlignedRect()), step);
}

void Cardholder::shootWindow(const QString& step) {
    waitForStillness();
    repaint();
    save(grab(), step);
}

void Cardholder::save(const QImage& picture, const QString& step) {
    const QString number = QString::number(++picture_);
    const QString file = QDir(shots_).filePath(payment_ + "-" + number + "-" + step + ".png");
    if (!picture.save(file)) throw Stuck("a picture that can be written: " + file.toStdString());
}

} // namespace korvane::checkout
