#include "Ui/Screens/ChallengeWebViewController.h"
#include "tests/Platform/Qt/QtScreenTest.h"
#include "tests/Platform/Qt/Themes.h"

#include <QDir>

#include <algorithm>

namespace korvane {
namespace {

using testing::IsEmpty;

constexpr UiType kNativeKinds[] = {UiType::TEXT, UiType::SINGLE_SELECT, UiType::MULTI_SELECT, UiType::OOB};

/// Texts that are drawn with less room than their glyphs take: cut short, or higher than their item.
void collectCutTexts(const QQuickItem& item, std::vector<std::string>& cut) {
    for (const QQuickItem* const child : item.childItems()) {
        if (!child->isVisible()) continue;
        const bool isText = child->inherits("QQuickText") && !child->property("text").toString().isEmpty();
        const bool isHigher = child->property("contentHeight").toDouble() > child->height() + 0.5;
        if (isText && (child->property("truncated").toBool() || isHigher))
            cut.push_back(child->property("text").toString().toStdString());
        collectCutTexts(*child, cut);
    }
}

/// Every screen is drawn; what does not fit is told, and the pictures are kept for people to look at.
class Pictures : public QtScreenTest {
protected:
    [[nodiscard]] std::vector<std::string> cutTexts() const {
        std::vector<std::string> cut;
        collectCutTexts(*host, cut);
        return cut;
    }
    /// Every theme in both sizes of text, light and dark, on every screen.
    void inEverySetting(const std::function<void(const std::string& name, const GalleryScreen& on)>& work) {
        for (const Theme& theme : themes())
            for (const double scale : {1.0, 1.35})
                for (const bool isDark : {false, true})
                    for (const GalleryScreen& on : galleryScreens()) {
                        const std::string name = std::string(theme.name) + " " + on.name +
                                                 (isDark ? " dark" : "") + (scale > 1 ? " large" : "");
                        SCOPED_TRACE(name);
                        look = theme.make();
                        host->setTextScale(scale);
                        host->setDark(isDark);
                        resize(on);
                        work(name, on);
                    }
    }
    void keep(const std::string& name) const {
        const QString folder = QStringLiteral(KORVANE_PICTURES);
        QDir().mkpath(folder);
        EXPECT_TRUE(host->picture().save(folder + "/" + QString::fromStdString(name) + ".png"));
    }
};

TEST_F(Pictures, NothingIsClippedOrCoveredInAnyThemeAndSize) {
    inEverySetting([&](const std::string& setting, const GalleryScreen&) {
        for (const UiType kind : kNativeKinds) {
            SCOPED_TRACE(rawValue(kind));
            const auto screen = show(fullCRes(kind));
            EXPECT_THAT(geometryFaults(*screen->view()), IsEmpty());
            EXPECT_THAT(cutTexts(), IsEmpty());
            keep(std::string(rawValue(kind)) + " " + setting);
        }
    });
}

TEST_F(Pictures, APageOfTheBankFillsWhatTheBarLeaves) {
    const QColor ground(0x33, 0x99, 0x66);
    CRes cRes = fullCRes(UiType::HTML_OTHER);
    cRes.acsHTML = encodedPage("<body style='background:#339966;color:white;font:24px sans-serif'>"
                               "<h1>Confirm</h1><form action='https://emv3ds/challenge'>"
                               "<input name='code'><button>Send</button></form>");
    inEverySetting([&](const std::string& setting, const GalleryScreen& on) {
        const auto page = showAs<ChallengeWebViewController>(cRes);
        const CGRect place = page->challengeWebView->convertTo(nullptr, page->challengeWebView->bounds());
        const QPoint corners[] = {
            QPoint(static_cast<int>(place.origin.x) + 2, static_cast<int>(place.origin.y) + 2),
            QPoint(static_cast<int>(CGRectGetMaxX(place)) - 3, static_cast<int>(CGRectGetMaxY(place)) - 3)};
        EXPECT_TRUE(waitFor([&] {
            const QImage picture = host->picture();
            return std::ranges::all_of(corners,
                                       [&](QPoint corner) { return picture.pixelColor(corner) == ground; });
        }));
        EXPECT_GT(place.size.height, on.size.height / 2);
        EXPECT_THAT(geometryFaults(*page->view()), IsEmpty());
        EXPECT_THAT(cutTexts(), IsEmpty());
        keep("page " + setting);
    });
}

TEST_F(Pictures, EveryPageOfTheKeyboardFitsItsKeys) {
    struct Page {
        const char* name;
        CustomKeyboardLayoutState state;
    };
    const Page pages[] = {
        {"capitals", CustomKeyboardLayoutState::Letters(CustomKeyboardShiftState::On)},
        {"letters", CustomKeyboardLayoutState::Letters(CustomKeyboardShiftState::Off)},
        {"numbers", CustomKeyboardLayoutState::Numbers()},
        {"symbols", CustomKeyboardLayoutState::Symbols()},
        {"pad", CustomKeyboardLayoutState::NumberPad()},
    };
    for (const bool isDark : {false, true})
        for (const GalleryScreen& on : galleryScreens()) {
            host->setDark(isDark);
            resize(on);
            const auto text = showAs<ChallengeTextNativeViewController>(fullCRes(UiType::TEXT));
            text->otp->becomeFirstResponder();
            text->otp->setText("471 900");
            const auto keyboard = text->secureKeyboard->customKeyboard();
            for (const Page& page : pages) {
                keyboard->setKeyboardLayoutState(page.state);
                settle();
                const std::string name =
                    std::string("keyboard ") + page.name + " " + on.name + (isDark ? " dark" : "");
                SCOPED_TRACE(name);
                EXPECT_THAT(geometryFaults(*keyboard), IsEmpty());
                EXPECT_THAT(cutTexts(), IsEmpty());
                const CGRect field = text->otp->convertTo(nullptr, text->otp->bounds());
                EXPECT_LE(CGRectGetMaxY(field), host->uiWindow()->inputFrame().origin.y);
                EXPECT_GE(field.origin.y, 0);
                keep(name);
            }
            keyboard->setKeyboardLayoutState(
                CustomKeyboardLayoutState::Letters(CustomKeyboardShiftState::Off));
            settle();
            const CGRect keys = keyboard->convertTo(nullptr, keyboard->bounds());
            const QPoint first(static_cast<int>(keys.origin.x) + 20, static_cast<int>(keys.origin.y) + 30);
            finger(0, QEventPoint::State::Pressed, first);
            settle();
            keep(std::string("keyboard pressed ") + on.name + (isDark ? " dark" : ""));
            finger(0, QEventPoint::State::Released, first);
        }
}

TEST_F(Pictures, OpenSectionsAndTheLongestTextsAreWhole) {
    for (const GalleryScreen& on : galleryScreens())
        for (const UiType kind : kNativeKinds) {
            resize(on);
            const auto native = showAs<ChallengeNativeViewController>(longCRes(kind));
            native->inverseWhyInfoDisplaying();
            native->inverseExtInfoDisplaying();
            settle();
            native->scrollView->setContentOffset({0, 0});
            settle();
            const std::string name = "long " + std::string(rawValue(kind)) + " " + on.name;
            SCOPED_TRACE(name);
            EXPECT_THAT(geometryFaults(*native->view()), IsEmpty());
            EXPECT_THAT(cutTexts(), IsEmpty());
            keep(name);
        }
}

} // namespace
} // namespace korvane
