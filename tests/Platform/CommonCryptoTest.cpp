#include "Platform/Security/CommonCrypto.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

TEST(BlockCipher, FailedDecryptionLeavesNoPlaintext) {
    constexpr auto kAES = CCAlgorithm::kCCAlgorithmAES;
    Bytes sealed(64);
    std::size_t moved = 0;
    ASSERT_EQ(CCCrypt(CCOperation::kCCEncrypt, kAES, Bytes(16, 1), Bytes(16), Bytes(40, 'p'), sealed, moved),
              kCCSuccess);
    sealed.resize(moved);
    Bytes inPlace = sealed;
    EXPECT_EQ(CCCrypt(CCOperation::kCCDecrypt, kAES, Bytes(16, 1), Bytes(16), inPlace, inPlace, moved),
              kCCSuccess);
    EXPECT_EQ(toBytes(ByteView(inPlace).first(moved)), Bytes(40, 'p'));
    sealed.back() ^= 1U;
    Bytes opened(sealed.size() + 16, 0xEE);
    ASSERT_EQ(CCCrypt(CCOperation::kCCDecrypt, kAES, Bytes(16, 1), Bytes(16), sealed, opened, moved),
              kCCDecodeError);
    EXPECT_THAT(opened, testing::Each(0));
    EXPECT_EQ(CCCrypt(CCOperation::kCCDecrypt, kAES, Bytes(16, 1), Bytes(16), sealed, sealed, moved),
              kCCDecodeError);
    EXPECT_THAT(sealed, testing::Each(0));
}

TEST(KeyWrap, FailedUnwrappingLeavesNoKey) {
    Bytes raw(16, 0xEE);
    EXPECT_EQ(CCSymmetricKeyUnwrap(Bytes(16), Bytes(24), raw), kCCDecodeError);
    EXPECT_EQ(raw, Bytes(16));
}

} // namespace
} // namespace korvane
