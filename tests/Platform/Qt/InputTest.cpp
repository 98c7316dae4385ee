#include "Platform/NotificationCenter.h"
#include "Platform/Qt/Parts/Values.h"
#include "Ui/Screens/ChallengeOobNativeViewController.h"
#include "Ui/Screens/PreventScreenRecording.h"
#include "tests/Platform/Qt/QtScreenTest.h"

#include <QClipboard>
#include <QGuiApplication>
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
        auto text = showAs<ChallengeTextNativeViewController>(screenCRes(UiType::TEXT));
        tap(*text->otp.get());
        settle();
        EXPECT_TRUE(text->otp->isFirstResponder());
        return text;
    }
    /// The key that assistive technology calls so.
    [[nodiscard]] const UIView& key(const std::string& label) const {
        for (const UIView* const leaf : leavesOf(*host->uiWindow()))
            if (leaf->accessibilityRole() == UIAccessibilityRole::button &&
                leaf->accessibilityLabel() == label)
                return *leaf;
        throw std::invalid_argument("no key " + label);
    }
    void press(const std::string& label) {
        tap(key(label));
        settle();
    }
    /// A finger that comes down and moves by 100 points.
    void drag(QPoint from, QPoint step) {
        finger(0, State::Pressed, from);
        for (int count = 1; count <= 5; ++count)
            finger(0, State::Updated, from + count * step);
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

TEST_F(Input, PagesOfTheKeyboardAreDrawnAheadAndKeptAndFollowTheSurroundings) {
    const auto text = showField();
    const auto key =
        text->secureKeyboard->customKeyboard()->keyboardLayout().lowercase()->getKeyboardButton(0, 0);
    const UIView* page = key.get();
    while (page->superview())
        page = page->superview().get();
    const std::function<bool(const UIView&)> isMade = [&](const UIView& view) {
        return host->itemOf(view) &&
               std::ranges::all_of(view.subviews(), [&](const auto& inner) { return isMade(*inner); });
    };
    ASSERT_TRUE(waitFor([&] { return isMade(*page); }));
    const QQuickItem* const item = host->itemOf(*key);
    EXPECT_FALSE(item->isVisible());
    for (const bool isDark : {true, false}) {
        host->setDark(isDark); // while the page is away
        press(isDark ? "Q" : "ABC");
        EXPECT_EQ(host->itemOf(*key), item);
        EXPECT_TRUE(item->isVisible());
        const auto style = host->uiWindow()->traits().userInterfaceStyle;
        EXPECT_EQ(textsOf(*key).at(0)->property("color").value<QColor>(), asColor(UIColor::label(), style));
        press("123");
        EXPECT_FALSE(item->isVisible());
    }
}

TEST_F(Input, AFingerThatIsNoMoreHeardOfTypesNothing) {
    const std::function<void()> rows[] = {[this] { host->ungrabTouchPoints(); },
                                          [this] {
                                              host->setEnabled(false);
                                              host->setEnabled(true);
                                          },
                                          [this] { // the challenge's screens have gone
                                              host->uiWindow()->rootViewController()->dismiss(UIAnimated::no);
                                              settle();
                                              EXPECT_FALSE(host->isActive());
                                          }};
    for (const auto& lose : rows) {
        SCOPED_TRACE(&lose - rows);
        auto text = showField();
        const QPoint place = middleOf(key("Q"));
        finger(0, State::Pressed, place);
        lose();
        finger(0, State::Released, place);
        if (!host->isActive()) text = showField();
        press("P");
        EXPECT_EQ(text->otp->text(), "P");
    }
}

TEST_F(Input, HardwareKeysComeBackWithAPressOrANewFirstResponder) {
    QQuickItem elsewhere(scene.contentItem());
    for (const bool isPressed : {true, false}) {
        SCOPED_TRACE(isPressed);
        const auto text = showField();
        elsewhere.forceActiveFocus();
        QTest::keyClick(&scene, '1');
        EXPECT_EQ(text->otp->text(), "");
        if (!isPressed) text->otp->resignFirstResponder();
        isPressed ? tap(*text->otp.get()) : static_cast<void>(text->otp->becomeFirstResponder());
        settle();
        for (const char character : {'2', 'x', 'y'})
            QTest::keyClick(&scene, character);
        QTest::keyClick(&scene, Qt::Key_Backspace);
        EXPECT_EQ(text->otp->text(), "2x");
        QTest::keyClick(&scene, Qt::Key_Escape);
        EXPECT_FALSE(text->otp->isFirstResponder());
    }
}

TEST_F(Input, ADragAndTheWheelScrollWithinTheContentAndPressNothing) {
    resize({"with a covered foot", {320, 568}, {20, 0, 34, 0}});
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
              native->scrollView->contentSize().height - native->scrollView->bounds().size.height + 34)
        << "out from under what the system covers";
    EXPECT_EQ(turn(12000), 0);
    turn(-480);
    const QPoint from = middleOf(*native->continueButton.get());
    drag(from, {0, 20});
    finger(0, State::Released, from + QPoint(0, 100));
    settle();
    EXPECT_LT(offset(), 240 - 60);
    EXPECT_TRUE(native->spinner == nullptr);
}

TEST_F(Input, AHeldFingerOrTheRightButtonOffersToPasteIntoTheField) {
    const auto menu = [this]() -> QQuickItem* {
        for (QQuickItem* const item : host->childItems())
            if (item->isVisible() && item->property("word").isValid()) return item;
        return nullptr;
    };
    const auto hold = [&](QPoint at) {
        finger(0, State::Pressed, at);
        static_cast<void>(QTest::qWaitFor([&] { return menu() != nullptr; }, 900));
        finger(0, State::Released, at);
    };
    const auto click = [this](QPoint at) { QTest::mouseClick(&scene, Qt::RightButton, {}, at); };
    for (const std::function<void(QPoint)>& ask : {std::function<void(QPoint)>(hold), {click}}) {
        const auto text = showAs<ChallengeTextNativeViewController>(screenCRes(UiType::TEXT));
        const QPoint field = middleOf(*text->otp.get());
        QGuiApplication::clipboard()->clear();
        ask(field);
        EXPECT_FALSE(menu()) << "nothing to paste";
        QGuiApplication::clipboard()->setText(" 4721\n");
        ask(middleOf(*text->challengeInfoHeader.get()));
        EXPECT_FALSE(menu()) << "nowhere to paste";
        for (const bool isTaken : {false, true}) {
            text->otp->resignFirstResponder();
            settle();
            ask(field);
            ASSERT_TRUE(menu());
            EXPECT_FALSE(text->otp->isFirstResponder());
            const QRectF place = menu()->mapRectToScene(menu()->boundingRect());
            const QPoint to = isTaken ? place.center().toPoint() : middleOf(*text->challengeInfoHeader.get());
            finger(0, State::Pressed, to);
            finger(0, State::Released, to);
            settle();
            EXPECT_FALSE(menu());
            EXPECT_EQ(text->otp->text(), isTaken ? "4721" : "");
        }
    }
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
    resize(kTelephones[3]);
    scene.resize(840, 390);
    settle();
    resize(kTelephones[1]);
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
    show(screenCRes(UiType::TEXT));
    QTest::mouseClick(&scene, Qt::LeftButton, {}, {100, 100});
    EXPECT_EQ(below.presses, 1);
}

TEST_F(Input, WhatIsHiddenFromCaptureIsInNoPicture) {
    const QImage empty = host->picture();
    show(screenCRes(UiType::TEXT));
    EXPECT_NE(host->picture(), empty);
    isEnablePreventScreenCapture = true;
    show(screenCRes(UiType::TEXT));
    EXPECT_EQ(host->picture(), empty);
}

} // namespace
} // namespace korvane
