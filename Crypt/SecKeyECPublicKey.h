#pragma once

#include "Platform/Bytes.h"
#include "Platform/Security/SecKey.h"

#include <concepts>
#include <string>
#include <type_traits>

namespace korvane {

/// The numbers of an EC public key: the curve's name ("P-256") and big-endian coordinates at the
/// curve's full length.
struct ECPublicKeyComponents {
    std::string crv;
    Bytes x;
    Bytes y;
};

/// The uncompressed point: 04, x, y (SEC 1 section 2.3.3).
/// @throws JOSEError invalidCurvePointOctetLength when x and y are not of one curve's length.
[[nodiscard]] Bytes representing(std::type_identity<Bytes>, const ECPublicKeyComponents& components);

/// @throws JOSEError invalidCurvePointOctetLength, JWKError invalidECCurveType, or JWKError
///         cannotConvertToSecKeyChildClasses for a point off its curve.
[[nodiscard]] SecKey representing(std::type_identity<SecKey>, const ECPublicKeyComponents& components);

/// Reads an uncompressed point; the length tells the curve.
/// @throws JOSEError compressedCurvePointsUnsupported, invalidCurvePointOctetLength
[[nodiscard]] ECPublicKeyComponents ecPublicKeyComponents(ByteView point);

/// @throws JWKError notAPublicKey, CFError, JOSEError
[[nodiscard]] ECPublicKeyComponents ecPublicKeyComponents(const SecKey& key);

/// What can be made of the numbers of an EC public key and be taken apart into them: bytes and `SecKey`.
template <class Key>
concept ExpressibleAsECPublicKeyComponents = requires(const Key& key,
                                                      const ECPublicKeyComponents& components) {
    { ecPublicKeyComponents(key) } -> std::same_as<ECPublicKeyComponents>;
    { representing(std::type_identity<Key>{}, components) } -> std::same_as<Key>;
};

} // namespace korvane
