#pragma once

#include "Platform/Bytes.h"
#include "Platform/Security/SecKey.h"

#include <concepts>
#include <type_traits>

namespace korvane {

/// The numbers of an RSA public key, big-endian and unsigned.
struct RSAPublicKeyComponents {
    Bytes modulus;
    Bytes exponent;
};

/// The DER form of RSAPublicKey (RFC 8017 appendix A.1.1). A modulus that does not start with a zero byte
/// gets one, whatever its top bit.
[[nodiscard]] Bytes representing(std::type_identity<Bytes>, const RSAPublicKeyComponents& components);

/// @throws JWKError cannotConvertToSecKeyChildClasses
[[nodiscard]] SecKey representing(std::type_identity<SecKey>, const RSAPublicKeyComponents& components);

/// Reads the DER form of RSAPublicKey; a zero byte in front of the modulus is dropped.
/// @throws ASN1DERParsingError
[[nodiscard]] RSAPublicKeyComponents rsaPublicKeyComponents(ByteView der);

/// @throws JWKError notAPublicKey, CFError, ASN1DERParsingError
[[nodiscard]] RSAPublicKeyComponents rsaPublicKeyComponents(const SecKey& key);

/// What can be made of the numbers of an RSA public key and be taken apart into them: bytes and `SecKey`.
template <class Key>
concept ExpressibleAsRSAPublicKeyComponents = requires(const Key& key,
                                                       const RSAPublicKeyComponents& components) {
    { rsaPublicKeyComponents(key) } -> std::same_as<RSAPublicKeyComponents>;
    { representing(std::type_identity<Key>{}, components) } -> std::same_as<Key>;
};

} // namespace korvane
