#include "Platform/NotificationCenter.h"
#include "Ui/Screens/ChallengeOobNativeViewController.h"
#include "Ui/Screens/PreventScreenRecording.h"
#include "tests/Platform/Qt/QtScreenTest.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>
#include <QWheelEvent>

#include <functional>

namespace korvane {
namespace {

using testing::ElementsAre;
using State = QEventPoint::State;

class Input : public QtScreenTest {
protected:
    std::shared_ptr<ChallengeTextNativeViewController> showField() {
        auto text = showAs<ChallengeTextNativeViewController>(fullCRes(UiType::TEXT));
        tap(*text->otp.get());
        settle();
        EXPECT_TRUE(text->otp->isFirstResponder());
        return text;
    }
    /// The key that assistive technology calls so.
    [[nodiscard]] const UIView& key(const std::string& label) const {
        const UIView* found = nullptr;
        const std::function<void(const UIView&)> search = [&](const UIView& view) {
            for (const auto& inner : view.subviews()) {
                if (inner->isHidden()) continue;
                const bool isButton = inner->accessibilityRole() == UIAccessibilityRole::button;
                if (isButton && inner->accessibilityLabel() == label) found = inner.get();
                search(*inner);
            }
        };
        search(*host->uiWindow());
        if (!found) throw std::invalid_argument("no key " + label);
        return *found;
    }
    void press(const std::string& label) {
        tap(key(label));
        settle();
    }
};

TEST_F(Input, ACodeIsTypedWithTouchesOnTheSecureKeyboardAndSentWithTheMouse) {
    const auto text = showField();
    for (const char* label : {"Q", "return", "w", "123", "4"})
        press(label);
    ASSERT_EQ(text->otp->text(), "Q\nw4");
    const auto drawn = textsOf(*text->otp.get());
    ASSERT_EQ(drawn.size(), 1U);
    EXPECT_EQ(drawn[0]->property("text").toString(), QStringLiteral("Q\u21B5w4"));
    EXPECT_EQ(drawn[0]->property("lineCount").toInt(), 1);
    tap(*text->secureKeyboard->customToolBar()->buttonClose());
    settle();
    EXPECT_FALSE(text->otp->isFirstResponder());
    QTest::mouseClick(&scene, Qt::LeftButton, {}, middleOf(*text->submitButton.get()));
    EXPECT_TRUE(waitFor([&] { return !actions->calls.empty(); }));
    EXPECT_THAT(actions->calls, ElementsAre("data(Q\nw4/N) on main"));
}

TEST_F(Input, TwoFingersTypeTwoKeys) {
    const auto text = showField();
    const QPoint first = middleOf(key("Q")), second = middleOf(key("P"));
    finger(0, State::Pressed, first);
    finger(1, State::Pressed, second);
    finger(1, State::Released, second);
    finger(0, State::Released, first);
    settle();
    EXPECT_THAT(text->otp->text(), testing::AnyOf("QP", "PQ", "Qp", "Pq"));
}

TEST_F(Input, AFingerThatIsNoMoreHeardOfTypesNothing) {
    struct Row {
        const char* name;
        std::function<void(QPoint)> begin;
        std::function<void(QPoint)> lose;
    };
    const auto pressMouse = [this](QPoint at) { QTest::mousePress(&scene, Qt::LeftButton, {}, at); };
    const auto pressFinger = [this](QPoint at) { finger(0, State::Pressed, at); };
    const Row rows[] = {
        {"the mouse", pressMouse, [this](QPoint) { host->ungrabMouse(); }},
        {"a finger", pressFinger, [this](QPoint) { host->ungrabTouchPoints(); }},
        {"the host cannot be used for a while", pressMouse,
         [this](QPoint) {
             host->setEnabled(false);
             host->setEnabled(true);
         }},
        {"the challenge's screens have gone", pressFinger,
         [this](QPoint at) {
             host->uiWindow()->rootViewController()->dismiss(UIAnimated::no);
             settle();
             EXPECT_FALSE(host->isActive());
             finger(0, State::Released, at);
         }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        auto text = showField();
        const QPoint place = middleOf(key("Q"));
        row.begin(place);
        EXPECT_EQ(host->uiWindow()->touchCount(), 1U);
        row.lose(place);
        EXPECT_EQ(host->uiWindow()->touchCount(), 0U);
        QTest::mouseRelease(&scene, Qt::LeftButton, {}, place);
        if (!host->isActive()) text = showField();
        press("P");
        EXPECT_EQ(text->otp->text(), "P");
        finger(0, State::Released, place);
    }
}

TEST_F(Input, WhatScrollsAroundTheHostDoesNotTakeItsFingers) {
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQuick\nFlickable { width: 390; height: 844; contentHeight: 2000 }", {});
    const std::unique_ptr<QObject> made(component.create());
    auto* const around = qobject_cast<QQuickItem*>(made.get());
    ASSERT_TRUE(around);
    around->setParentItem(scene.contentItem());
    host->setParentItem(qvariant_cast<QQuickItem*>(around->property("contentItem")));
    showField();
    const QPoint place = middleOf(key("Q"));
    QTest::mousePress(&scene, Qt::LeftButton, {}, place);
    for (int step = 1; step <= 5; ++step)
        QTest::mouseMove(&scene, place - QPoint(0, 20 * step), 20);
    EXPECT_EQ(host->uiWindow()->touchCount(), 1U);
    QTest::mouseRelease(&scene, Qt::LeftButton, {}, place);
    finger(0, State::Pressed, place);
    for (int step = 1; step <= 5; ++step)
        finger(0, State::Updated, place - QPoint(0, 20 * step));
    EXPECT_EQ(host->uiWindow()->touchCount(), 1U);
    finger(0, State::Released, place);
    EXPECT_EQ(around->property("contentY").toDouble(), 0);
    host->setParentItem(scene.contentItem());
}

TEST_F(Input, HardwareKeysComeBackWithAPressOrANewFirstResponder) {
    const std::pair<const char*, std::function<void(UITextField&)>> rows[] = {
        {"a finger", [this](UITextField& field) { tap(field); }},
        {"the mouse",
         [this](UITextField& field) { QTest::mouseClick(&scene, Qt::LeftButton, {}, middleOf(field)); }},
        {"the program", [](UITextField& field) {
             field.resignFirstResponder();
             field.becomeFirstResponder();
         }}};
    QQuickItem elsewhere(scene.contentItem());
    for (const auto& [name, comeBack] : rows) {
        SCOPED_TRACE(name);
        const auto text = showField();
        elsewhere.forceActiveFocus();
        QTest::keyClick(&scene, '1');
        EXPECT_EQ(text->otp->text(), "");
        comeBack(*text->otp.get());
        settle();
        for (const char character : {'2', 'x'})
            QTest::keyClick(&scene, character);
        EXPECT_EQ(text->otp->text(), "2x");
        QTest::keyClick(&scene, Qt::Key_Backspace);
        EXPECT_EQ(text->otp->text(), "2");
        QTest::keyClick(&scene, Qt::Key_Escape);
        EXPECT_FALSE(text->otp->isFirstResponder());
    }
}

TEST_F(Input, ASectionOpensLittleByLittle) {
    const auto native = showAs<ChallengeNativeViewController>(longCRes(UiType::OOB));
    host->uiWindow()->setSafeAreaInsets({});
    native->scrollView->scrollRectToVisible(native->whyInfoButton->frame(), UIAnimated::no);
    settle();
    const auto heightShown = [&] { return host->itemOf(*native->whyInfo.get())->height(); };
    ASSERT_EQ(heightShown(), 0);
    tap(*native->whyInfoButton.get());
    const double opened = native->whyInfo->frame().size.height;
    EXPECT_TRUE(waitFor([&] { return heightShown() > 0 && heightShown() < opened; })) << "between";
    EXPECT_TRUE(waitFor([&] { return heightShown() == opened; })) << "at the end";
}

TEST_F(Input, ADragAndTheWheelScrollWithinTheContentAndPressNothing) {
    resize(galleryScreens()[0]);
    const auto native = showAs<ChallengeOobNativeViewController>(longCRes(UiType::OOB));
    const auto offset = [&] { return native->scrollView->contentOffset().y; };
    ASSERT_TRUE(waitFor([&] { return native->scrollView->contentSize().height > 700; }));
    const auto turn = [&](int angle) {
        QWheelEvent event(QPointF(100, 400), scene.mapToGlobal(QPointF(100, 400)), {}, {0, angle},
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&scene, &event);
        return offset();
    };
    EXPECT_EQ(turn(-240), 120);
    EXPECT_EQ(turn(-12000),
              native->scrollView->contentSize().height - native->scrollView->bounds().size.height);
    EXPECT_EQ(turn(12000), 0);
    const double before = native->continueButton->frame().origin.y - 300;
    native->scrollView->setContentOffset({0, before});
    settle();
    const QPoint from = middleOf(*native->continueButton.get());
    finger(0, State::Pressed, from);
    for (int step = 1; step <= 6; ++step)
        finger(0, State::Updated, from + QPoint(0, step * 20));
    finger(0, State::Released, from + QPoint(0, 120));
    settle();
    EXPECT_LT(offset(), before - 60);
    EXPECT_TRUE(native->spinner == nullptr);
}

TEST_F(Input, TurnsAndLeavingTheApplicationAreToldOnce) {
    std::vector<std::string> told;
    const auto hear = [&](const auto& name, const char* text) {
        return NotificationCenter::defaultCenter().addObserver(
            name, [&told, text](const Notification&) { told.emplace_back(text); });
    };
    const auto turned = hear(UIDevice::orientationDidChangeNotification, "turned");
    const auto left = hear(UIApplication::willResignActiveNotification, "left");
    const auto back = hear(UIApplication::didBecomeActiveNotification, "back");
    resize(galleryScreens()[3]);
    EXPECT_EQ(platform.device().orientation(), UIDeviceOrientation::landscapeLeft);
    scene.resize(840, 390);
    settle();
    resize(galleryScreens()[1]);
    EXPECT_EQ(platform.device().orientation(), UIDeviceOrientation::portrait);
    EXPECT_EQ(host->uiWindow()->bounds(), (CGRect{{0, 0}, {390, 844}}));
    EXPECT_EQ(platform.mainScreen().bounds(), (CGRect{{0, 0}, {390, 844}}));
    emit qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
    emit qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    EXPECT_THAT(told, ElementsAre("turned", "turned", "left", "back"));
}

TEST_F(Input, TheApplicationBelowGetsEveryTouchUntilAScreenIsThere) {
    struct Below : QQuickItem {
        using QQuickItem::QQuickItem;
        void mousePressEvent(QMouseEvent*) override { ++presses; }
        int presses = 0;
    } below(scene.contentItem());
    below.setSize(host->size());
    below.setAcceptedMouseButtons(Qt::LeftButton);
    below.setZ(-1);
    QTest::mouseClick(&scene, Qt::LeftButton, {}, {100, 100});
    EXPECT_EQ(below.presses, 1);
    show(fullCRes(UiType::TEXT));
    QTest::mouseClick(&scene, Qt::LeftButton, {}, {100, 100});
    EXPECT_EQ(below.presses, 1);
}

TEST_F(Input, WhatIsHiddenFromCaptureIsInNoPicture) {
    const QImage empty = host->picture();
    show(fullCRes(UiType::TEXT));
    EXPECT_NE(host->picture(), empty);
    isEnablePreventScreenCapture = true;
    show(fullCRes(UiType::TEXT));
    EXPECT_EQ(host->picture(), empty);
}

} // namespace
} // namespace korvane
