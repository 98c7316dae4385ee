#include "Crypt/ASN1DER.h"
#include "Crypt/EC.h"
#include "tests/support/Failures.h"

#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

namespace korvane {
namespace {

using enum ASN1DERParsingErrorCase;

TEST(DerReading, DamagedElementsAreToldApart) {
    const struct {
        Bytes der;
        ASN1DERParsingErrorCase kind;
    } rows[] = {
        {{}, incorrectTLVLength},
        {{0x02}, incorrectTLVLength},
        {{0x30, 0x81}, incorrectLengthFieldLength},
        {{0x02, 0x82, 0x01}, incorrectLengthFieldLength},
        {{0x02, 0xFF, 0x01}, incorrectLengthFieldLength},
        {{0x02, 0x05, 0x01}, incorrectValueLength},
        {{0x02, 0x81, 0x02, 0x01}, incorrectValueLength},
        {{0x02, 0x80}, incorrectValueLength}, // a lone length byte is its own value, 128
        {{0x02, 0x88, 0x80, 0, 0, 0, 0, 0, 0, 0, 1}, incorrectValueLength},
        {{0x02, 0x89, 1, 0, 0, 0, 0, 0, 0, 0, 0, 1}, incorrectValueLength},
        {{0x02, 0x88, 0x7F, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 1}, incorrectValueLength},
    };
    for (const auto& row : rows)
        EXPECT_RAISES(row.kind, nextTLVTriplet(row.der)) << testing::PrintToString(row.der);
}

TEST(DerReading, ReadTakesTheValueAndSkipTheRest) {
    const Bytes der{0x02, 0x01, 0xFF, 0xAA, 0xBB};
    EXPECT_THAT(read(der, ASN1Type::integer), testing::ElementsAre(0xFF));
    EXPECT_THAT(skip(der, ASN1Type::integer), testing::ElementsAre(0xAA, 0xBB));
    EXPECT_TRUE(read(Bytes{0x30, 0x00}, ASN1Type::sequence).empty());
    EXPECT_THAT(read(Bytes{0x02, 0x83, 0x00, 0x00, 0x01, 0x07}, ASN1Type::integer), testing::ElementsAre(7));

    const auto mismatch = raisedBy<ASN1DERParsingErrorCase>([&] { return read(der, ASN1Type::sequence); });
    ASSERT_TRUE(mismatch);
    EXPECT_EQ(std::get<TagMismatch>(mismatch->value()), (TagMismatch{2, 48}));
}

TEST(DerWriting, LengthFieldsAreTheShortest) {
    EXPECT_THAT(lengthField(Bytes(127)), testing::ElementsAre(0x7F));
    EXPECT_THAT(lengthField(Bytes(128)), testing::ElementsAre(0x81, 0x80));
    EXPECT_THAT(lengthField(Bytes(255)), testing::ElementsAre(0x81, 0xFF));
    EXPECT_THAT(lengthField(Bytes(256)), testing::ElementsAre(0x82, 0x01, 0x00));
    EXPECT_THAT(lengthField(Bytes(65536)), testing::ElementsAre(0x83, 0x01, 0x00, 0x00));
}

RC_GTEST_PROP(DerProperty, ReadingUndoesEncoding,
              (const std::vector<std::uint8_t>& value, std::uint8_t behind)) {
    Bytes der = encode(value, ASN1Type::sequence);
    der.push_back(behind);
    const ByteView content = read(der, ASN1Type::sequence);
    RC_ASSERT(toBytes(content) == value);
    RC_ASSERT(toBytes(skip(der, ASN1Type::sequence)) == Bytes{behind});
}

TEST(Asn1Integers, LeadingZerosAndSignBytesComeAndGo) {
    const struct {
        Bytes raw;
        Bytes integer;
    } rows[] = {
        {{0x01, 0x02}, {0x01, 0x02}}, {{0x00, 0x02}, {0x02}}, {{0x80, 0x02}, {0x00, 0x80, 0x02}},
        {{0x00, 0x80}, {0x00, 0x80}}, {{0x00, 0x00}, {0x00}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(Asn1IntegerConversion::fromRaw(row.raw), row.integer);
        EXPECT_EQ(Asn1IntegerConversion::toRaw(row.integer, 2), row.raw);
    }
    EXPECT_EQ(Asn1IntegerConversion::toRaw(Bytes{1, 2, 3}, 3), (Bytes{1, 2, 3}));
}

TEST(Asn1IntegersDeathTest, ProgrammersFaultsEndTheProcess) {
    EXPECT_DEATH(static_cast<void>(Asn1IntegerConversion::fromRaw({})), "empty");
    EXPECT_DEATH(static_cast<void>(Asn1IntegerConversion::toRaw(Bytes(4), 2)),
                 "ASN.1 integer is 4 bytes long when it should be < 3.");
    EXPECT_DEATH(static_cast<void>(Asn1IntegerConversion::toRaw(Bytes{1, 2, 3}, 2)), "sign byte");
    EXPECT_DEATH(static_cast<void>(length(Bytes{0x88, 0x80, 0, 0, 0, 0, 0, 0, 0})), "machine word");
}

} // namespace
} // namespace korvane
