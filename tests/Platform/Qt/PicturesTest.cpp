#include "Platform/Qt/Parts/Values.h"
#include "Ui/Customisation/Theme.h"
#include "Ui/Screens/ChallengeWebViewController.h"
#include "keyboard/KeyPop.h"
#include "keyboard/KeyboardLayout.h"
#include "tests/Platform/Qt/QtScreenTest.h"

#include <QDir>
#include <QFontMetricsF>
#include <QScreen>

#include <algorithm>
#include <cmath>
#include <map>

namespace korvane {
namespace {

using testing::IsEmpty;

double luminance(QRgb colour) {
    const auto linear = [](int part) {
        const double share = part / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) + 0.0722 * linear(qBlue(colour));
}

/// The contrast ratio (WCAG 2.2) of the colour that stands out most from the commonest one.
double contrastIn(const QImage& picture) {
    std::map<QRgb, int> colours;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            ++colours[picture.pixel(x, y)];
    const auto ground =
        std::ranges::max_element(colours, {}, [](const auto& colour) { return colour.second; });
    double best = 1;
    for (const auto& [colour, count] : colours) {
        const auto [dark, light] = std::minmax({luminance(colour), luminance(ground->first)});
        best = std::max(best, (light + 0.05) / (dark + 0.05));
    }
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

/// A text lies in its item: of a single line its ink, since a letter that another font lends makes the line as
/// tall as that font's, and what is left blank may be beyond.
bool hasRoom(const QQuickItem& text) {
    constexpr double kBlur = 0.5;
    double top = 0, bottom = text.property("contentHeight").toDouble();
    if (text.property("lineCount") == 1) {
        const QFontMetricsF metrics(text.property("font").value<QFont>());
        const QRectF ink = metrics.tightBoundingRect(text.property("text").toString());
        top = text.baselineOffset() + ink.top();
        bottom = text.baselineOffset() + ink.bottom();
    }
    return top >= -kBlur && bottom <= text.height() + kBlur &&
           text.property("contentWidth").toDouble() <= text.width() + kBlur;
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
    /// Texts of a view that are cut short, larger than their item, or stand out less than WCAG 2.2 asks for
    /// (1.4.3). Those that are scrolled away are not drawn.
    [[nodiscard]] std::vector<std::string> unreadable(const UIView& view) const {
        constexpr double kLeastContrast = 4.5;
        std::vector<std::string> faults;
        const QImage picture = host->picture();
        for (const QQuickItem* const text : textsOf(view)) {
            const std::string name = text->property("text").toString().toStdString();
            if (text->property("truncated").toBool()) faults.push_back("cut short: " + name);
            if (!hasRoom(*text)) faults.push_back("larger than its item: " + name);
            const QRectF place = text->mapRectToItem(host, text->boundingRect());
            QRectF seen = place;
            for (const QQuickItem* around = text->parentItem(); around != host; around = around->parentItem())
                if (around->clip()) seen &= around->mapRectToItem(host, around->boundingRect());
            if (seen != place) continue;
            const double found = contrastIn(picture.copy(place.toAlignedRect()));
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
            for (const auto& [name, scale] :
                 {std::pair(" ", 1.0), {" large ", 1.35}, {" long ", 1.0}, {" long large ", 1.35}}) {
                const bool isLong = std::string(name).starts_with(" long");
                resize(on);
                host->setTextScale(1);
                const auto screen =
                    showAs<ChallengeNativeViewController>((isLong ? longCRes : screenCRes)(kind));
                screen->inverseWhyInfoDisplaying();
                screen->inverseExtInfoDisplaying();
                settle();
                EXPECT_EQ(screen->toolBar->titleLabel()->scaleFactor(), 1)
                    << "beside the middle rather than small";
                screen->scrollView->setContentOffset({0, 0});
                host->setTextScale(scale);
                look(*screen->view(), std::string(rawValue(kind)) + name + on.name);
            }
}

/// As the example's shop wears them, and with a finger on each button.
TEST_F(Pictures, TextsCanBeReadInEveryThemeAndUnderAFinger) {
    const QDir themes(QStringLiteral(KORVANE_THEMES));
    ASSERT_EQ(themes.entryList({"*.json"}).size(), 4);
    for (const QString& file : themes.entryList({"*.json"})) {
        const std::string path = themes.filePath(file).toStdString();
        customization = readThemeFile(path).customization;
        host->setDark(file == "dark.json");
        for (const UiType kind : {UiType::TEXT, UiType::MULTI_SELECT, UiType::OOB}) {
            SCOPED_TRACE(path + " " + std::string(rawValue(kind)));
            const auto screen = showAs<ChallengeNativeViewController>(screenCRes(kind));
            EXPECT_THAT(unreadable(*screen->view()), IsEmpty());
            for (const UIView* const leaf : leavesOf(*screen->view())) {
                if (!isAny<UIButton>(*leaf)) continue;
                finger(0, QEventPoint::State::Pressed, middleOf(*leaf));
                settle();
                EXPECT_THAT(unreadable(*leaf), IsEmpty());
                finger(0, QEventPoint::State::Released, {1, 1});
            }
        }
    }
}

/// WCAG 2.2, 1.4.11: what a control is known by, and what tells its state.
TEST_F(Pictures, FieldsMarksArrowsRingsAndSpinnersStandOut) {
    for (const bool isDark : {false, true}) {
        SCOPED_TRACE(isDark);
        host->setDark(isDark);
        const auto screen = showAs<ChallengeTextNativeViewController>(screenCRes(UiType::TEXT));
        const auto contrastOf = [&](const UIView& view) {
            const CGRect place = view.convertTo(nullptr, view.bounds());
            return contrastIn(host->picture().copy(rectangle(place).toRect().adjusted(-3, -3, 3, 3)));
        };
        const auto box = screen->whitelistingInfo->imageView();
        EXPECT_GE(contrastOf(*box), 3);
        tap(*screen->whitelistingInfo.get());
        settle();
        const std::shared_ptr<UIView> parts[] = {screen->otp.get(), screen->warningImage.get(), box,
                                                 screen->whyInfoButton->imageView()};
        for (const auto& part : parts)
            EXPECT_GE(contrastOf(*part), 3) << part->accessibilityIdentifier();
        screen->otp->becomeFirstResponder();
        settle();
        const CGRect field = screen->otp->convertTo(nullptr, screen->otp->bounds());
        const QColor accent =
            asColor(screen->view()->tintColor(), host->uiWindow()->traits().userInterfaceStyle);
        for (const int inside : {0, 1})
            EXPECT_EQ(host->picture().pixelColor(static_cast<int>(field.origin.x) + inside,
                                                 static_cast<int>(field.origin.y) + 24),
                      accent);
        screen->view()->endEditing();
        screen->showSpinner();
        settle();
        const CGRect whole = screen->view()->bounds();
        const QPoint middle = QPointF(whole.size.width / 2, whole.size.height / 2).toPoint();
        const QImage drawn = host->picture();
        EXPECT_TRUE(
            drawn.save(QStringLiteral(KORVANE_PICTURES) + (isDark ? "/spinner dark.png" : "/spinner.png")));
        EXPECT_GE(contrastIn(drawn.copy(QRect(middle - QPoint(25, 25), QSize(50, 50)))), 4.5);
    }
}

TEST_F(Pictures, APressedKeysBubbleShowsItsGlyphLargeAndClear) {
    for (const bool isDark : {false, true})
        for (const char* letter : {"Q", "H", "P"}) {
            host->setDark(isDark);
            const auto text = showAs<ChallengeTextNativeViewController>(screenCRes(UiType::TEXT));
            text->otp->becomeFirstResponder();
            settle();
            const auto layout = text->secureKeyboard->customKeyboard()->getCurrentKeyboardLayout();
            const auto leaves = leavesOf(*layout);
            const auto key = std::ranges::find_if(
                leaves, [letter](const UIView* leaf) { return leaf->accessibilityLabel() == letter; });
            ASSERT_NE(key, leaves.end());
            finger(0, QEventPoint::State::Pressed, middleOf(**key));
            settle();
            const auto pop = layout->viewWithTag(KeyboardButtonPopupViewTag);
            ASSERT_TRUE(pop);
            const auto glyph =
                std::static_pointer_cast<UILabel>(std::static_pointer_cast<KeyPop>(pop)->contentView());
            EXPECT_GT(glyph->font().pointSize(), 30);
            const QImage drawn = host->picture();
            EXPECT_GE(contrastIn(drawn.copy(rectangle(glyph->convertTo(nullptr, glyph->bounds())).toRect())),
                      4.5);
            const CGRect foot = (*key)->convertTo(nullptr, (*key)->bounds());
            EXPECT_LT(contrastIn(drawn.copy(rectangle(foot).toRect().adjusted(8, 16, -8, -8))), 1.2)
                << "no ghost";
            EXPECT_TRUE(drawn.save(QStringLiteral(KORVANE_PICTURES) + "/bubble " + letter +
                                   (isDark ? " dark.png" : ".png")));
            finger(0, QEventPoint::State::Released, middleOf(**key));
        }
}

TEST_F(Pictures, WideWindowsKeepLinesShortAndTextsFromTheRightMirrorTheScreen) {
    CRes hebrew = screenCRes(UiType::SINGLE_SELECT);
    hebrew.challengeInfoHeader = "אישור התשלום";
    hebrew.challengeInfoText = "שלחנו אליך קוד.";
    hebrew.whitelistingInfoText = "לשאול פחות";
    const Telephone sizes[] = {{"390 x 844", {390, 844}, {47, 0, 34, 0}},
                               {"768 x 1024", {768, 1024}, {}},
                               {"1920 x 1080", {1920, 1080}, {}}};
    for (const Telephone& on : sizes)
        for (const bool isMirrored : {false, true}) {
            resize(on);
            const auto screen =
                showAs<ChallengeNativeViewController>(isMirrored ? hebrew : screenCRes(UiType::TEXT));
            screen->bankLogo->setImage(UIImage::filled({60, 30}, UIColor::red()));
            settle();
            const CGRect header = screen->challengeInfoHeader->frame();
            EXPECT_LE(header.size.width, 560);
            EXPECT_NEAR(header.origin.x + CGRectGetMaxX(header), on.size.width, 1);
            const CGRect logo = screen->bankLogo->frame();
            EXPECT_EQ(isMirrored ? CGRectGetMaxX(logo) : logo.origin.x,
                      isMirrored ? CGRectGetMaxX(header) : header.origin.x);
            const CGRect cancel = screen->toolBar->topItem()->rightBarButtonItem()->customView()->frame();
            EXPECT_EQ(cancel.origin.x < on.size.width / 2, isMirrored);
            look(*screen->view(), std::string(isMirrored ? "mirrored " : "wide ") + on.name);
        }
}

TEST_F(Pictures, LogosOfAnyShapeStandOnTheMarginWithAPlateWhereItIsDark) {
    const std::tuple<const char*, CGSize, double, double> rows[] = {
        {"square", {80, 80}, 44, 44}, {"wide", {900, 30}, 120, 120}, {"tall", {10, 220}, 2, 12}};
    for (const auto& [name, size, bare, plated] : rows) {
        const auto screen = showAs<ChallengeNativeViewController>(screenCRes(UiType::OOB));
        screen->bankLogo->setImage(UIImage::filled(size, UIColor::blue()));
        for (const bool isDark : {true, false}) {
            host->setDark(isDark);
            settle();
            const CGRect logo = screen->bankLogo->frame();
            EXPECT_EQ(logo.size.width, isDark ? plated : bare) << name;
            EXPECT_EQ(logo.origin.x, 25);
            const QPoint corner(25 + 2, static_cast<int>(logo.origin.y) + 22);
            EXPECT_TRUE(!isDark || host->picture().pixelColor(corner) == QColor(Qt::white));
        }
        look(*screen->view(), std::string("logo ") + name);
    }
}

/// A frame of which only what has changed is drawn looks like one that is drawn whole.
TEST_F(Pictures, ScrollingLeavesNoTraces) {
    for (const UiType kind : {UiType::TEXT, UiType::MULTI_SELECT}) {
        resize(kTelephones[0]);
        const auto screen = showAs<ChallengeNativeViewController>(longCRes(kind));
        for (const double offset : {0.0, 37.3, 120.7, 61.5, 300.2, 3.4}) {
            screen->scrollView->setContentOffset({0, offset});
            int frames = 0;
            const auto counting =
                QObject::connect(&scene, &QQuickWindow::frameSwapped, [&frames] { ++frames; });
            EXPECT_TRUE(waitFor([&] {
                scene.update();
                return frames > 2;
            }));
            QObject::disconnect(counting);
            const QImage shown =
                scene.screen()->grabWindow(scene.winId()).toImage().convertToFormat(QImage::Format_RGB32);
            const QImage whole = host->picture().convertToFormat(QImage::Format_RGB32);
            ASSERT_EQ(shown.size(), whole.size());
            int traces = 0;
            for (int y = 0; y < whole.height(); ++y)
                for (int x = 0; x < whole.width() - 8; ++x) // beside the mark, which fades
                    traces += shown.pixel(x, y) != whole.pixel(x, y);
            EXPECT_EQ(traces, 0) << "at " << offset;
        }
    }
}

TEST_F(Pictures, APageOfTheBankFillsWhatTheBarLeaves) {
    if (!ChallengeWebViewController::isAvailable()) GTEST_SKIP() << "built without an engine for pages";
    const QColor ground(0x33, 0x99, 0x66);
    CRes cRes = screenCRes(UiType::HTML_OTHER);
    cRes.acsHTML = encodedPage("<body style='background:#339966;color:white;font:24px sans-serif'>"
                               "<h1>Confirm</h1><form action='https://emv3ds/challenge'>"
                               "<input name='code'><button>Send</button></form>");
    for (const Telephone& on : kTelephones) {
        resize(on);
        host->setTextScale(1);
        const auto page = showAs<ChallengeWebViewController>(cRes);
        const CGRect place = page->challengeWebView->convertTo(nullptr, page->challengeWebView->bounds());
        const QRect drawn = rectangle(place).toRect().adjusted(2, 2, -2, -2);
        EXPECT_TRUE(waitFor([&] {
            const QImage picture = host->picture();
            return picture.pixelColor(drawn.topLeft()) == ground &&
                   picture.pixelColor(drawn.bottomRight()) == ground;
        }));
        EXPECT_GT(place.size.height, on.size.height / 2);
        const std::function<double(const QQuickItem&)> zoomIn = [&zoomIn](const QQuickItem& item) {
            double zoom = item.property("zoomFactor").toDouble();
            for (const QQuickItem* const child : item.childItems())
                zoom = std::max(zoom, zoomIn(*child));
            return zoom;
        };
        const auto zoom = [&] { return zoomIn(*host->itemOf(*page->challengeWebView.get())); };
        host->setTextScale(1.35);
        EXPECT_TRUE(waitFor([&] { return std::abs(zoom() - 1.35) < 0.01; }));
        page->challengeWebView->loadHTMLString(*page->pageString);
        settle();
        EXPECT_NEAR(zoom(), 1.35, 0.01) << "of the next page too";
        EXPECT_TRUE(waitFor([&] { return contrastIn(host->picture().copy(drawn)) > 3; })) << "white on green";
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
