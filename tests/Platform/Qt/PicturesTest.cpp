#include "Ui/Screens/ChallengeWebViewController.h"
#include "tests/Platform/Qt/QtScreenTest.h"

#include <QDir>

#include <algorithm>
#include <cstdlib>
#include <map>

namespace korvane {
namespace {

using testing::IsEmpty;

/// How far the lightness that stands out most lies from that of the commonest colour, of 255.
int contrastIn(const QImage& picture) {
    std::map<QRgb, int> colours;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            ++colours[picture.pixel(x, y)];
    const auto ground =
        std::ranges::max_element(colours, {}, [](const auto& colour) { return colour.second; });
    int best = 0;
    for (const auto& [colour, count] : colours)
        best = std::max(best, std::abs(qGray(colour) - qGray(ground->first)));
    return best;
}

QRectF rectangle(const CGRect& of) {
    return {of.origin.x, of.origin.y, of.size.width, of.size.height};
}

/// A button's title and image lie in it and apart.
bool hasRoom(const UIButton& button) {
    const QRectF title = rectangle(button.titleLabel()->frame());
    const bool hasImage = button.imageView() && button.imageView()->image();
    const QRectF image = hasImage ? rectangle(button.imageView()->frame()) : QRectF();
    return rectangle(button.bounds()).contains(title | image) && !title.intersects(image);
}

/// Every screen is drawn; what does not fit or cannot be read is told, and the pictures are kept for people
/// to look at.
class Pictures : public QtScreenTest {
protected:
    Pictures() { UIApplication::shared().setPlaysAnimations(false); }

    /// Views that overlap or lie beyond the screen's sides, and buttons and texts without room.
    [[nodiscard]] static std::vector<std::string> misplaced(const UIView& screen) {
        std::vector<std::string> faults;
        std::vector<std::pair<std::string, QRectF>> leaves;
        for (const UIView* const leaf : leavesOf(screen)) {
            const std::string& name = leaf->accessibilityIdentifier();
            const QRectF place = rectangle(leaf->convertTo(&screen, leaf->bounds()));
            if (place.isEmpty()) continue;
            if (place.left() < 0 || place.right() > screen.bounds().size.width)
                faults.push_back(name + " lies beyond the screen's sides");
            for (const auto& [other, otherPlace] : leaves)
                if (place.intersects(otherPlace)) faults.push_back(name + " overlaps " + other);
            const auto* button = dynamic_cast<const UIButton*>(leaf);
            if (button && !button->currentTitle().empty() && !hasRoom(*button))
                faults.push_back(name + " has no room for its title and image");
            const auto* text = dynamic_cast<const UITextView*>(leaf);
            if (text && text->contentSize().height > text->bounds().size.height)
                faults.push_back(name + " has no room for its text");
            leaves.emplace_back(name, place);
        }
        if (leaves.empty()) faults.emplace_back("the screen is empty");
        return faults;
    }
    /// Texts of a view that are cut short, larger than their item, or hardly stand out: 90 levels of grey are
    /// less than the ratio of 3 that WCAG 2.1 asks for (1.4.3) on black and on white. Those that are scrolled
    /// away are not drawn.
    [[nodiscard]] std::vector<std::string> unreadable(const UIView& view) const {
        constexpr int kLeastContrast = 90;
        std::vector<std::string> faults;
        const QImage picture = host->picture();
        for (const QQuickItem* const text : textsOf(view)) {
            const std::string name = text->property("text").toString().toStdString();
            if (text->property("truncated").toBool()) faults.push_back("cut short: " + name);
            if (text->property("contentHeight").toDouble() > text->height() + 0.5 ||
                text->property("contentWidth").toDouble() > text->width() + 0.5)
                faults.push_back("larger than its item: " + name);
            const QRectF place = text->mapRectToItem(host, text->boundingRect());
            QRectF seen = place;
            for (const QQuickItem* around = text->parentItem(); around != host; around = around->parentItem())
                if (around->clip()) seen &= around->mapRectToItem(host, around->boundingRect());
            if (seen != place) continue;
            const int found = contrastIn(picture.copy(place.toAlignedRect()));
            if (found < kLeastContrast) faults.push_back(std::to_string(found) + " contrast: " + name);
        }
        return faults;
    }
    /// Looks at what is shown, by day and by night.
    void look(const UIView& at, const std::string& name) {
        const QString folder = QStringLiteral(KORVANE_PICTURES);
        QDir().mkpath(folder);
        for (const char* light : {" dark", ""}) {
            SCOPED_TRACE(name + light);
            host->setDark(*light != 0);
            settle();
            EXPECT_THAT(misplaced(at), IsEmpty());
            EXPECT_THAT(unreadable(at), IsEmpty());
            EXPECT_TRUE(host->picture().save(folder + "/" + QString::fromStdString(name + light) + ".png"));
        }
    }
};

TEST_F(Pictures, EveryTextOfEveryScreenIsWholeAndCanBeRead) {
    for (const Telephone& on : kTelephones)
        for (const UiType kind : {UiType::TEXT, UiType::SINGLE_SELECT, UiType::MULTI_SELECT, UiType::OOB})
            for (const auto& [name, scale] : {std::pair(" ", 1.0), {" large ", 1.35}, {" long ", 1.0}}) {
                const bool isLong = name == std::string(" long ");
                resize(on);
                host->setTextScale(1);
                const auto screen =
                    showAs<ChallengeNativeViewController>((isLong ? longCRes : screenCRes)(kind));
                screen->inverseWhyInfoDisplaying();
                screen->inverseExtInfoDisplaying();
                settle();
                screen->scrollView->setContentOffset({0, 0});
                host->setTextScale(scale);
                look(*screen->view(), std::string(rawValue(kind)) + name + on.name);
            }
}

TEST_F(Pictures, APageOfTheBankFillsWhatTheBarLeaves) {
    const QColor ground(0x33, 0x99, 0x66);
    CRes cRes = screenCRes(UiType::HTML_OTHER);
    cRes.acsHTML = encodedPage("<body style='background:#339966;color:white;font:24px sans-serif'>"
                               "<h1>Confirm</h1><form action='https://emv3ds/challenge'>"
                               "<input name='code'><button>Send</button></form>");
    for (const Telephone& on : kTelephones) {
        resize(on);
        const auto page = showAs<ChallengeWebViewController>(cRes);
        const CGRect place = page->challengeWebView->convertTo(nullptr, page->challengeWebView->bounds());
        const QRect drawn = rectangle(place).toRect().adjusted(2, 2, -2, -2);
        EXPECT_TRUE(waitFor([&] {
            const QImage picture = host->picture();
            return picture.pixelColor(drawn.topLeft()) == ground &&
                   picture.pixelColor(drawn.bottomRight()) == ground;
        }));
        EXPECT_GT(place.size.height, on.size.height / 2);
        look(*page->view(), std::string("page ") + on.name);
    }
}

TEST_F(Pictures, EveryPageOfTheKeyboardFitsItsKeys) {
    const std::pair<const char*, CustomKeyboardLayoutState> pages[] = {
        {"capitals", CustomKeyboardLayoutState::Letters(CustomKeyboardShiftState::On)},
        {"letters", CustomKeyboardLayoutState::Letters(CustomKeyboardShiftState::Off)},
        {"numbers", CustomKeyboardLayoutState::Numbers()},
        {"symbols", CustomKeyboardLayoutState::Symbols()},
        {"pad", CustomKeyboardLayoutState::NumberPad()},
    };
    for (const Telephone& on : kTelephones) {
        resize(on);
        const auto text = showAs<ChallengeTextNativeViewController>(screenCRes(UiType::TEXT));
        text->otp->becomeFirstResponder();
        const auto keyboard = text->secureKeyboard->customKeyboard();
        for (const auto& [name, state] : pages) {
            keyboard->setKeyboardLayoutState(state);
            look(*keyboard, std::string("keyboard ") + name + " " + on.name);
        }
    }
}

} // namespace
} // namespace korvane
