#pragma once

#include "Platform/Bytes.h"
#include "Platform/EnumTable.h"
#include "Platform/Security/Compression.h"

#include <memory>
#include <optional>
#include <string_view>

namespace korvane {

/// The values of "zip" (RFC 7516 section 4.1.3), and none at all.
enum class CompressionAlgorithm { DEFLATE, NONE };

[[nodiscard]] constexpr std::string_view rawValue(CompressionAlgorithm value) {
    switch (value) {
    case CompressionAlgorithm::DEFLATE: return "DEF";
    case CompressionAlgorithm::NONE: return "NONE";
    }
    return kNoRawValue;
}

/// Compresses and restores whole payloads.
class CompressorProtocol {
public:
    virtual ~CompressorProtocol() = default;

    /// @throws JOSEError rawDataMustBeGreaterThanZero, compressionFailed
    [[nodiscard]] virtual Bytes compress(ByteView data) const = 0;

    /// @throws JOSEError compressedDataMustBeGreaterThanZero, decompressionFailed
    [[nodiscard]] virtual Bytes decompress(ByteView data) const = 0;
};

/// Returns its input in both directions.
class NoneCompressor : public CompressorProtocol {
public:
    [[nodiscard]] Bytes compress(ByteView data) const override { return toBytes(data); }
    [[nodiscard]] Bytes decompress(ByteView data) const override { return toBytes(data); }
};

/// Raw DEFLATE (RFC 1951).
class DeflateCompressor : public CompressorProtocol {
public:
    [[nodiscard]] Bytes compress(ByteView data) const override;
    [[nodiscard]] Bytes decompress(ByteView data) const override;
};

class CompressorFactory {
public:
    /// The compressor of a "zip" value; it lives as long as the process.
    /// @throws JOSEError compressionAlgorithmNotSupported for no value.
    [[nodiscard]] const CompressorProtocol&
    makeCompressor(std::optional<CompressionAlgorithm> algorithm) const;
};

/// One pass of the platform's DEFLATE stream, in steps of the source's length but of 64 KiB at most.
/// @param preload  what the result starts with.
/// @return no value for an empty source to encode, for damaged or unfinished input, and for a result of more
///         than 16 MiB: a short message must not fill the memory.
[[nodiscard]] std::optional<Bytes> perform(CompressionOperation operation, ByteView source,
                                           std::size_t sourceSize, ByteView preload = {});

} // namespace korvane
