#include "Platform/Qt/Parts/PictureLoader.h"
#include "tests/Platform/Qt/QtScreenTest.h"

#include <QBuffer>

#include <ctime>
#include <utility>

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

QImage yellow(QSize size) {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(qRgb(255, 255, 0));
    return picture;
}

class HostileContent : public QtScreenTest {};

TEST_F(HostileContent, TextsOfAnyLengthDoNotHoldTheScreenUp) {
    // Ten times what it takes, and less than one such text takes that is drawn whole. Unlike time, work does
    // not pass while other processes have theirs.
    constexpr std::clock_t kMostWork = 5 * CLOCKS_PER_SEC;
    const std::pair<const char*, std::string> rows[] = {
        {"one word", repeated("w", 128 << 10)},
        {"one character of joined emoji", repeated("\U0001F469\u200D", 37000)},
        {"one character with marks", "e" + repeated("\u0301", 128 << 10)},
        {"lines", repeated("\n", 1 << 20)},
        {"two scripts in turn", repeated("\u05D0\u0915", 1 << 16)}};
    for (const auto& [name, piece] : rows)
        for (const UiType kind : {UiType::TEXT, UiType::SINGLE_SELECT}) {
            SCOPED_TRACE(name);
            CRes cRes = screenCRes(kind);
            char letter = 'a'; // each text is another
            for (const auto text :
                 {&CRes::challengeInfoHeader, &CRes::challengeInfoLabel, &CRes::challengeInfoText,
                  &CRes::whyInfoLabel, &CRes::whyInfoText, &CRes::submitAuthenticationLabel})
                cRes.*text = std::string(1, letter++) + piece;
            cRes.challengeSelectInfo.emplace(6, StringTable{{"key", piece}});
            const std::clock_t before = std::clock();
            show(cRes);
            EXPECT_LT(std::clock() - before, kMostWork);
        }
}

TEST_F(HostileContent, ALogoIsDrawnInItsColoursOnceItIsThere) {
    for (const char* format : {"PNG", "JPEG"}) {
        SCOPED_TRACE(format);
        const auto screen = showAs<ChallengeNativeViewController>(screenCRes(UiType::OOB));
        screen->bankLogo->setImage(UIImage::make(encoded(yellow({300, 100}), format)));
        settle();
        const QPoint middle = middleOf(*screen->bankLogo.get());
        EXPECT_TRUE(waitFor([&] {
            const QRgb pixel = host->picture().pixel(middle);
            return qRed(pixel) > 250 && qGreen(pixel) > 250 && qBlue(pixel) < 5;
        }));
    }
}

/// Indices of a palette are no shades: those between two of them may be any colour.
TEST_F(HostileContent, APaletteIsScaledInItsColours) {
    QImage motley({256, 128}, QImage::Format_Indexed8);
    QList<QRgb> colours;
    for (int index = 0; index < 256; ++index)
        colours.append(qRgb(index, 255 - index, index * 3 % 256));
    motley.setColorTable(colours);
    for (int x = 0; x < motley.width(); ++x)
        for (int y = 0; y < motley.height(); ++y)
            motley.setPixel(x, y, static_cast<uint>(x * 7 + y * 13) % 256);
    const QSize smaller(90, 40);
    const QImage expected = motley.convertToFormat(QImage::Format_RGB32)
                                .scaled(smaller, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const QImage shown = decoded(*UIImage::make(encoded(motley, "PNG"))->encoded(), smaller);
    ASSERT_EQ(shown.size(), smaller);
    for (int x = 0; x < smaller.width(); ++x)
        EXPECT_NEAR(qBlue(shown.pixel(x, 16)), qBlue(expected.pixel(x, 16)), 2);
}

TEST_F(HostileContent, ALogoIsDecodedOnceInTimeAndBesideTheMainQueue) {
    const auto pngOf = [](QSize size) { return encoded(yellow(size), "PNG"); };
    Bytes broken = pngOf({64, 64});
    broken.resize(broken.size() / 2);
    const auto damaged = UIImage::make(broken)->encoded();
    const auto small = UIImage::make(pngOf({2, 2}))->encoded();
    const auto large = UIImage::make(pngOf({2048, 4096}))->encoded();
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
