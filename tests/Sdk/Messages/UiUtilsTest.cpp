#include "Sdk/Messages/UiUtils.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

TEST(TextChecks, TellJWEsAndBase64URLTexts) {
    enum Kind { neither, jwe, base64URL };
    const std::pair<std::string, Kind> rows[] = {
        {"a..b.c.d", jwe},       {"a.b.c.d.e", jwe},      {"a.b.c.d", neither},    {"a.b.c.d.e.f", neither},
        {".a.b.c.d", neither},   {"a.b..c.d", neither},   {"a.b.c..d", neither},   {"a.b.c.d.", neither},
        {"a.b.c.d.e=", neither}, {"a.b.c.d.e\r\n", jwe},  {"AZaz09-_", base64URL}, {"ab\n", base64URL},
        {"ab\n\n", neither},     {"ab\u0085", base64URL}, {"ab\u2027", neither},   {"\u00e9", neither},
        {"", neither},           {"\n", neither},
    };
    for (const auto& [text, kind] : rows) {
        SCOPED_TRACE(testing::PrintToString(text));
        EXPECT_EQ(validateJWE(text), kind == jwe);
        EXPECT_EQ(validateBase64url(text), kind == base64URL);
    }
    EXPECT_FALSE(validateJWE("a" + std::string(3000000, '.')));
}

/// Texts are scanned in words of several characters, with a rest.
TEST(TextChecks, EachOctetIsJudgedAtEachPlaceOfALongText) {
    const std::string alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
    for (std::size_t place = 0; place < 66; ++place)
        for (int octet = 0; octet < 256; ++octet) {
            std::string text(67, 'a');
            text[place] = static_cast<char>(octet);
            ASSERT_EQ(validateBase64url(text), alphabet.find(text[place]) != std::string::npos)
                << octet << " at " << place;
        }
}

TEST(LenientBase64, IsFilledUpToAMultipleOfFour) {
    EXPECT_EQ(base64urlToBase64("-_abcd"), "+/abcd==");
}

} // namespace
} // namespace korvane
