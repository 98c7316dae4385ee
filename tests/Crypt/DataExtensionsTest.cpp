#include "Crypt/DataExtensions.h"
#include "Crypt/Payload.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

namespace korvane {
namespace {

std::optional<std::string> decoded(std::string_view text) {
    const auto bytes = fromBase64URL(text);
    return bytes ? std::optional(std::string(asText(*bytes))) : std::nullopt;
}

TEST(Base64URL, TakesPaddingWhereItBelongs) {
    const struct {
        const char* text;
        std::optional<std::string> bytes;
    } rows[] = {
        {"", ""},
        {"Zg", "f"},
        {"Zg==", "f"},
        {"Zg=", "f"}, // three characters get the "=" that they lack
        {"Zm8", "fo"},
        {"Zm8=", "fo"},
        {"Zm9vYg==", "foob"},
        {"Zh", "f"}, // the unused bits of the last character are not looked at
        {"Zm9", "fo"},
        {"+/-_", "\xFB\xFF\xBF"},
        {"Z", std::nullopt},
        {"Zm9vY", std::nullopt},
        {"Z=", std::nullopt},
        {"Z==", std::nullopt},
        {"Z===", std::nullopt},
        {"=", std::nullopt},
        {"====", std::nullopt},
        {"Zg==Zg==", std::nullopt},
        {"Z=g=", std::nullopt},
        {"Zm8=====", std::nullopt},
        {"Zm9v====", std::nullopt},
        {" Zg==", std::nullopt},
        {"Zg ", std::nullopt},
        {"Zm9v\n", std::nullopt},
        {"Zm\n9v", std::nullopt},
        {"Zm9v\r\nZm9v\r\n", std::nullopt},
        {"Zm.v", std::nullopt},
        {"Zm\u00e9", std::nullopt},
        {"\u00e9\u00e9", std::nullopt},
    };
    for (const auto& row : rows)
        EXPECT_EQ(decoded(row.text), row.bytes) << "\"" << row.text << "\"";
    EXPECT_EQ(decoded(std::string_view("Zm9\0", 4)), std::nullopt);
    EXPECT_EQ(fromBase64URL(Bytes{'Z', 'g'}), toBytes("f"));
    EXPECT_FALSE(fromBase64URL(Bytes{'Z', 0xFF}));
}

TEST(Base64, WantsItsPadding) {
    EXPECT_EQ(fromBase64("+/8="), (Bytes{0xFB, 0xFF}));
    for (const char* text : {"Zg", "Zg=", "-_8=", "Z===", "====", "Zg== ", "Zg==Zg=="})
        EXPECT_FALSE(fromBase64(text)) << text;
}

RC_GTEST_PROP(Base64URLProperty, DecodingUndoesEncoding, (const std::vector<std::uint8_t>& bytes)) {
    const std::string text = base64URLEncodedString(bytes);
    RC_ASSERT(text.find_first_of("+/=") == std::string::npos);
    RC_ASSERT(text.size() == base64URLLength(bytes.size()));
    RC_ASSERT(fromBase64URL(text) == bytes);
    RC_ASSERT(fromBase64(base64EncodedString(bytes)) == bytes);
    RC_ASSERT(asText(base64URLEncodedData(bytes)) == text);
}

TEST(BitLength, IsEightBigEndianBytes) {
    EXPECT_EQ(hexEncodedString(getByteLengthAsOctetHexData({})), "0000000000000000");
    EXPECT_EQ(hexEncodedString(getByteLengthAsOctetHexData(Bytes(32))), "0000000000000100");
    EXPECT_EQ(hexEncodedString(getByteLengthAsOctetHexData(Bytes(65))), "0000000000000208");
}

TEST(Hex, CaseFollowsTheOption) {
    EXPECT_EQ(hexEncodedString(Bytes{0x00, 0x0A, 0xFF}), "000aff");
    EXPECT_EQ(hexEncodedString(Bytes{0x00, 0x0A, 0xFF}, HexEncodingOptions::upperCase), "000AFF");
}

TEST(SigningInput, JoinsTheTextsOfItsComponents) {
    const Payload payload(toBytes("foobar"));
    const Bytes letter = toBytes("f");
    const std::array<DataConvertible, 3> components{payload, ByteView(), letter};
    EXPECT_EQ(asText(asJOSESigningInput(components)), "Zm9vYmFy..Zg");
    EXPECT_TRUE(asJOSESigningInput({}).empty());
}

} // namespace
} // namespace korvane
