#include "Crypt/DeflateWrapper.h"
#include "Crypt/JOSEError.h"
#include "Crypt/SecureRandom.h"
#include "tests/support/Failures.h"

#include <gmock/gmock.h>

namespace korvane {
namespace {

using enum JOSEErrorCase;

TEST(Deflate, LargePayloadsPassThroughManySteps) {
    const SecretBytes random = randomBytes(200000);
    Bytes mixed(300000, 'a');
    std::copy(random.begin(), random.end(), mixed.begin());
    for (const Bytes& data : {mixed, Bytes(1, 'x'), Bytes(65536, 0), Bytes(65537, 1)}) {
        const Bytes deflated = DeflateCompressor().compress(data);
        EXPECT_EQ(DeflateCompressor().decompress(deflated), data);
    }
    EXPECT_EQ(
        perform(CompressionOperation::decode, DeflateCompressor().compress(Bytes(3, 'b')), 5, toBytes("a")),
        toBytes("abbb"));
}

TEST(Deflate, DamagedInputIsRefused) {
    const Bytes deflated = DeflateCompressor().compress(Bytes(5000, 'a'));
    for (std::size_t length = 1; length < deflated.size(); ++length)
        EXPECT_RAISES(decompressionFailed, DeflateCompressor().decompress(ByteView(deflated).first(length)));
    EXPECT_RAISES(decompressionFailed, DeflateCompressor().decompress(Bytes(100, 0xFF)));
    EXPECT_RAISES(rawDataMustBeGreaterThanZero, DeflateCompressor().compress({}));
    EXPECT_RAISES(compressedDataMustBeGreaterThanZero, DeflateCompressor().decompress({}));
    EXPECT_EQ(perform(CompressionOperation::encode, {}, 0), std::nullopt);
    EXPECT_EQ(perform(CompressionOperation::decode, {}, 0), std::nullopt);
}

TEST(Deflate, InflationStopsAtSixteenMebibytes) {
    constexpr std::size_t kLimit = std::size_t{16} << 20U;
    EXPECT_EQ(DeflateCompressor().decompress(DeflateCompressor().compress(Bytes(kLimit))).size(), kLimit);
    const Bytes bomb = DeflateCompressor().compress(Bytes(kLimit + 1));
    EXPECT_LT(bomb.size(), 20000U);
    EXPECT_RAISES(decompressionFailed, DeflateCompressor().decompress(bomb));
}

TEST(CompressorChoice, UnknownNamesAreRefused) {
    EXPECT_TRUE(raises(compressionAlgorithmNotSupported, [] {
        static_cast<void>(CompressorFactory().makeCompressor(std::nullopt));
        return 0;
    }));
    EXPECT_EQ(CompressorFactory().makeCompressor(CompressionAlgorithm::NONE).compress({}), Bytes());
    EXPECT_EQ(fromRawValue<CompressionAlgorithm>("DEF"), CompressionAlgorithm::DEFLATE);
    EXPECT_EQ(fromRawValue<CompressionAlgorithm>("def"), std::nullopt);
}

} // namespace
} // namespace korvane
