#include "Platform/Security/CommonCrypto.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

constexpr auto kAES = CCAlgorithm::kCCAlgorithmAES;

TEST(BlockCipher, EachRefusalHasItsStatus) {
    const Bytes vector(16);
    const auto status = [](CCOperation operation, std::size_t keyLength, const Bytes& iv, const Bytes& input,
                           std::size_t room) {
        Bytes output(room, 0xEE);
        std::size_t moved = 99;
        const int result = CCCrypt(operation, kAES, Bytes(keyLength), iv, input, output, moved);
        EXPECT_TRUE(result == kCCSuccess || moved == 0);
        return result;
    };
    using enum CCOperation;
    EXPECT_EQ(status(kCCEncrypt, 16, vector, Bytes(15), 31), kCCSuccess);
    EXPECT_EQ(status(kCCEncrypt, 16, vector, Bytes(15), 30), kCCBufferTooSmall);
    EXPECT_EQ(status(kCCEncrypt, 24, vector, Bytes(15), 31), kCCParamError) << "AES-192 has no row";
    EXPECT_EQ(status(kCCEncrypt, 0, vector, Bytes(15), 31), kCCParamError);
    EXPECT_EQ(status(kCCEncrypt, 16, Bytes(12), Bytes(15), 31), kCCParamError);
    EXPECT_EQ(status(kCCDecrypt, 32, vector, Bytes(15), 31), kCCAlignmentError);
    EXPECT_EQ(status(kCCDecrypt, 32, vector, Bytes(16), 32), kCCDecodeError)
        << "zeros decrypt to bad padding";
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

TEST(Hmac, PiecesAreOneInput) {
    const Bytes key(200, 'k');
    const Bytes input(300, 'i');
    for (const auto algorithm : {CCHmacAlgorithm::kCCHmacAlgSHA256, CCHmacAlgorithm::kCCHmacAlgSHA384,
                                 CCHmacAlgorithm::kCCHmacAlgSHA512}) {
        std::array<std::uint8_t, kMaxDigestLength> whole{};
        std::array<std::uint8_t, kMaxDigestLength> inPieces{};
        const ByteView view(input);
        EXPECT_EQ(
            CCHmac(algorithm, key, {view}, whole),
            CCHmac(algorithm, key, {view.first(1), {}, view.subspan(1, 64), view.subspan(65)}, inPieces));
        EXPECT_EQ(whole, inPieces);
    }
}

TEST(KeyWrap, SizesAreChecked) {
    const Bytes kek(16);
    for (const std::size_t size : {0U, 8U, 17U, 20U}) {
        Bytes wrapped(CCSymmetricWrappedSize(size));
        EXPECT_EQ(CCSymmetricKeyWrap(kek, Bytes(size), wrapped), kCCParamError) << size;
        Bytes raw(CCSymmetricUnwrappedSize(size));
        EXPECT_EQ(CCSymmetricKeyUnwrap(kek, Bytes(size), raw), kCCParamError) << size;
    }
    Bytes raw(16, 0xEE);
    EXPECT_EQ(CCSymmetricKeyUnwrap(kek, Bytes(24), raw), kCCDecodeError);
    EXPECT_EQ(raw, Bytes(16));
    EXPECT_EQ(CCSymmetricKeyUnwrap(Bytes(15), Bytes(24), raw), kCCParamError);
}

TEST(ConstantTimeEquality, IsEquality) {
    EXPECT_TRUE(isEqualInConstantTime(Bytes{1, 2}, Bytes{1, 2}));
    EXPECT_FALSE(isEqualInConstantTime(Bytes{1, 2}, Bytes{1, 3}));
    EXPECT_FALSE(isEqualInConstantTime(Bytes{1, 2}, Bytes{1, 2, 3}));
    EXPECT_TRUE(isEqualInConstantTime({}, {}));
}

} // namespace
} // namespace korvane
