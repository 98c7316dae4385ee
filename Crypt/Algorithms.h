#pragma once

#include "Crypt/JWKParameters.h"
#include "Platform/Bytes.h"
#include "Platform/EnumTable.h"
#include "Platform/Security/CommonCrypto.h"
#include "Platform/Security/SecKey.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace korvane {

/// Digests.
enum class Hash { SHA256, SHA384, SHA512 };

[[nodiscard]] constexpr std::string_view rawValue(Hash value) {
    switch (value) {
    case Hash::SHA256: return "SHA-256";
    case Hash::SHA384: return "SHA-384";
    case Hash::SHA512: return "SHA-512";
    }
    return kNoRawValue;
}

[[nodiscard]] std::size_t bitLength(Hash hash);
[[nodiscard]] std::size_t digestByteLength(Hash hash);
[[nodiscard]] CCHmacAlgorithm ccHmacAlgorithm(Hash hash);
[[nodiscard]] SecretBytes digest(Hash hash, ByteView data);
[[nodiscard]] Bytes mac(Hash hash, ByteView key, ByteView value);

/// The HMACs of the content encryptions.
enum class HMACAlgorithm { SHA512, SHA256 };

[[nodiscard]] constexpr std::string_view rawValue(HMACAlgorithm value) {
    switch (value) {
    case HMACAlgorithm::SHA512: return "SHA512";
    case HMACAlgorithm::SHA256: return "SHA256";
    }
    return kNoRawValue;
}

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

[[nodiscard]] constexpr std::string_view rawValue(KeyManagementAlgorithm value) {
    using enum KeyManagementAlgorithm;
    switch (value) {
    case RSA1_5: return "RSA1_5";
    case RSAOAEP: return "RSA-OAEP";
    case RSAOAEP256: return "RSA-OAEP-256";
    case A128KW: return "A128KW";
    case A192KW: return "A192KW";
    case A256KW: return "A256KW";
    case direct: return "dir";
    case ECDH_ES: return "ECDH-ES";
    case ECDH_ES_A128KW: return "ECDH-ES+A128KW";
    case ECDH_ES_A192KW: return "ECDH-ES+A192KW";
    case ECDH_ES_A256KW: return "ECDH-ES+A256KW";
    }
    return kNoRawValue;
}

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

[[nodiscard]] constexpr std::string_view rawValue(ContentEncryptionAlgorithm value) {
    switch (value) {
    case ContentEncryptionAlgorithm::A256CBCHS512: return "A256CBC-HS512";
    case ContentEncryptionAlgorithm::A128CBCHS256: return "A128CBC-HS256";
    }
    return kNoRawValue;
}

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

[[nodiscard]] constexpr std::string_view rawValue(SignatureAlgorithm value) {
    using enum SignatureAlgorithm;
    switch (value) {
    case RS256: return "RS256";
    case RS384: return "RS384";
    case RS512: return "RS512";
    case PS256: return "PS256";
    case PS384: return "PS384";
    case PS512: return "PS512";
    case ES256: return "ES256";
    case ES384: return "ES384";
    case ES512: return "ES512";
    }
    return kNoRawValue;
}

/// The platform's algorithm of the RS and PS rows.
[[nodiscard]] std::optional<SecKeyAlgorithm> rsaSecKeyAlgorithm(SignatureAlgorithm algorithm);
/// The platform's algorithm of the ES rows.
[[nodiscard]] std::optional<SecKeyAlgorithm> ecSecKeyAlgorithm(SignatureAlgorithm algorithm);
/// The curve of the ES rows.
[[nodiscard]] std::optional<ECCurveType> curveType(SignatureAlgorithm algorithm);

} // namespace korvane
