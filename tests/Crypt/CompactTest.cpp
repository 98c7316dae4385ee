#include "Crypt/JWE.h"
#include "Crypt/JWS.h"
#include "tests/support/Failures.h"
#include "tests/support/RecordingLogger.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using enum JOSEErrorCase;
using testing::ElementsAre;

const std::string kHeader = base64URLEncodedString(asBytes(R"({"alg":"dir","enc":"A128CBC-HS256"})"));

TEST(CompactReading, PartsAreCountedFirst) {
    const struct {
        std::string text;
        std::int64_t count;
    } rows[] = {
        {"", 1}, {"a.b.c.d", 4}, {"a.b.c.d.e.f", 6}, {"!.!.!", 3}, {std::string(5000000, '.'), 5000001}};
    for (const auto& row : rows) {
        const auto failure = raisedBy<JOSEErrorCase>([&] { return JWE(row.text); });
        ASSERT_TRUE(failure);
        EXPECT_EQ(*failure, JOSEError(invalidCompactSerializationComponentCount, row.count));
    }
    EXPECT_RAISES(invalidCompactSerializationComponentCount, JWS("a.b.c.d.e"));
}

TEST(CompactReading, FirstPartThatDoesNotDecodeIsNamed) {
    const RecordingLogger log;
    const auto failure = raisedBy<JOSEErrorCase>([] { return JWE(kHeader + "..AAAAA.A A.="); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(*failure, JOSEError(componentNotValidBase64URL, std::string("AAAAA")));
    EXPECT_RAISES(invalidCompactSerializationComponentCount, JWE("a.b"));
    const std::string place = "Crypt/Deserializer.cpp deserialize(_:fromCompactSerialization:): ";
    EXPECT_THAT(log.lines(), ElementsAre(place + "Component not valid base64 URL: AAAAA",
                                         place + "Invalid compact serialization component count: 2"));
}

TEST(CompactReading, HeadersThatAreNoneAreHandedBack) {
    const Bytes noHeader = toBytes(R"({"alg":"dir"})");
    const auto failure =
        raisedBy<JOSEErrorCase>([&] { return JWE(base64URLEncodedString(noHeader) + "...."); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(*failure, JOSEError(componentCouldNotBeInitializedFromData, noHeader));
    EXPECT_RAISES(componentCouldNotBeInitializedFromData, JWS(".."));
    EXPECT_RAISES(wrongDataEncoding, JWE(Bytes{'.', 0xFF}));
    EXPECT_RAISES(wrongDataEncoding, JWS(Bytes{0xC0, 0x80}));
}

TEST(CompactWriting, PartsComeBackAsTheyWere) {
    const std::string oddHeader = base64URLEncodedString(asBytes(R"( {"enc" : "x", "alg":"y"} )"));
    for (const std::string& text :
         {kHeader + "..AAAA.BBBB.CCCC", oddHeader + ".Zg.Zm8.Zm9v.", kHeader + "...."}) {
        EXPECT_EQ(JWE(text).compactSerializedString(), text);
        EXPECT_EQ(asText(JWE(asBytes(text)).compactSerializedData()), text);
    }
    EXPECT_EQ(JWS(oddHeader + "..Zg").compactSerializedString(), oddHeader + "..Zg");
}

} // namespace
} // namespace korvane
