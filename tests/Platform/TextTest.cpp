#include "Platform/Text.h"
#include "Platform/URL.h"
#include "Platform/UUID.h"

#include <gmock/gmock.h>

#include <set>

namespace korvane {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(CharacterCount, CountsWhatAReaderSees) {
    const struct {
        const char* name;
        std::string text;
        std::size_t count;
    } rows[] = {
        {"nothing", "", 0},
        {"ASCII", "abc", 3},
        {"a line end of two octets", "a\r\nb", 3},
        {"two line ends the other way round", "\n\r", 2},
        {"a zero octet", std::string("a\0b", 3), 3},
        {"composed accent", "\u00e9", 1},
        {"combining accent", "e\u0301", 1},
        {"family joined of three", "\U0001F468\u200D\U0001F469\u200D\U0001F467", 1},
        {"flag of two letters", "\U0001F1E8\U0001F1E6", 1},
        {"Hangul syllable of three letters", "\u1112\u1161\u11ab", 1},
        {"an octet that is not UTF-8", "a\xFFz", 3},
    };
    for (const auto& row : rows)
        EXPECT_EQ(characterCount(row.text), row.count) << row.name;
}

TEST(ControlCharacters, AreShownAsTheirNumbersAndNeverGoOut) {
    const struct {
        const char* name;
        std::string text;
        std::string expected;
    } rows[] = {
        {"nothing", "", ""},
        {"no control among letters", "a \u00e9\u00a0\u2027\u202a\U0001F600~\\",
         "a \u00e9\u00a0\u2027\u202a\U0001F600~\\"},
        {"line ends and a tab", "a\r\nb\t", "a\\u000d\\u000ab\\u0009"},
        {"a zero octet", std::string("\0", 1), "\\u0000"},
        {"escape and delete", "\x1b[2J\x7f", "\\u001b[2J\\u007f"},
        {"the second set, first and last", "\u0080\u009b\u009f", "\\u0080\\u009b\\u009f"},
        {"line and paragraph separators", "\u2028\u2029", "\\u2028\\u2029"},
        {"octets that are no UTF-8", "a\x9b\xc2", "a\uFFFD\uFFFD"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(escapedControls(row.text), row.expected) << row.name;
    EXPECT_EQ(escapedControls("a\n\x1b", LineBreaks::kept), "a\n\\u001b");
}

TEST(FirstCharacters, AreWholeCodePoints) {
    EXPECT_EQ(firstCharacters("abc", 3), "abc");
    EXPECT_EQ(firstCharacters("abc", 2), "ab");
    EXPECT_EQ(firstCharacters("\u00e9\U0001F600x", 2), "\u00e9\U0001F600");
    EXPECT_EQ(firstCharacters("\x80\x80", 1), "\uFFFD") << "octets that begin nothing";
}

TEST(RegularExpressions, GroupsComeWithTheirMatches) {
    EXPECT_THAT(regularExpressionMatches("(a)(b)?", "ab-a"),
                ElementsAre(ElementsAre("ab", "a", "b"), ElementsAre("a", "a", "")));
    EXPECT_THAT(regularExpressionMatches("x", "abc"), IsEmpty());
    EXPECT_THAT(regularExpressionMatches("(", "("), IsEmpty());
    EXPECT_THAT(regularExpressionMatches("^a$", "a\n"), ElementsAre(ElementsAre("a")));
}

TEST(URLParsing, TakesWhatAUriMayHold) {
    for (const char* text : {"https://acs.example/a?b=c#d", "relative/path", "urn:x", "h%C3%A9"}) {
        const auto url = URL::make(text);
        ASSERT_TRUE(url) << text;
        EXPECT_EQ(url->absoluteString(), text);
    }
    for (const char* text : {"", "a b", "https://\u00e9", "100%", "%zz", "%a", "a\nb", "<a>"})
        EXPECT_FALSE(URL::make(text)) << text;
}

TEST(UUIDText, IsARandomVersionFourInUpperCase) {
    std::set<std::string> seen;
    for (int count = 0; count < 100; ++count) {
        const std::string text = makeUUIDString();
        EXPECT_THAT(text, testing::MatchesRegex(
                              "[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
        seen.insert(text);
    }
    EXPECT_EQ(seen.size(), 100U);
}

} // namespace
} // namespace korvane
