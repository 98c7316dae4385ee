#include "Platform/Security/CommonCrypto.h"

#include <gmock/gmock.h>

#include <algorithm>

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

TEST(BlockCipher, PaddingIsTakenWhereEachOfItsOctetsTellsTheirNumber) {
    constexpr auto kAES = CCAlgorithm::kCCAlgorithmAES;
    struct Row {
        const char* name;
        Bytes end;
        int status;
        std::size_t length;
    };
    Bytes oneDiffers(16, 16);
    oneDiffers.front() = 15;
    const Row rows[] = {{"least", {2, 1}, kCCSuccess, 31},
                        {"several", {1, 3, 3, 3}, kCCSuccess, 29},
                        {"a whole block", Bytes(16, 16), kCCSuccess, 16},
                        {"none", {0}, kCCDecodeError, 0},
                        {"more than a block", Bytes(17, 17), kCCDecodeError, 0},
                        {"the octet before the last differs", {1, 2}, kCCDecodeError, 0},
                        {"the first of a block differs", oneDiffers, kCCDecodeError, 0}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        Bytes text(32, 'p');
        std::copy(row.end.begin(), row.end.end(), text.end() - std::ssize(row.end));
        Bytes sealed(48);
        std::size_t moved = 0;
        ASSERT_EQ(CCCrypt(CCOperation::kCCEncrypt, kAES, Bytes(32, 1), Bytes(16), text, sealed, moved),
                  kCCSuccess);
        EXPECT_EQ(moved, 48U);
        sealed.resize(32); // without the block of padding: the text's own end stands for it
        EXPECT_EQ(CCCrypt(CCOperation::kCCDecrypt, kAES, Bytes(32, 1), Bytes(16), sealed, sealed, moved),
                  row.status);
        EXPECT_EQ(moved, row.length);
    }
}

TEST(KeyWrap, FailedUnwrappingLeavesNoKey) {
    Bytes raw(16, 0xEE);
    EXPECT_EQ(CCSymmetricKeyUnwrap(Bytes(16), Bytes(24), raw), kCCDecodeError);
    EXPECT_EQ(raw, Bytes(16));
}

} // namespace
} // namespace korvane
