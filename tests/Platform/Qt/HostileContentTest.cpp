#include "tests/Platform/Qt/QtScreenTest.h"

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

} // namespace
} // namespace korvane
