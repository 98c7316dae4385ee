#pragma once

#include "Platform/Bytes.h"
#include "Platform/Security/SecKey.h"
#include "Platform/Security/Secret.h"

#include <concepts>
#include <string>
#include <type_traits>

namespace korvane {

/// The numbers of an EC private key: the curve's name and big-endian numbers at the curve's full length.
struct ECPrivateKeyComponents {
    std::string crv;
    Bytes x;
    Bytes y;
    SecretBytes d;
};

/// The platform's bytes form: 04, x, y, d.
/// @throws JOSEError invalidCurvePointOctetLength when the numbers are not all of one curve's length.
[[nodiscard]] SecretBytes representing(std::type_identity<SecretBytes>,
                                       const ECPrivateKeyComponents& components);

/// @throws JOSEError invalidCurvePointOctetLength, JWKError invalidECCurveType, or JWKError
///         cannotConvertToSecKeyChildClasses for a point off its curve or d out of range.
[[nodiscard]] SecKey representing(std::type_identity<SecKey>, const ECPrivateKeyComponents& components);

/// Reads 04, x, y, d; the length tells the curve.
/// @throws JOSEError compressedCurvePointsUnsupported, invalidCurvePointOctetLength
[[nodiscard]] ECPrivateKeyComponents ecPrivateKeyComponents(ByteView bytes);

/// @throws JWKError notAPrivateKey, CFError, JOSEError
[[nodiscard]] ECPrivateKeyComponents ecPrivateKeyComponents(const SecKey& key);

/// What can be made of the numbers of an EC private key and be taken apart into them: bytes and `SecKey`.
template <class Key>
concept ExpressibleAsECPrivateKeyComponents = requires(const Key& key,
                                                       const ECPrivateKeyComponents& components) {
    { ecPrivateKeyComponents(key) } -> std::same_as<ECPrivateKeyComponents>;
    { representing(std::type_identity<Key>{}, components) } -> std::same_as<Key>;
};

} // namespace korvane
