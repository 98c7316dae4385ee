#include "Crypt/ASN1DER.h"
#include "Crypt/DataExtensions.h"
#include "Crypt/DeflateWrapper.h"
#include "Crypt/EC.h"
#include "Crypt/JOSEError.h"
#include "Crypt/SecureRandom.h"
#include "tests/support/Failures.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using enum JOSEErrorCase;

TEST(Base64URL, TakesPaddingWhereItBelongs) {
    const std::pair<std::string_view, std::string_view> taken[] = {
        {"", ""},       {"Zg", "f"},          {"Zg==", "f"},
        {"Zm8=", "fo"}, {"Zm9vYg==", "foob"}, {"+/-_", "\xFB\xFF\xBF"},
        {"Zg=", "f"}, // three characters get the "=" that they lack
        {"Zh", "f"},  // the unused bits of the last character are not looked at
        {"Zm9", "fo"},
    };
    for (const auto& [text, bytes] : taken)
        EXPECT_EQ(fromBase64URL(text), toBytes(bytes)) << text;
    const std::string_view refused[] = {"Z",    "Zm9vY",    "Z=",     "Z===",      "=",
                                        "====", "Zg==Zg==", "Z=g=",   " Zg==",     "Zm9v\n",
                                        "Zm.v", "Zm9v====", "\u00e9", {"Zm9\0", 4}};
    for (const std::string_view text : refused)
        EXPECT_FALSE(fromBase64URL(text)) << text;
    EXPECT_FALSE(fromBase64URL(Bytes{'Z', 0xFF}));
}

TEST(Base64, WantsItsPadding) {
    EXPECT_EQ(fromBase64("+/8="), (Bytes{0xFB, 0xFF}));
    for (const char* text : {"Zg", "Zg=", "-_8=", "Z===", "====", "Zg== ", "Zg==Zg=="})
        EXPECT_FALSE(fromBase64(text)) << text;
}

TEST(DerReading, DamagedElementsAreToldApart) {
    using enum ASN1DERParsingErrorCase;
    const std::pair<Bytes, ASN1DERParsingErrorCase> rows[] = {
        {{}, incorrectTLVLength},
        {{0x30, 0x81}, incorrectLengthFieldLength},
        {{0x02, 0x02, 0x01}, incorrectValueLength},
        {{0x02, 0x80}, incorrectValueLength}, // a lone length byte is its own value, 128
        {{0x02, 0x88, 0x80, 0, 0, 0, 0, 0, 0, 0, 1}, incorrectValueLength},
        {{0x02, 0x89, 1, 0, 0, 0, 0, 0, 0, 0, 0, 1}, incorrectValueLength},
        {{0x02, 0x88, 0x7F, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 1}, incorrectValueLength},
    };
    for (const auto& row : rows)
        EXPECT_RAISES(row.second, nextTLVTriplet(row.first)) << testing::PrintToString(row.first);
    EXPECT_RAISES(ASN1DERParsingError(incorrectTypeTag, TagMismatch{2, 48}),
                  read(Bytes{0x02, 0x01, 0xFF}, ASN1Type::sequence));
}

TEST(DerWriting, LengthFieldsAreTheShortestAndReadBack) {
    const std::pair<std::size_t, Bytes> rows[] = {
        {0, {0}},           {127, {0x7F}},       {128, {0x81, 0x80}},
        {255, {0x81, 255}}, {256, {0x82, 1, 0}}, {65536, {0x83, 1, 0, 0}}};
    for (const auto& [length, field] : rows) {
        const Bytes value(length, 7);
        EXPECT_EQ(lengthField(value), field);
        Bytes der = encode(value, ASN1Type::sequence);
        der.push_back(9);
        EXPECT_EQ(toBytes(read(der, ASN1Type::sequence)), value);
        EXPECT_EQ(toBytes(skip(der, ASN1Type::sequence)), Bytes{9});
    }
}

TEST(Asn1Integers, AreCutOfTheirSignByteOrFilledUp) {
    EXPECT_EQ(Asn1IntegerConversion::toRaw(Bytes{0, 0x80, 2}, 2), (Bytes{0x80, 2}));
    EXPECT_EQ(Asn1IntegerConversion::toRaw(Bytes{2}, 2), (Bytes{0, 2}));
}

TEST(Deflate, PayloadsPassThroughManySteps) {
    const SecretBytes random = randomBytes(200000);
    Bytes mixed(300000, 'a');
    std::copy(random.begin(), random.end(), mixed.begin());
    for (const Bytes& data : {mixed, Bytes(1, 'x'), Bytes(65536, 0), Bytes(65537, 1)})
        EXPECT_EQ(DeflateCompressor().decompress(DeflateCompressor().compress(data)), data);
}

TEST(Deflate, DamagedInputAndBombsAreRefused) {
    const Bytes deflated = DeflateCompressor().compress(Bytes(5000, 'a'));
    for (std::size_t length = 1; length < deflated.size(); ++length)
        EXPECT_RAISES(decompressionFailed, DeflateCompressor().decompress(ByteView(deflated).first(length)));
    EXPECT_RAISES(decompressionFailed, DeflateCompressor().decompress(Bytes(100, 0xFF)));
    EXPECT_RAISES(rawDataMustBeGreaterThanZero, DeflateCompressor().compress({}));
    EXPECT_RAISES(compressedDataMustBeGreaterThanZero, DeflateCompressor().decompress({}));

    constexpr std::size_t kLimit = std::size_t{16} << 20U;
    EXPECT_EQ(DeflateCompressor().decompress(DeflateCompressor().compress(Bytes(kLimit))).size(), kLimit);
    const Bytes bomb = DeflateCompressor().compress(Bytes(kLimit + 1));
    EXPECT_LT(bomb.size(), 20000U);
    EXPECT_RAISES(decompressionFailed, DeflateCompressor().decompress(bomb));
}

} // namespace
} // namespace korvane
