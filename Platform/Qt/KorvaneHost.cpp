#include "Platform/Qt/KorvaneHost.h"

#include "Platform/Failure.h"
#include "Platform/Qt/Fingers.h"
#include "Platform/Qt/FocusRing.h"
#include "Platform/Qt/Keys.h"
#include "Platform/Qt/Mirror.h"
#include "Platform/Qt/PasteMenu.h"
#include "Platform/Qt/QtPlatform.h"
#include "Platform/View/UIApplication.h"
#include "Platform/View/UITextField.h"
#include "Platform/View/UIViewController.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QPalette>
#include <QQmlEngine>
#include <QQuickWindow>

#include <algorithm>

namespace korvane {

namespace {

constexpr double kSmallestText = 0.5;
constexpr double kLargestText = 3;

/// From one piece of work that can wait to the next, in milliseconds: frames come in between.
constexpr int kBetweenWork = 8;

QtPlatform& qtPlatform() {
    auto* const platform = dynamic_cast<QtPlatform*>(&Platform::current());
    if (!platform) fatalError("A KorvaneHost needs a QtPlatform.");
    return *platform;
}

bool isSystemDark() {
    return QGuiApplication::palette().color(QPalette::Window).lightnessF() < 0.5F;
}

} // namespace

KorvaneHost::KorvaneHost(QQuickItem* parent) : QQuickItem(parent), window_(std::make_shared<UIWindow>()) {
    static_cast<void>(qtPlatform());
    setAcceptedMouseButtons(Qt::LeftButton | Qt::RightButton);
    setAcceptTouchEvents(true);
    setKeepMouseGrab(true);
    setKeepTouchGrab(true);
    setFlag(ItemIsFocusScope);
    fingers_ = std::make_unique<Fingers>(window_);
    idle_.setInterval(kBetweenWork);
    connect(&idle_, &QTimer::timeout, this, [this] {
        mirror_->workAhead();
        if (!mirror_->hasWork()) idle_.stop();
    });
    window_->setRootViewController(std::make_shared<UIViewController>());
    setDark(isSystemDark());
    window_->setFrameRequest([this] { polish(); });
    UIApplication::shared().setPlaysAnimations(true);
    window_->makeKeyAndVisible();
    // Who begins to edit a field types into it, wherever the keys went before.
    editing_ = NotificationCenter::defaultCenter().addObserver(UITextField::textDidBeginEditingNotification,
                                                               [this](const Notification&) {
                                                                   if (isActive_) forceActiveFocus();
                                                               });
    connect(qGuiApp, &QGuiApplication::applicationStateChanged, this, [](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive)
            UIApplication::shared().didBecomeActive();
        else
            UIApplication::shared().willResignActive();
    });
}

KorvaneHost::~KorvaneHost() {
    window_->setFrameRequest(nullptr);
    menu_.reset();
    ring_.reset();
    mirror_.reset();
    UIApplication::shared().remove(window_);
}

bool KorvaneHost::isDark() const noexcept {
    return window_->traits().userInterfaceStyle == UIUserInterfaceStyle::dark;
}

void KorvaneHost::setDark(bool dark) {
    if (dark == isDark()) return;
    UITraitCollection traits = window_->traits();
    traits.userInterfaceStyle = dark ? UIUserInterfaceStyle::dark : UIUserInterfaceStyle::light;
    window_->setTraits(traits);
    emit darkChanged();
}

double KorvaneHost::textScale() const noexcept {
    return UIApplication::shared().textScale();
}

void KorvaneHost::setTextScale(double scale) {
    const double bounded = std::clamp(scale, kSmallestText, kLargestText);
    if (bounded == textScale()) return;
    UIApplication::shared().setTextScale(bounded);
    emit textScaleChanged();
}

void KorvaneHost::setSafeArea(double UIEdgeInsets::*side, double points) {
    UIEdgeInsets insets = window_->safeAreaInsets();
    if (insets.*side == points) return;
    insets.*side = points;
    window_->setSafeAreaInsets(insets);
    emit safeAreaChanged();
}

void KorvaneHost::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickItem::geometryChange(now, before);
    if (!now.isEmpty() && now.size() != before.size()) resizeScreen();
}

/// The application is told of a turn only when there was one.
void KorvaneHost::resizeScreen() {
    const CGSize screen{width(), height()};
    const UIDeviceOrientation before = qtPlatform().device().orientation();
    qtPlatform().setScreenSize(screen);
    if (qtPlatform().device().orientation() != before) {
        UIApplication::shared().deviceDidRotate();
        return;
    }
    window_->setFrame({{0, 0}, screen});
    window_->layoutIfNeeded();
}

void KorvaneHost::updatePolish() {
    if (!mirror_) {
        QQmlEngine* engine = qmlEngine(this);
        if (!engine) engine = new QQmlEngine(this);
        mirror_ = std::make_unique<Mirror>(*this, *engine);
        ring_ = std::make_unique<FocusRing>(*this, *mirror_, window_);
        menu_ = std::make_unique<PasteMenu>(*this, mirror_->parts(), window_);
        connect(menu_.get(), &PasteMenu::opened, this, &KorvaneHost::loseFingers);
    }
    window_->frameTaken();
    window_->layoutIfNeeded();
    mirror_->synchronize(window_);
    const bool isActive =
        window_->rootViewController()->presentedViewController() != nullptr || window_->subviews().size() > 1;
    setActive(isActive);
    ring_->synchronize(*window_);
    menu_->synchronize();
    if (mirror_->hasWork() && !idle_.isActive()) idle_.start();
}

/// With the screens go the fingers on them: what these still do is no more for this item.
void KorvaneHost::setActive(bool isActive) {
    if (isActive == isActive_) return;
    isActive_ = isActive;
    if (isActive) {
        forceActiveFocus();
    } else {
        loseFingers();
        setFocus(false);
    }
    emit activeChanged();
}

void KorvaneHost::loseFingers() {
    fingers_->loseMouse();
    fingers_->loseTouches();
}

bool KorvaneHost::event(QEvent* event) {
    if (!isActive_ || !(handleKey(*event) || handleFinger(*event))) return QQuickItem::event(event);
    event->accept();
    return true;
}

bool KorvaneHost::handleFinger(QEvent& event) {
    if (event.type() == QEvent::MouseButtonPress || event.type() == QEvent::TouchBegin)
        forceActiveFocus(Qt::MouseFocusReason);
    menu_->watch(event);
    return fingers_->handle(event);
}

/// Nothing behind the screens hears of a key that is theirs.
bool KorvaneHost::handleKey(QEvent& event) {
    switch (event.type()) {
    case QEvent::KeyPress: menu_->close(); return carryKeyPress(*window_, static_cast<QKeyEvent&>(event));
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride: return isForScreens(*window_, static_cast<QKeyEvent&>(event));
    default: return false;
    }
}

void KorvaneHost::mouseUngrabEvent() {
    fingers_->loseMouse();
}

void KorvaneHost::touchUngrabEvent() {
    fingers_->loseTouches();
}

QImage KorvaneHost::picture() {
    QQuickWindow* const shown = window();
    if (!shown) return {};
    polish();
    if (mirror_) mirror_->hideForCapture(true);
    const QImage whole = shown->grabWindow();
    if (mirror_) mirror_->hideForCapture(false);
    const qreal density = whole.devicePixelRatio();
    const QRectF place = mapRectToScene(boundingRect());
    QImage own = whole.copy(QRectF(place.topLeft() * density, place.size() * density).toRect());
    own.setDevicePixelRatio(density);
    return own;
}

QQuickItem* KorvaneHost::itemOf(const UIView& view) const {
    return mirror_ ? mirror_->itemOf(view) : nullptr;
}

} // namespace korvane
