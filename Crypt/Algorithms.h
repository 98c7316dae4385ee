#pragma once

#include "Crypt/JWKParameters.h"
#include "Platform/Bytes.h"
#include "Platform/RawValue.h"
#include "Platform/Security/CommonCrypto.h"
#include "Platform/Security/SecKey.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

namespace korvane {

/// Digests.
enum class Hash { SHA256, SHA384, SHA512 };

template <>
struct RawValues<Hash> {
    static constexpr std::array<std::string_view, 3> texts{"SHA-256", "SHA-384", "SHA-512"};
};

[[nodiscard]] std::size_t bitLength(Hash hash);
[[nodiscard]] std::size_t digestByteLength(Hash hash);
[[nodiscard]] CCHmacAlgorithm ccHmacAlgorithm(Hash hash);
[[nodiscard]] SecretBytes digest(Hash hash, ByteView data);
[[nodiscard]] Bytes mac(Hash hash, ByteView key, ByteView value);

/// The HMACs of the content encryptions.
enum class HMACAlgorithm { SHA512, SHA256 };

template <>
struct RawValues<HMACAlgorithm> {
    static constexpr std::array<std::string_view, 2> texts{"SHA512", "SHA256"};
};

/// Bytes of the untruncated tag.
[[nodiscard]] std::size_t outputLength(HMACAlgorithm algorithm);
[[nodiscard]] CCHmacAlgorithm ccAlgorithm(HMACAlgorithm algorithm);

/// The rows of "alg" of a JWE (RFC 7518 section 4.1).
enum class KeyManagementAlgorithm {
    RSA1_5,
    RSAOAEP,
    RSAOAEP256,
    A128KW,
    A192KW,
    A256KW,
    direct,
    ECDH_ES,
    ECDH_ES_A128KW,
    ECDH_ES_A192KW,
    ECDH_ES_A256KW,
};

enum class KeyManagementFamily { RSA, AES, direct, EC };

template <>
struct RawValues<KeyManagementAlgorithm> {
    static constexpr std::array<std::string_view, 11> texts{
        "RSA1_5", "RSA-OAEP", "RSA-OAEP-256",   "A128KW",         "A192KW",        "A256KW",
        "dir",    "ECDH-ES",  "ECDH-ES+A128KW", "ECDH-ES+A192KW", "ECDH-ES+A256KW"};
};

[[nodiscard]] std::span<const KeyManagementAlgorithm> allKeyManagementAlgorithms();
[[nodiscard]] KeyManagementFamily family(KeyManagementAlgorithm algorithm);
/// The platform's algorithm of the RSA rows.
[[nodiscard]] std::optional<SecKeyAlgorithm> secKeyAlgorithm(KeyManagementAlgorithm algorithm);
/// Bits of the key-encryption key of the AES rows.
[[nodiscard]] std::optional<std::size_t> keyBitSize(KeyManagementAlgorithm algorithm);
/// The AES row that an EC row wraps with.
[[nodiscard]] std::optional<KeyManagementAlgorithm> keyWrapAlgorithm(KeyManagementAlgorithm algorithm);
[[nodiscard]] bool shouldContainEphemeralPublicKey(KeyManagementAlgorithm algorithm);

/// The longest plaintext of one RSA block in bytes (RFC 8017 sections 7.1.1 and 7.2.1); no value for other
/// rows. It is negative where the block is shorter than the padding.
[[nodiscard]] std::optional<std::ptrdiff_t> maxMessageLength(KeyManagementAlgorithm algorithm,
                                                             const SecKey& publicKey);
[[nodiscard]] std::optional<bool> isPlainTextLengthSatisfied(KeyManagementAlgorithm algorithm, ByteView data,
                                                             const SecKey& publicKey);
[[nodiscard]] std::optional<bool> isCipherTextLenghtSatisfied(KeyManagementAlgorithm algorithm, ByteView data,
                                                              const SecKey& privateKey);
/// Whether a key-encryption key has the length of an AES row; no value for other rows.
[[nodiscard]] std::optional<bool> checkAESKeyLength(KeyManagementAlgorithm algorithm, ByteView key);

/// The rows of "enc" (RFC 7518 section 5.1).
enum class ContentEncryptionAlgorithm { A256CBCHS512, A128CBCHS256 };

template <>
struct RawValues<ContentEncryptionAlgorithm> {
    static constexpr std::array<std::string_view, 2> texts{"A256CBC-HS512", "A128CBC-HS256"};
};

/// Bits of the whole content key.
[[nodiscard]] std::size_t keyBitSize(ContentEncryptionAlgorithm algorithm);
[[nodiscard]] HMACAlgorithm hmacAlgorithm(ContentEncryptionAlgorithm algorithm);
/// Bytes of the truncated tag.
[[nodiscard]] std::size_t tagLength(ContentEncryptionAlgorithm algorithm);
/// Bytes of the initialisation vector.
[[nodiscard]] std::size_t initializationVectorLength(ContentEncryptionAlgorithm algorithm);
/// The block cipher: AES in all rows.
[[nodiscard]] CCAlgorithm ccAlgorithm(ContentEncryptionAlgorithm algorithm);
[[nodiscard]] bool checkKeyLength(ContentEncryptionAlgorithm algorithm, ByteView key);
[[nodiscard]] bool checkAESKeyLength(ContentEncryptionAlgorithm algorithm, ByteView key);

/// The two halves of a content key, as views of it: the MAC key first (RFC 7518 section 5.2.2.1).
struct ContentKeys {
    ByteView hmacKey;
    ByteView encryptionKey;
};

/// @throws JWEError keyLengthNotSatisfied
[[nodiscard]] ContentKeys retrieveKeys(ContentEncryptionAlgorithm algorithm, ByteView inputKey);

/// The front of an HMAC, as a view of it.
[[nodiscard]] ByteView authenticationTag(ContentEncryptionAlgorithm algorithm, ByteView hmac);

/// The rows of "alg" of a JWS (RFC 7518 section 3.1).
enum class SignatureAlgorithm { RS256, RS384, RS512, PS256, PS384, PS512, ES256, ES384, ES512 };

template <>
struct RawValues<SignatureAlgorithm> {
    static constexpr std::array<std::string_view, 9> texts{"RS256", "RS384", "RS512", "PS256", "PS384",
                                                           "PS512", "ES256", "ES384", "ES512"};
};

/// The platform's algorithm of the RS and PS rows.
[[nodiscard]] std::optional<SecKeyAlgorithm> rsaSecKeyAlgorithm(SignatureAlgorithm algorithm);
/// The platform's algorithm of the ES rows.
[[nodiscard]] std::optional<SecKeyAlgorithm> ecSecKeyAlgorithm(SignatureAlgorithm algorithm);
/// The curve of the ES rows.
[[nodiscard]] std::optional<ECCurveType> curveType(SignatureAlgorithm algorithm);

} // namespace korvane
