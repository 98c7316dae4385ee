#include "Crypt/Payload.h"

namespace korvane {

Payload Payload::compressed(std::optional<CompressionAlgorithm> algorithm) const {
    return Payload(CompressorFactory().makeCompressor(algorithm).compress(payload_));
}

} // namespace korvane
