#pragma once

#include "Crypt/Algorithms.h"
#include "Crypt/ECPrivateKey.h"
#include "Platform/Bytes.h"
#include "Platform/Security/SecKey.h"

namespace korvane::fuzzing {

/// The fixed keys that the seeds are made with. They protect nothing. The first RSA key has 1024 bits, for
/// speed; that of the certificate has 2048, since a chain is refused with fewer.
struct Keys {
    SecKey rsaPrivate;
    SecKey rsaPublic;
    SecKey rsaLeafPrivate;
    /// Bob's key pair of RFC 7518 appendix C, as a JWK and as platform keys.
    ECPrivateKey ec;
    ECPublicKey ecPublic;
    SecKey ecPrivateSecKey;
    SecKey ecPublicSecKey;

    /// The first bytes of one sequence of 64, for the rows that work with a shared key.
    [[nodiscard]] static ByteView shared(std::size_t length);
};

[[nodiscard]] const Keys& keys();

} // namespace korvane::fuzzing
