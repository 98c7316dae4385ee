#include "tests/Platform/Qt/QtScreenTest.h"

#include "Ui/Screens/PreventScreenRecording.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QTest>
#include <QVariantAnimation>

#include <algorithm>

namespace korvane {

QtScreenTest::QtScreenTest() : glass(QTest::createTouchDevice()) {
    isEnablePreventScreenCapture = false; // or else no picture shows anything
    scene.resize(390, 844);
    host->setDark(false);
    scene.show();
    settle();
}

QtScreenTest::~QtScreenTest() {
    if (stack) stack->transaction = nullptr;
    UIApplication::shared().setTextScale(1);
    isEnablePreventScreenCapture = true;
}

bool QtScreenTest::waitFor(const std::function<bool()>& condition) {
    constexpr qint64 kLimit = 10000;
    QElapsedTimer clock;
    clock.start();
    while (!condition()) {
        if (clock.elapsed() > kLimit) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return true;
}

/// A job that was posted behind all others has run, and then once more for what these posted.
void QtScreenTest::settle() {
    for (int round = 0; round < 3; ++round) {
        bool isReached = false;
        platform.dispatch().mainQueue().async([&isReached] { isReached = true; });
        EXPECT_TRUE(waitFor([&isReached] { return isReached; }));
    }
    host->uiWindow()->layoutIfNeeded();
    static_cast<void>(host->picture()); // takes what has changed over
    EXPECT_TRUE(waitFor([this] {
        const auto movements = host->findChildren<QVariantAnimation*>();
        return std::ranges::none_of(movements, [](const QVariantAnimation* movement) {
            return movement->state() == QAbstractAnimation::Running;
        });
    }));
}

void QtScreenTest::resize(const Telephone& to) {
    scene.resize(static_cast<int>(to.size.width), static_cast<int>(to.size.height));
    host->uiWindow()->setSafeAreaInsets(to.safeArea);
    settle();
}

std::shared_ptr<ChallengeViewController> QtScreenTest::show(const CRes& cRes) {
    const auto container =
        VCFactory(nullptr, nullptr, customization, nullptr).getViewControllerContainer(cRes);
    const bool isTurned = host->width() > host->height() && !container.isHtmlChallenge();
    const auto controller =
        container.controllersMap().at(isTurned ? Orientation::LANDSCAPE : Orientation::PORTRAIT);
    const auto root = host->uiWindow()->rootViewController();
    if (root->presentedViewController()) root->dismiss(UIAnimated::no);
    if (stack) stack->transaction = nullptr;
    stack = std::make_shared<ChallengeRootNavigationController>(controller);
    stack->transaction = actions;
    root->present(stack, UIAnimated::no);
    settle();
    return std::dynamic_pointer_cast<ChallengeViewController>(controller);
}

std::vector<const UIView*> QtScreenTest::leavesOf(const UIView& view) {
    std::vector<const UIView*> leaves;
    for (const auto& inner : view.subviews()) {
        if (inner->isHidden() || inner->alpha() == 0) continue;
        const bool isLeaf = inner->subviews().empty() || isAny<UIControl, UITextView, KeyboardButton>(*inner);
        for (const UIView* leaf : isLeaf ? std::vector<const UIView*>{inner.get()} : leavesOf(*inner))
            leaves.push_back(leaf);
    }
    return leaves;
}

std::vector<QQuickItem*> QtScreenTest::textsOf(const UIView& view) const {
    std::vector<QQuickItem*> texts;
    const std::function<void(const QQuickItem&)> collect = [&](const QQuickItem& item) {
        for (QQuickItem* const child : item.childItems()) {
            if (!child->isVisible()) continue;
            if (child->inherits("QQuickText") && !child->property("text").toString().isEmpty())
                texts.push_back(child);
            collect(*child);
        }
    };
    collect(*host->itemOf(view));
    return texts;
}

QPoint QtScreenTest::middleOf(const UIView& view) const {
    const CGPoint middle = view.middleInWindow();
    return host->mapToScene({middle.x, middle.y}).toPoint();
}

/// An event tells of all fingers that are down.
void QtScreenTest::finger(int identifier, QEventPoint::State state, QPoint place) {
    auto sequence = QTest::touchEvent(&scene, glass.get(), false);
    for (const int other : fingersDown)
        if (other != identifier) sequence.stationary(other);
    if (state == QEventPoint::State::Pressed) sequence.press(identifier, place);
    if (state == QEventPoint::State::Updated) sequence.move(identifier, place);
    if (state == QEventPoint::State::Released) sequence.release(identifier, place);
    if (state == QEventPoint::State::Pressed) fingersDown.insert(identifier);
    if (state == QEventPoint::State::Released) fingersDown.erase(identifier);
    sequence.commit();
}

void QtScreenTest::tap(const UIView& view) {
    const QPoint place = middleOf(view);
    finger(0, QEventPoint::State::Pressed, place);
    finger(0, QEventPoint::State::Released, place);
}

} // namespace korvane
