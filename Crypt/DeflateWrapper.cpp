#include "Crypt/DeflateWrapper.h"

#include "Crypt/JOSEError.h"
#include "Platform/Security/Secret.h"

#include <algorithm>

namespace korvane {

namespace {

constexpr std::size_t kLargestStep = 65536;
constexpr std::size_t kLargestInflated = std::size_t{16} << 20U;

} // namespace

Bytes DeflateCompressor::compress(ByteView data) const {
    if (data.empty()) throw JOSEError(JOSEErrorCase::rawDataMustBeGreaterThanZero);
    std::optional<Bytes> result = perform(CompressionOperation::encode, data, data.size());
    if (!result) throw JOSEError(JOSEErrorCase::compressionFailed);
    return std::move(*result);
}

Bytes DeflateCompressor::decompress(ByteView data) const {
    if (data.empty()) throw JOSEError(JOSEErrorCase::compressedDataMustBeGreaterThanZero);
    std::optional<Bytes> result = perform(CompressionOperation::decode, data, data.size());
    if (!result) throw JOSEError(JOSEErrorCase::decompressionFailed);
    return std::move(*result);
}

const CompressorProtocol&
CompressorFactory::makeCompressor(std::optional<CompressionAlgorithm> algorithm) const {
    static const DeflateCompressor deflate;
    static const NoneCompressor none;
    if (!algorithm) throw JOSEError(JOSEErrorCase::compressionAlgorithmNotSupported);
    switch (*algorithm) {
    case CompressionAlgorithm::DEFLATE: return deflate;
    case CompressionAlgorithm::NONE: return none;
    }
    throw JOSEError(JOSEErrorCase::compressionAlgorithmNotSupported);
}

std::optional<Bytes> perform(CompressionOperation operation, ByteView source, std::size_t sourceSize,
                             ByteView preload) {
    if (operation == CompressionOperation::encode && sourceSize == 0) return std::nullopt;
    auto stream = CompressionStream::make(operation, source);
    if (!stream) return std::nullopt;
    // Either side of the stream may be a payload: what grows and what is passed on are cleansed.
    SecretBytes result = toSecretBytes(preload);
    SecretBytes step(std::clamp(sourceSize, std::size_t{1}, kLargestStep));
    for (;;) {
        std::size_t produced = 0;
        const CompressionStream::Status status = stream->process(step, produced);
        if (status == CompressionStream::Status::error) return std::nullopt;
        if (operation == CompressionOperation::decode && result.size() + produced > kLargestInflated)
            return std::nullopt;
        result.insert(result.end(), step.begin(), step.begin() + static_cast<std::ptrdiff_t>(produced));
        if (status == CompressionStream::Status::end) return toBytes(result);
    }
}

} // namespace korvane
