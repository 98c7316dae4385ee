#pragma once

#include "Platform/EnumTable.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace korvane {

/// RFC 7518 section 6.1.
enum class JWKKeyType { RSA, OCT, EC };

[[nodiscard]] constexpr std::string_view rawValue(JWKKeyType value) {
    switch (value) {
    case JWKKeyType::RSA: return "RSA";
    case JWKKeyType::OCT: return "oct";
    case JWKKeyType::EC: return "EC";
    }
    return kNoRawValue;
}

/// The parameters that any JWK may have (RFC 7517 section 4).
namespace JWKParameter {
inline constexpr std::string_view keyType = "kty";
inline constexpr std::string_view keyUse = "use";
inline constexpr std::string_view keyOperations = "key_ops";
inline constexpr std::string_view algorithm = "alg";
inline constexpr std::string_view keyIdentifier = "kid";
inline constexpr std::string_view X509URL = "x5u";
inline constexpr std::string_view X509CertificateChain = "x5c";
inline constexpr std::string_view X509CertificateSHA1Thumbprint = "x5t";
inline constexpr std::string_view X509CertificateSHA256Thumbprint = "x5t#S256";

inline constexpr std::array<std::string_view, 9> allCases{keyType,
                                                          keyUse,
                                                          keyOperations,
                                                          algorithm,
                                                          keyIdentifier,
                                                          X509URL,
                                                          X509CertificateChain,
                                                          X509CertificateSHA1Thumbprint,
                                                          X509CertificateSHA256Thumbprint};

/// Those whose JSON value is an array.
inline constexpr std::array<std::string_view, 2> nonStringParameters{keyOperations, X509CertificateChain};
} // namespace JWKParameter

/// RFC 7518 section 6.3.
namespace RSAParameter {
inline constexpr std::string_view modulus = "n";
inline constexpr std::string_view exponent = "e";
inline constexpr std::string_view privateExponent = "d";
} // namespace RSAParameter

/// RFC 7518 section 6.4.
namespace SymmetricKeyParameter {
inline constexpr std::string_view key = "k";
} // namespace SymmetricKeyParameter

/// RFC 7518 section 6.2.
namespace ECParameter {
inline constexpr std::string_view curve = "crv";
inline constexpr std::string_view x = "x";
inline constexpr std::string_view y = "y";
inline constexpr std::string_view privateKey = "d";
} // namespace ECParameter

namespace JWKSetParameter {
inline constexpr std::string_view keys = "keys";
} // namespace JWKSetParameter

namespace JWKBaseParameter {
inline constexpr std::string_view kty = "kty";
inline constexpr std::string_view d = "d";
} // namespace JWKBaseParameter

/// RFC 7518 section 6.2.1.1.
enum class ECCurveType { P256, P384, P521 };

[[nodiscard]] constexpr std::string_view rawValue(ECCurveType value) {
    switch (value) {
    case ECCurveType::P256: return "P-256";
    case ECCurveType::P384: return "P-384";
    case ECCurveType::P521: return "P-521";
    }
    return kNoRawValue;
}

/// Bits of the field: 256, 384, 521.
[[nodiscard]] std::size_t keyBitLength(ECCurveType curve);

/// Bytes of one coordinate: 32, 48, 66.
[[nodiscard]] std::size_t coordinateOctetLength(ECCurveType curve);

/// Bytes of r and s together.
[[nodiscard]] std::size_t signatureOctetLength(ECCurveType curve);

[[nodiscard]] std::optional<ECCurveType> fromCoordinateOctetLength(std::size_t length);
[[nodiscard]] std::optional<ECCurveType> fromKeyBitLength(std::size_t length);

/// The first byte of an encoded curve point (SEC 1 section 2.3.3); any other byte is none.
enum class ECCompression : std::uint8_t {
    CompressedYEven = 2,
    CompressedYOdd = 3,
    Uncompressed = 4,
    HybridYEven = 6,
    HybridYOdd = 7
};

/// The digests that a thumbprint can be made with.
enum class JWKThumbprintAlgorithm { SHA256 };

[[nodiscard]] constexpr std::string_view rawValue(JWKThumbprintAlgorithm value) {
    switch (value) {
    case JWKThumbprintAlgorithm::SHA256: return "SHA256";
    }
    return kNoRawValue;
}

/// Bytes of the digest.
[[nodiscard]] std::size_t outputLenght(JWKThumbprintAlgorithm algorithm);

} // namespace korvane
