#include "Platform/Security/CommonCrypto.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

constexpr auto kAES = CCAlgorithm::kCCAlgorithmAES;

TEST(BlockCipher, EachRefusalHasItsStatus) {
    using enum CCOperation;
    const struct {
        CCOperation operation;
        std::size_t key, vector, input, room;
        int status;
    } rows[] = {
        {kCCEncrypt, 16, 16, 15, 31, kCCSuccess},     {kCCEncrypt, 16, 16, 15, 30, kCCBufferTooSmall},
        {kCCEncrypt, 24, 16, 15, 31, kCCParamError},  {kCCEncrypt, 0, 16, 15, 31, kCCParamError},
        {kCCEncrypt, 16, 12, 15, 31, kCCParamError},  {kCCDecrypt, 32, 16, 15, 31, kCCAlignmentError},
        {kCCDecrypt, 32, 16, 16, 32, kCCDecodeError}, // zeros decrypt to bad padding
    };
    for (const auto& row : rows) {
        Bytes output(row.room, 0xEE);
        std::size_t moved = 99;
        EXPECT_EQ(
            CCCrypt(row.operation, kAES, Bytes(row.key), Bytes(row.vector), Bytes(row.input), output, moved),
            row.status);
        EXPECT_TRUE(row.status == kCCSuccess || moved == 0);
    }
}

TEST(BlockCipher, FailedDecryptionLeavesNoPlaintext) {
    Bytes sealed(64);
    std::size_t moved = 0;
    ASSERT_EQ(CCCrypt(CCOperation::kCCEncrypt, kAES, Bytes(16, 1), Bytes(16), Bytes(40, 'p'), sealed, moved),
              kCCSuccess);
    sealed.resize(moved);
    sealed.back() ^= 1U;
    Bytes opened(sealed.size() + 16, 0xEE);
    ASSERT_EQ(CCCrypt(CCOperation::kCCDecrypt, kAES, Bytes(16, 1), Bytes(16), sealed, opened, moved),
              kCCDecodeError);
    EXPECT_THAT(opened, testing::Each(0));
}

TEST(KeyWrap, FailedUnwrappingLeavesNoKey) {
    Bytes raw(16, 0xEE);
    EXPECT_EQ(CCSymmetricKeyUnwrap(Bytes(16), Bytes(24), raw), kCCDecodeError);
    EXPECT_EQ(raw, Bytes(16));
    for (const std::size_t size : {0U, 8U, 17U})
        EXPECT_EQ(CCSymmetricKeyUnwrap(Bytes(16), Bytes(size), raw), kCCParamError) << size;
    EXPECT_EQ(CCSymmetricKeyUnwrap(Bytes(15), Bytes(24), raw), kCCParamError);
}

} // namespace
} // namespace korvane
