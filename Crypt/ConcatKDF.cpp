#include "Crypt/ConcatKDF.h"

#include "Platform/Failure.h"

#include <algorithm>
#include <limits>

namespace korvane {

namespace {

std::uint32_t require32Bits(std::size_t value) {
    if (value > std::numeric_limits<std::uint32_t>::max()) fatalError("A length does not fit 32 bits.");
    return static_cast<std::uint32_t>(value);
}

template <class Container>
void append(Container& target, ByteView bytes) {
    target.insert(target.end(), bytes.begin(), bytes.end());
}

template <class Container>
void appendPrefixed(Container& target, ByteView bytes) {
    append(target, bigEndianData(require32Bits(bytes.size())));
    append(target, bytes);
}

} // namespace

SecretBytes concatKDF(Hash hash, ByteView z, std::size_t keyDataLen, ByteView algorithmID,
                      ByteView partyUInfo, ByteView partyVInfo, ByteView suppPubInfo, ByteView suppPrivInfo) {
    constexpr std::size_t kCounterLength = 4;
    SecretBytes key;
    if (keyDataLen == 0) return key;
    const std::size_t modLen = keyDataLen % bitLength(hash);
    const std::uint32_t reps = require32Bits(keyDataLen / bitLength(hash) + (modLen > 0 ? 1 : 0));

    SecretBytes round;
    round.reserve(4 * kCounterLength + z.size() + algorithmID.size() + partyUInfo.size() + partyVInfo.size() +
                  suppPubInfo.size() + suppPrivInfo.size());
    round.resize(kCounterLength);
    append(round, z);
    appendPrefixed(round, algorithmID);
    appendPrefixed(round, partyUInfo);
    appendPrefixed(round, partyVInfo);
    append(round, suppPubInfo);
    append(round, suppPrivInfo);

    key.reserve(reps * digestByteLength(hash));
    for (std::size_t counter = 1; counter <= reps; ++counter) {
        const Bytes octets = bigEndianData(static_cast<std::uint32_t>(counter));
        std::copy(octets.begin(), octets.end(), round.begin());
        SecretBytes part = digest(hash, round);
        if (counter == reps && modLen > 0) part = truncateBitLen(std::move(part), modLen);
        append(key, part);
    }
    return key;
}

Bytes prefixedBigEndenLen(ByteView bytes) {
    Bytes result;
    appendPrefixed(result, bytes);
    return result;
}

Bytes bigEndianData(std::uint32_t value) {
    Bytes bytes = intToData(value);
    if constexpr (std::endian::native == std::endian::little) std::reverse(bytes.begin(), bytes.end());
    return bytes;
}

SecretBytes truncateBitLen(SecretBytes bytes, std::size_t bitLen) {
    if (bitLen >= bytes.size() * 8) return bytes;
    const std::size_t oddBits = bitLen % 8;
    bytes.resize(bitLen / 8 + (oddBits > 0 ? 1 : 0));
    if (oddBits > 0) bytes.back() = static_cast<std::uint8_t>(bytes.back() & ~(0xFFU >> oddBits));
    return bytes;
}

} // namespace korvane
