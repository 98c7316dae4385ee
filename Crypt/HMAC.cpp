#include "Crypt/HMAC.h"

namespace korvane {

Bytes HMAC::calculate(ByteView input, ByteView key, HMACAlgorithm algorithm) {
    if (input.empty()) throw HMACError(HMACErrorCase::inputMustBeGreaterThanZero);
    std::array<std::uint8_t, kMaxDigestLength> output{};
    CCHmac(ccAlgorithm(algorithm), key, {input}, output);
    return korvane::toBytes(ByteView(output).first(outputLength(algorithm)));
}

} // namespace korvane
