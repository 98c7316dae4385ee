#pragma once

#include "Crypt/Algorithms.h"
#include "Platform/Bytes.h"
#include "Platform/Security/Secret.h"

#include <bit>
#include <concepts>
#include <cstring>

namespace korvane {

/// The Concat KDF (NIST SP 800-56A section 5.8.1, RFC 7518 section 4.6.2). The lengths of
/// `algorithmID`, `partyUInfo` and `partyVInfo` are put in front of them here; `suppPubInfo` and
/// `suppPrivInfo` go in as they are.
/// @param keyDataLen  the bits to derive; the bits beyond a whole byte are the top ones of the last byte.
/// @return (keyDataLen + 7) / 8 bytes. A length or counter beyond 32 bits is a programmer's fault
/// and ends the process.
[[nodiscard]] SecretBytes concatKDF(Hash hash, ByteView z, std::size_t keyDataLen, ByteView algorithmID,
                                    ByteView partyUInfo, ByteView partyVInfo, ByteView suppPubInfo,
                                    ByteView suppPrivInfo = {});

/// The length of `bytes` as a 32-bit big-endian number, and `bytes`.
[[nodiscard]] Bytes prefixedBigEndenLen(ByteView bytes);

/// The bytes of a number in the order in which memory has them.
template <std::integral Integer>
[[nodiscard]] Bytes intToData(Integer value) {
    Bytes bytes(sizeof(Integer));
    std::memcpy(bytes.data(), &value, sizeof(Integer));
    return bytes;
}

/// The four bytes of a number, big-endian.
[[nodiscard]] Bytes bigEndianData(std::uint32_t value);

/// The first `bitLen` bits; the rest of the last byte is zero. All of them where there are no more.
[[nodiscard]] SecretBytes truncateBitLen(SecretBytes bytes, std::size_t bitLen);

} // namespace korvane
