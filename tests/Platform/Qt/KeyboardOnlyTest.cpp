#include "Platform/Qt/Parts/Values.h"
#include "Ui/Screens/ChallengeWebViewController.h"
#include "tests/Platform/Qt/QtScreenTest.h"

#include <QClipboard>
#include <QDir>
#include <QGuiApplication>
#include <QTest>

namespace korvane {
namespace {

using testing::ElementsAre;

/// An application below the screens that takes every key that it can get.
struct Below final : QQuickItem {
    explicit Below(QQuickItem* in) : QQuickItem(in) {
        setActiveFocusOnTab(true);
        setZ(-1);
    }
    void keyPressEvent(QKeyEvent*) override { ++keys; }
    void keyReleaseEvent(QKeyEvent*) override { ++keys; }
    void focusInEvent(QFocusEvent*) override { ++visits; }
    int keys = 0;
    int visits = 0;
};

class KeyboardOnly : public QtScreenTest {
protected:
    /// "> < . e x u v l" are Tab, back, Space, Enter, Escape, up, down and left; other characters are typed.
    void play(const std::string& keys) {
        for (const char key : keys) {
            switch (key) {
            case '>': QTest::keyClick(&scene, Qt::Key_Tab); break;
            case '<': QTest::keyClick(&scene, Qt::Key_Backtab, Qt::ShiftModifier); break;
            case '.': QTest::keyClick(&scene, Qt::Key_Space); break;
            case 'e': QTest::keyClick(&scene, Qt::Key_Return); break;
            case 'x': QTest::keyClick(&scene, Qt::Key_Escape); break;
            case 'u': QTest::keyClick(&scene, Qt::Key_Up); break;
            case 'l': QTest::keyClick(&scene, Qt::Key_Left); break;
            case 'v': QTest::keyClick(&scene, Qt::Key_Down); break;
            default: QTest::keyClick(&scene, key);
            }
            settle();
        }
    }
    [[nodiscard]] std::shared_ptr<UIView> focused() const {
        return host->uiWindow()->focusSystem().focusedView();
    }
    [[nodiscard]] QImage picture(const std::string& name) {
        const QString folder = QStringLiteral(KORVANE_PICTURES);
        QDir().mkpath(folder);
        QImage shown = host->picture();
        EXPECT_TRUE(shown.save(folder + "/focus " + QString::fromStdString(name) + ".png"));
        return shown;
    }

    Below below{scene.contentItem()};
};

TEST_F(KeyboardOnly, PlaysEveryKindAndLeavesTheApplicationAlone) {
    struct Row {
        UiType kind;
        const char* keys;
        const char* call;
    };
    // Tab comes to the cancel button first, then to the field or the list, and last to the sections.
    const Row rows[] = {{UiType::TEXT, ">>1A 2e", "data(1A 2/N) on main"},
                        {UiType::TEXT, ">>7x>>>.<<.", "data(7/Y) on main"},
                        {UiType::TEXT, "<<<<.", "resendOtp() on main"},
                        {UiType::SINGLE_SELECT, ">>vv.u.>.", "data(mail/N) on global"},
                        {UiType::MULTI_SELECT, ">>.vve>>.<.", "data(phone,app/Y) on global"},
                        {UiType::OOB, ">>e", "oobContinue(/N) on global"},
                        {UiType::OOB, ">>><<.", "cancel() on main"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.keys);
        show(screenCRes(row.kind));
        play(row.keys);
        EXPECT_TRUE(waitFor([&] { return !actions->calls.empty(); }));
        EXPECT_THAT(std::exchange(actions->calls, {}), ElementsAre(row.call));
    }
    EXPECT_EQ(below.keys + below.visits, 0);
}

TEST_F(KeyboardOnly, PlaysAPageWhichGivesTheFocusBackAtItsEnds) {
    if (!ChallengeWebViewController::isAvailable()) GTEST_SKIP() << "built without an engine for pages";
    CRes cRes = screenCRes(UiType::HTML_OTHER);
    cRes.acsHTML = encodedPage(
        "<body style='background:#339966'><form action='https://emv3ds/challenge'>"
        "<input name=code autocomplete=off onblur=\"document.body.style.background='#339966'\" "
        "onfocus=\"document.body.style.background='#663399'\"><button name=go>Send</button></form>");
    const auto page = showAs<ChallengeWebViewController>(cRes);
    const QPoint ground = middleOf(*page->challengeWebView.get());
    const auto isPainted = [&](QRgb color) {
        return waitFor([&] { return host->picture().pixelColor(ground) == QColor(color); });
    };
    ASSERT_TRUE(isPainted(0x339966));
    const auto isOn = [&](const UIView& view) {
        return waitFor([&] {
            settle();
            return focused().get() == &view;
        });
    };
    const UIView& web = *page->challengeWebView.get();
    play(">");
    const auto cancel = focused();
    ASSERT_TRUE(cancel);
    // Two controls, of which the near one may have the focus from the start.
    for (const auto& [there, on] : {std::pair(">", ">"), {"<", "<"}, {">", "<"}, {"<", ">"}}) {
        SCOPED_TRACE(std::string(there) + on);
        play(there);
        EXPECT_TRUE(isOn(web));
        for (int time = 0; time < 3 && focused().get() == &web; ++time) {
            play(on);
            static_cast<void>(QTest::qWaitFor([&] { return focused().get() != &web; }, 300));
        }
        EXPECT_TRUE(isOn(*cancel));
    }
    play(">");
    EXPECT_TRUE(isOn(web));
    EXPECT_TRUE(isPainted(0x663399)) << "the field has the focus";
    for (const char key : {'4', '2', '\r'})
        QTest::keyClick(&scene, key);
    EXPECT_TRUE(waitFor([&] { return !actions->calls.empty(); }));
    EXPECT_THAT(actions->calls, ElementsAre("html(code=42&go=) on global"));
    EXPECT_EQ(below.keys + below.visits, 0);
}

TEST_F(KeyboardOnly, PastesIntoTheField) {
    const auto text = showAs<ChallengeTextNativeViewController>(screenCRes(UiType::TEXT));
    QGuiApplication::clipboard()->setText(" 123 456\n");
    QTest::keySequence(&scene, QKeySequence::Paste);
    EXPECT_EQ(text->otp->text(), "") << "nothing is focused";
    play(">>");
    QTest::keySequence(&scene, QKeySequence::Paste);
    EXPECT_EQ(text->otp->text(), "123 456");
    EXPECT_EQ(below.keys, 0);
}

TEST_F(KeyboardOnly, TheFocusStaysInItsPlaceWhenThePageOfTheKeyboardChanges) {
    const auto text = showAs<ChallengeTextNativeViewController>(screenCRes(UiType::TEXT));
    text->secureKeyboard->setFirstPage(CustomKeyboardLayoutState::Numbers());
    play(">>>>vvv"); // the key to the letters
    text->secureKeyboard->customKeyboard()->shiftToggleInterval = Seconds{60};
    const std::pair<const char*, const char*> rows[] = {{"", "ABC"},    {".", "123"},       {"ul", "shift"},
                                                        {".", "shift"}, {"e", "caps lock"}, {"u", "A"},
                                                        {"e", "A"}};
    for (const auto& [keys, name] : rows) {
        play(keys);
        ASSERT_TRUE(focused());
        EXPECT_EQ(focused()->accessibilityLabel(), name);
    }
    EXPECT_EQ(text->otp->text(), "A");
    play("7x");
    EXPECT_EQ(text->otp->text(), "A7");
    EXPECT_EQ(focused(), text->otp.get());
}

TEST_F(KeyboardOnly, TheRingIsSeenWhereverTheFocusIs) {
    UIApplication::shared().setPlaysAnimations(false);
    for (const bool isDark : {false, true})
        for (const double scale : {1.0, 1.35})
            for (const UiType kind :
                 {UiType::TEXT, UiType::SINGLE_SELECT, UiType::MULTI_SELECT, UiType::OOB}) {
                host->setDark(isDark);
                host->setTextScale(scale);
                const auto screen = show(screenCRes(kind));
                const auto name =
                    std::string(rawValue(kind)) + (isDark ? " dark" : "") + (scale > 1 ? " large" : "");
                std::vector<std::shared_ptr<UIView>> seen;
                for (play(">"); std::ranges::count(seen, focused()) == 0; play(">")) {
                    seen.push_back(focused());
                    SCOPED_TRACE(name + " " + focused()->accessibilityLabel());
                    const QColor accent =
                        asColor(focused()->focusColor(), host->uiWindow()->traits().userInterfaceStyle);
                    const QRectF at = asRect(focused()->convertTo(nullptr, focused()->bounds()));
                    const QRectF ring = at.adjusted(-4, -4, 4, 4) & host->boundingRect();
                    const QImage drawn = picture(name + " " + std::to_string(seen.size()));
                    const QPointF middle = ring.center();
                    for (const QPointF place : {QPointF(middle.x(), ring.top() + 2),
                                                {middle.x(), ring.bottom() - 2},
                                                {ring.left() + 2, middle.y()},
                                                {ring.right() - 2, middle.y()}})
                        EXPECT_EQ(drawn.pixelColor(place.toPoint()), accent) << place.x() << " " << place.y();
                }
                EXPECT_GE(seen.size(), kind == UiType::OOB ? 5U : 6U);
                tap(*screen->view());
                EXPECT_FALSE(host->uiWindow()->focusSystem().isShown());
            }
}

} // namespace
} // namespace korvane
