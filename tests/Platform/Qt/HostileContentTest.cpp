#include "Platform/Qt/Parts/PictureLoader.h"
#include "tests/Platform/Qt/QtScreenTest.h"

#include <QBuffer>

#include <algorithm>
#include <ctime>

namespace korvane {
namespace {

std::string repeated(std::string_view piece, std::size_t times) {
    std::string text;
    text.reserve(piece.size() * times);
    while (times-- > 0)
        text += piece;
    return text;
}

/// A picture as a file of a format.
Bytes encoded(const QImage& picture, const char* format) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    EXPECT_TRUE(buffer.open(QIODevice::WriteOnly) && picture.save(&buffer, format));
    return {bytes.begin(), bytes.end()};
}

/// A palette's 256 colours, each beside others, so that they blend to many more.
QImage motley(QSize size) {
    QImage picture(size, QImage::Format_Indexed8);
    QList<QRgb> colours;
    for (int index = 0; index < 256; ++index)
        colours.append(qRgb(index, 255 - index, index * 3 % 256));
    picture.setColorTable(colours);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            picture.setPixel(x, y, static_cast<uint>(x * 7 + y * 13) % 256);
    return picture;
}

class HostileContent : public QtScreenTest {
protected:
    /// What the process works, in milliseconds: unlike time, it does not pass while others work.
    static double workOf(const std::function<void()>& action) {
        const std::clock_t before = std::clock();
        action();
        return static_cast<double>(std::clock() - before) * 1000 / CLOCKS_PER_SEC;
    }
};

TEST_F(HostileContent, TextsOfAnyLengthDoNotHoldTheScreenUp) {
    // Ten times what it takes, and less than one such text takes that is drawn whole.
    constexpr double kMostWork = 5000;
    struct Row {
        const char* name;
        std::string text;
    };
    const Row rows[] = {{"one word", repeated("w", 128 << 10)},
                        {"one character of joined emoji", repeated("\U0001F469\u200D", 37000)},
                        {"one character with marks", "e" + repeated("\u0301", 128 << 10)},
                        {"lines", repeated("\n", 1 << 20)},
                        {"two scripts in turn", repeated("\u05D0\u0915", 1 << 16)}};
    for (const Row& row : rows)
        for (const UiType kind : {UiType::TEXT, UiType::SINGLE_SELECT}) {
            SCOPED_TRACE(row.name);
            CRes cRes = fullCRes(kind);
            char letter = 'a'; // each text is another
            for (const auto text :
                 {&CRes::challengeInfoHeader, &CRes::challengeInfoLabel, &CRes::challengeInfoText,
                  &CRes::whyInfoLabel, &CRes::whyInfoText, &CRes::submitAuthenticationLabel})
                cRes.*text = std::string(1, letter++) + row.text;
            cRes.challengeSelectInfo.emplace(6, StringTable{{"key", row.text}});
            EXPECT_LT(workOf([&] { show(cRes); }), kMostWork);
        }
}

TEST_F(HostileContent, ALongTextIsDrawnAndMeasuredAsFarAsAnEllipsis) {
    CRes cRes = fullCRes(UiType::TEXT);
    cRes.challengeInfoText = repeated("word ", 20000);
    const auto screen = showAs<ChallengeTextNativeViewController>(cRes);
    EXPECT_EQ(screen->challengeInfoText->text(), cRes.challengeInfoText) << "what is kept";
    const QQuickItem* const item = host->itemOf(*screen->challengeInfoText.get());
    std::vector<const QQuickItem*> texts;
    for (const QQuickItem* const child : item->findChildren<QQuickItem*>())
        if (child->inherits("QQuickText")) texts.push_back(child);
    ASSERT_EQ(texts.size(), 1U);
    const QString drawn = texts.front()->property("text").toString();
    EXPECT_EQ(drawn.size(), 4000);
    EXPECT_TRUE(drawn.endsWith(u"word…"));
    EXPECT_NEAR(screen->challengeInfoText->contentSize().height,
                texts.front()->property("contentHeight").toDouble(), 30);
}

TEST_F(HostileContent, ALogoIsDrawnOnceItIsThere) {
    QImage plain(300, 100, QImage::Format_RGB32);
    plain.fill(qRgb(255, 255, 0));
    for (const char* format : {"PNG", "JPEG"}) {
        SCOPED_TRACE(format);
        const auto screen = showAs<ChallengeNativeViewController>(fullCRes(UiType::OOB));
        screen->bankLogo->setImage(UIImage::make(encoded(plain, format)));
        const QPoint middle = middleOf(*screen->bankLogo.get());
        EXPECT_TRUE(waitFor([&] {
            const QRgb pixel = host->picture().pixel(middle);
            return qRed(pixel) > 250 && qGreen(pixel) > 250 && qBlue(pixel) < 5;
        }));
    }
}

TEST_F(HostileContent, APaletteIsScaledInItsColours) {
    constexpr QSize kSmaller{90, 40};
    constexpr int (*kChannels[])(QRgb) = {qRed, qGreen, qBlue};
    const QImage picture = motley({256, 128});
    const QImage expected = picture.convertToFormat(QImage::Format_RGB32)
                                .scaled(kSmaller, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QImage shown = decoded(*UIImage::make(encoded(picture, "PNG"))->encoded(), kSmaller);
    ASSERT_EQ(shown.size(), kSmaller);
    int largest = 0;
    for (int y = 0; y < kSmaller.height(); ++y)
        for (int x = 0; x < kSmaller.width(); ++x)
            for (const auto channel : kChannels)
                largest =
                    std::max(largest, std::abs(channel(shown.pixel(x, y)) - channel(expected.pixel(x, y))));
    EXPECT_LE(largest, 2);
}

TEST_F(HostileContent, ALogoIsDecodedOnceInTimeAndBesideTheMainQueue) {
    const auto image = [](QSize size) { return UIImage::make(encoded(motley(size), "PNG"))->encoded(); };
    Bytes broken = encoded(motley({64, 64}), "PNG");
    broken.resize(broken.size() / 2);
    const auto damaged = UIImage::make(broken)->encoded();
    const auto small = image({2, 2}), large = image({2048, 4096});
    PictureLoader late(std::chrono::milliseconds(0));
    PictureLoader loader;
    EXPECT_TRUE(late.picture(small).isNull());
    EXPECT_TRUE(loader.picture(damaged).isNull());
    EXPECT_TRUE(loader.picture(large).isNull());
    ASSERT_TRUE(waitFor([&] { return !loader.picture(large).isNull(); }));
    EXPECT_EQ(loader.picture(large).size(), QSize(512, 1024));
    EXPECT_EQ(loader.picture(large).cacheKey(), loader.picture(large).cacheKey()) << "decoded again";
    EXPECT_TRUE(loader.picture(damaged).isNull());
    EXPECT_TRUE(late.picture(small).isNull());
}

} // namespace
} // namespace korvane
