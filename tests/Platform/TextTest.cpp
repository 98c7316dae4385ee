#include "Platform/Text.h"
#include "Platform/URL.h"
#include "Platform/UUID.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

TEST(CharacterCount, CountsWhatAReaderSees) {
    for (const auto& [text, count] : std::initializer_list<std::pair<const char*, std::size_t>>{
             {"", 0},
             {"a\r\nb", 3},
             {"\n\r", 2},
             {"\u00e9", 1},
             {"e\u0301", 1},
             {"a\xFFz", 3},
             {"\U0001F468\u200D\U0001F469\u200D\U0001F467", 1},
             {"\U0001F1E8\U0001F1E6", 1},
             {"\u1112\u1161\u11ab", 1}})
        EXPECT_EQ(characterCount(text), count) << text;
    EXPECT_EQ(characterCount(std::string("a\0b", 3)), 3U);
    // Around the blocks in which ASCII is looked at.
    for (const std::size_t before : {0U, 62U, 63U, 64U, 127U, 128U})
        for (const std::size_t after : {0U, 1U, 64U})
            for (const char* text : {"\r\n", "\u00e9"})
                EXPECT_EQ(characterCount(std::string(before, 'a') + text + std::string(after, 'z')),
                          before + 1 + after)
                    << before << " and " << after;
}

TEST(ControlCharacters, AreShownAsTheirNumbersAndNeverGoOut) {
    const std::string harmless = "a \u00e9\u00a0\u2027\u202a\U0001F600~\\";
    const std::pair<std::string, std::string> rows[] = {
        {harmless, harmless},
        {"a\r\nb\t", "a\\u000d\\u000ab\\u0009"},
        {std::string("\0", 1), "\\u0000"},
        {"\x1b[2J\x7f", "\\u001b[2J\\u007f"},
        {"\u0080\u009b\u009f", "\\u0080\\u009b\\u009f"},
        {"\u2028\u2029", "\\u2028\\u2029"},
        {"a\x9b\xc2", "a\uFFFD\uFFFD"},
    };
    for (const auto& [text, expected] : rows)
        EXPECT_EQ(escapedControls(text), expected);
    EXPECT_EQ(escapedControls("a\n\x1b", LineBreaks::kept), "a\n\\u001b");
}

TEST(FirstCharacters, AreWholeCodePoints) {
    EXPECT_EQ(firstCharacters("abc", 3), "abc");
    EXPECT_EQ(firstCharacters("\u00e9\U0001F600x", 2), "\u00e9\U0001F600");
    EXPECT_EQ(firstCharacters("\x80\x80", 1), "\uFFFD") << "octets that begin nothing";
}

TEST(URLParsing, TakesWhatAUriMayHold) {
    for (const char* text : {"https://acs.example/a?b=c#d", "relative/path", "urn:x", "h%C3%A9"})
        EXPECT_EQ(URL::make(text).value_or(*URL::make("refused")).absoluteString(), text);
    for (const char* text : {"", "a b", "https://\u00e9", "100%", "%zz", "%a", "a\nb", "<a>"})
        EXPECT_FALSE(URL::make(text)) << text;
}

TEST(UUIDText, IsARandomVersionFourInUpperCase) {
    EXPECT_THAT(makeUUIDString(),
                testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}"));
    EXPECT_NE(makeUUIDString(), makeUUIDString());
}

} // namespace
} // namespace korvane
