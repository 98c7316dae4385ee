#include "Sdk/Messages/UiUtils.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

namespace korvane {
namespace {

const std::string kJWEPattern =
    "^[A-Za-z0-9-_]+\\.[A-Za-z0-9-_]*\\.[A-Za-z0-9-_]+\\.[A-Za-z0-9-_]+\\.[A-Za-z0-9-_]+$";
const std::string kBase64URLPattern = "^[A-Za-z0-9-_]+$";

/// What the scans stand for: exactly one match of the pattern.
bool matchesOnce(const std::string& text, const std::string& pattern) {
    return matchingStrings(text, pattern).size() == 1;
}

TEST(TextChecks, ScansAnswerAsTheirPatterns) {
    const struct {
        std::string text;
        bool isJWE;
        bool isBase64URL;
    } rows[] = {
        {"", false, false},           {"a..b.c.d", true, false},      {"a.b.c.d.e", true, false},
        {"a.b.c.d", false, false},    {"a.b.c.d.e.f", false, false},  {".a.b.c.d", false, false},
        {"a.b..c.d", false, false},   {"a.b.c..d", false, false},     {"a.b.c.d.", false, false},
        {"a.b.c.d.e=", false, false}, {"a.b.c.d.e+", false, false},   {"AZaz09-_", false, true},
        {"ab ", false, false},        {" ab", false, false},          {"ab\n", false, true},
        {"ab\r\n", false, true},      {"ab\n\n", false, false},       {"ab\n\r", false, false},
        {"ab\u2028", false, true},    {"ab\u2029", false, true},      {"ab\u0085", false, true},
        {"ab\v", false, true},        {"ab\f", false, true},          {"\n", false, false},
        {"a.b.c.d.e\n", true, false}, {"a.b.c.d.e\r\n", true, false}, {"\u00e9", false, false},
        {"ab\u2027", false, false},   {"ab\xFF", false, false},       {"a.b.c.d.\n", false, false},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.text));
        EXPECT_EQ(validateJWE(row.text), row.isJWE);
        EXPECT_EQ(validateBase64url(row.text), row.isBase64URL);
        EXPECT_EQ(matchesOnce(row.text, kJWEPattern), row.isJWE);
        EXPECT_EQ(matchesOnce(row.text, kBase64URLPattern), row.isBase64URL);
    }
    const std::string dots(3000000, '.');
    EXPECT_FALSE(validateJWE(dots));
    EXPECT_FALSE(validateJWE("a" + dots));
}

RC_GTEST_PROP(TextChecksProperty, ScansAnswerAsTheirPatterns, ()) {
    const std::string letters("aZ0-_..==\n\r\v\xC2\x85", 13);
    const auto text = *rc::gen::container<std::string>(rc::gen::elementOf(letters));
    RC_ASSERT(validateJWE(text) == matchesOnce(text, kJWEPattern));
    RC_ASSERT(validateBase64url(text) == matchesOnce(text, kBase64URLPattern));
}

TEST(LenientBase64, AlwaysFillsUpToAMultipleOfFour) {
    const std::pair<std::string, std::string> rows[] = {{"", ""},
                                                        {"-_", "+/=="},
                                                        {"abc", "abc="},
                                                        {"abcd", "abcd"},
                                                        {"abcde", "abcde==="},
                                                        {"\u00e9", "\u00e9==="},
                                                        {"a\r\n", "a\r\n=="}};
    for (const auto& [text, base64] : rows)
        EXPECT_EQ(base64urlToBase64(text), base64);
}

TEST(MessageType, IsFoundInRawJson) {
    const std::string pattern = "messageType\"\\s?:\\s?\"(\\w{4})";
    using testing::ElementsAre;
    EXPECT_THAT(matchingStrings(R"({"messageType" : "CRes","x":1})", pattern),
                ElementsAre(ElementsAre("messageType\" : \"CRes", "CRes")));
    EXPECT_THAT(matchingStrings(R"({"messageType":"Er"})", pattern), testing::IsEmpty());
    EXPECT_THAT(matchingStrings("anything", "("), testing::IsEmpty());
}

} // namespace
} // namespace korvane
