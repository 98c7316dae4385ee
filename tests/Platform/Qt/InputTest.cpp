#include "Platform/NotificationCenter.h"
#include "Ui/Screens/ChallengeOobNativeViewController.h"
#include "Ui/Screens/ChallengeSelectNativeViewController.h"
#include "Ui/Screens/PreventScreenRecording.h"
#include "tests/Platform/Qt/QtScreenTest.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QTest>
#include <QWheelEvent>

#include <functional>
#include <set>

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
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

    /// The key or button that assistive technology calls so.
    [[nodiscard]] std::shared_ptr<UIView> button(const std::string& label) const {
        return buttonBelow(*host->uiWindow(), label);
    }
    void press(const std::string& label) {
        const auto pressed = button(label);
        ASSERT_TRUE(pressed) << label;
        tap(*pressed);
        settle();
    }

    [[nodiscard]] bool hasCall(const std::string& call) {
        return waitFor([&] { return !actions->calls.empty(); }) && actions->calls.back() == call;
    }

private:
    static std::shared_ptr<UIView> buttonBelow(const UIView& view, const std::string& label) {
        for (const auto& inner : view.subviews()) {
            if (inner->isHidden()) continue;
            const bool isButton = inner->accessibilityRole() == UIAccessibilityRole::button;
            if (isButton && inner->accessibilityLabel() == label) return inner;
            if (auto found = buttonBelow(*inner, label)) return found;
        }
        return nullptr;
    }
};

TEST_F(Input, ACodeIsTypedWithTouchesOnTheSecureKeyboardAndSent) {
    const auto text = showField();
    press("A");
    press("123");
    for (const char* digit : {"4", "7", "1"})
        press(digit);
    EXPECT_EQ(text->otp->text(), "A471");
    tap(*text->secureKeyboard->customToolBar()->buttonClose());
    settle();
    EXPECT_FALSE(text->otp->isFirstResponder());
    tap(*text->submitButton.get());
    EXPECT_TRUE(hasCall("data(A471/N) on main"));
}

TEST_F(Input, AReturnInTheCodeIsSeenOnTheFieldsOneLine) {
    const auto text = showField();
    press("Q");
    press("return");
    press("w");
    ASSERT_EQ(text->otp->text(), "Q\nw");
    std::vector<std::pair<std::string, int>> drawn;
    const std::function<void(const QQuickItem&)> collect = [&](const QQuickItem& item) {
        const QVariant lines = item.property("lineCount");
        if (lines.isValid() && item.isVisible())
            drawn.emplace_back(item.property("text").toString().toStdString(), lines.toInt());
        for (const QQuickItem* inner : item.childItems())
            collect(*inner);
    };
    collect(*host->itemOf(*text->otp.get()));
    EXPECT_THAT(drawn, ElementsAre(std::pair("Q\u21B5w", 1)));
}

TEST_F(Input, TwoFingersTypeTwoKeys) {
    const auto text = showField();
    const QPoint first = middleOf(*button("Q")), second = middleOf(*button("P"));
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
        const QPoint place = middleOf(*button("Q"));
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

TEST_F(Input, AFingerThatComesDownTwiceTypesWhereItIs) {
    const auto text = showField();
    finger(0, State::Pressed, middleOf(*button("Q")));
    press("P");
    EXPECT_EQ(text->otp->text(), "P");
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
    const QPoint place = middleOf(*button("Q"));
    QTest::mousePress(&scene, Qt::LeftButton, {}, place);
    for (int step = 1; step <= 5; ++step)
        QTest::mouseMove(&scene, place - QPoint(0, 20 * step));
    EXPECT_EQ(host->uiWindow()->touchCount(), 1U);
    QTest::mouseRelease(&scene, Qt::LeftButton, {}, place);
    EXPECT_EQ(around->property("contentY").toDouble(), 0);
    host->setParentItem(scene.contentItem());
}

TEST_F(Input, ABackspaceThatIsHeldDownDeletesEverything) {
    const auto text = showField();
    text->otp->setText("123456");
    settle();
    const auto backspace = button("Backspace");
    ASSERT_TRUE(backspace);
    finger(0, State::Pressed, middleOf(*backspace));
    EXPECT_TRUE(waitFor([&] { return text->otp->text().empty(); }));
    finger(0, State::Released, middleOf(*backspace));
}

TEST_F(Input, HardwareKeysTypeDeleteAndCloseTheKeyboard) {
    const auto text = showField();
    for (const char character : {'1', '2', 'x'})
        QTest::keyClick(&scene, character);
    QTest::keyClick(&scene, Qt::Key_Backspace);
    EXPECT_EQ(text->otp->text(), "12");
    QTest::keyClick(&scene, Qt::Key_Escape);
    EXPECT_FALSE(text->otp->isFirstResponder());
}

TEST_F(Input, HardwareKeysComeBackWithAPressOrANewFirstResponder) {
    struct Row {
        const char* name;
        std::function<void(UITextField&)> comeBack;
    };
    const Row rows[] = {
        {"a finger", [this](UITextField& field) { tap(field); }},
        {"the mouse",
         [this](UITextField& field) { QTest::mouseClick(&scene, Qt::LeftButton, {}, middleOf(field)); }},
        {"the program", [](UITextField& field) {
             field.resignFirstResponder();
             field.becomeFirstResponder();
         }}};
    QQuickItem elsewhere(scene.contentItem());
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const auto text = showField();
        elsewhere.forceActiveFocus();
        QTest::keyClick(&scene, '1');
        EXPECT_EQ(text->otp->text(), "");
        row.comeBack(*text->otp.get());
        settle();
        QTest::keyClick(&scene, '2');
        EXPECT_EQ(text->otp->text(), "2");
    }
}

TEST_F(Input, AnOptionIsChosenWithTheMouseAndSent) {
    const auto options = showAs<ChallengeSelectNativeViewController>(fullCRes(UiType::SINGLE_SELECT));
    const auto cell = options->tableView->cellForRow({0, 1});
    ASSERT_TRUE(cell);
    QTest::mouseClick(&scene, Qt::LeftButton, {}, middleOf(*cell->viewWithTag(1000)));
    tap(*options->nextButton.get());
    EXPECT_TRUE(hasCall("data(mail/N) on global"));
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
    EXPECT_GT(opened, 0);
    EXPECT_TRUE(waitFor([&] { return heightShown() > 0 && heightShown() < opened; })) << "between";
    EXPECT_TRUE(waitFor([&] { return heightShown() == opened; })) << "at the end";
}

TEST_F(Input, ADragScrollsAndPressesNothing) {
    resize(galleryScreens()[0]);
    const auto native = showAs<ChallengeOobNativeViewController>(longCRes(UiType::OOB));
    ASSERT_TRUE(waitFor([&] { return native->scrollView->contentSize().height > 700; }));
    const double before = native->continueButton->frame().origin.y - 300;
    native->scrollView->setContentOffset({0, before});
    settle();
    const QPoint from = middleOf(*native->continueButton.get());
    finger(0, State::Pressed, from);
    for (int step = 1; step <= 6; ++step)
        finger(0, State::Updated, from + QPoint(0, step * 20));
    finger(0, State::Released, from + QPoint(0, 120));
    settle();
    EXPECT_LT(native->scrollView->contentOffset().y, before - 60);
    EXPECT_THAT(actions->calls, IsEmpty());
    EXPECT_TRUE(native->spinner == nullptr);
}

TEST_F(Input, TheWheelScrollsWithinTheContent) {
    resize(galleryScreens()[0]);
    const auto native = showAs<ChallengeNativeViewController>(longCRes(UiType::OOB));
    ASSERT_TRUE(waitFor([&] { return native->scrollView->contentSize().height > 700; }));
    const auto turn = [&](int angle) {
        QWheelEvent event(QPointF(100, 400), scene.mapToGlobal(QPointF(100, 400)), {}, {0, angle},
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&scene, &event);
    };
    turn(-240);
    EXPECT_EQ(native->scrollView->contentOffset().y, 120);
    turn(-12000);
    EXPECT_EQ(native->scrollView->contentOffset().y,
              native->scrollView->contentSize().height - native->scrollView->bounds().size.height);
    turn(12000);
    EXPECT_EQ(native->scrollView->contentOffset().y, 0);
}

TEST_F(Input, CancelIsPressed) {
    show(fullCRes(UiType::TEXT));
    tap(*button("Cancel"));
    EXPECT_TRUE(hasCall("cancel() on main"));
}

TEST_F(Input, ATurnedHostTurnsTheDeviceOnceAndTheWindowWithIt) {
    std::vector<UIDeviceOrientation> told;
    const auto observer = NotificationCenter::defaultCenter().addObserver(
        UIDevice::orientationDidChangeNotification,
        [&](const Notification&) { told.push_back(platform.device().orientation()); });
    resize(galleryScreens()[3]);
    scene.resize(840, 390);
    settle();
    resize(galleryScreens()[1]);
    EXPECT_THAT(told, ElementsAre(UIDeviceOrientation::landscapeLeft, UIDeviceOrientation::portrait));
    EXPECT_EQ(host->uiWindow()->bounds(), (CGRect{{0, 0}, {390, 844}}));
    EXPECT_EQ(platform.mainScreen().bounds(), (CGRect{{0, 0}, {390, 844}}));
}

TEST_F(Input, LeavingTheApplicationAndComingBackIsTold) {
    std::vector<std::string> told;
    const auto note = [&told](const char* text) {
        return [&told, text](const Notification&) { told.emplace_back(text); };
    };
    auto& center = NotificationCenter::defaultCenter();
    const auto left = center.addObserver(UIApplication::willResignActiveNotification, note("left"));
    const auto back = center.addObserver(UIApplication::didBecomeActiveNotification, note("back"));
    emit qGuiApp->applicationStateChanged(Qt::ApplicationInactive);
    emit qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    EXPECT_THAT(told, ElementsAre("left", "back"));
}

TEST_F(Input, WithoutAScreenTheApplicationBelowGetsEveryTouch) {
    EXPECT_FALSE(host->isActive());
    QQuickItem below(scene.contentItem());
    below.setSize(host->size());
    below.setAcceptedMouseButtons(Qt::LeftButton);
    below.setZ(-1);
    bool isTouched = false;
    class Filter final : public QObject {
    public:
        explicit Filter(bool& isSeen) : isSeen_(isSeen) {}
        bool eventFilter(QObject*, QEvent* event) override {
            isSeen_ |= event->type() == QEvent::MouseButtonPress;
            return false;
        }

    private:
        bool& isSeen_;
    } filter(isTouched);
    below.installEventFilter(&filter);
    QTest::mouseClick(&scene, Qt::LeftButton, {}, {100, 100});
    EXPECT_TRUE(isTouched);
    isTouched = false;
    show(fullCRes(UiType::TEXT));
    EXPECT_TRUE(host->isActive());
    QTest::mouseClick(&scene, Qt::LeftButton, {}, {100, 100});
    EXPECT_FALSE(isTouched);
}

/// How many colours a picture has, up to three.
int coloursOf(const QImage& picture) {
    std::set<QRgb> colours;
    for (int y = 0; y < picture.height() && colours.size() < 3; y += 2)
        for (int x = 0; x < picture.width() && colours.size() < 3; x += 2)
            colours.insert(picture.pixel(x, y));
    return static_cast<int>(colours.size());
}

TEST_F(Input, WhatIsHiddenFromCaptureIsInNoPicture) {
    show(fullCRes(UiType::TEXT));
    EXPECT_EQ(coloursOf(host->picture()), 3);
    isEnablePreventScreenCapture = true;
    show(fullCRes(UiType::TEXT));
    EXPECT_EQ(coloursOf(host->picture()), 1);
}

} // namespace
} // namespace korvane
