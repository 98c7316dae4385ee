#pragma once

#include "Platform/Failure.h"

namespace korvane {

/// The failures of the JOSE layer. What a case carries stands behind it.
enum class JOSEErrorCase {
    signingFailed,                             // Description
    verifyingFailed,                           // Description
    encryptingFailed,                          // Description
    decryptingFailed,                          // Description
    wrongDataEncoding,                         // Bytes: the data
    invalidCompactSerializationComponentCount, // std::int64_t: the count found
    componentNotValidBase64URL,                // std::string: the component
    componentCouldNotBeInitializedFromData,    // Bytes: the data
    localAuthenticationFailed,                 // std::int64_t: the platform's error code
    signatureInvalid,
    couldNotConstructJWK,
    modulusNotBase64URLUIntEncoded,
    exponentNotBase64URLUIntEncoded,
    privateExponentNotBase64URLUIntEncoded,
    symmetricKeyNotBase64URLEncoded,
    xNotBase64URLUIntEncoded,
    yNotBase64URLUIntEncoded,
    privateKeyNotBase64URLUIntEncoded,
    invalidCurveType,
    compressedCurvePointsUnsupported,
    invalidCurvePointOctetLength,
    compressionFailed,
    decompressionFailed,
    compressionAlgorithmNotSupported,
    rawDataMustBeGreaterThanZero,
    compressedDataMustBeGreaterThanZero,
    thumbprintSerialization,
};

template <>
struct FailureTraits<JOSEErrorCase> {
    static constexpr std::string_view domain = "JOSEError";
    static constexpr std::array<std::string_view, 27> cases{
        "signingFailed",
        "verifyingFailed",
        "encryptingFailed",
        "decryptingFailed",
        "wrongDataEncoding",
        "invalidCompactSerializationComponentCount",
        "componentNotValidBase64URL",
        "componentCouldNotBeInitializedFromData",
        "localAuthenticationFailed",
        "signatureInvalid",
        "couldNotConstructJWK",
        "modulusNotBase64URLUIntEncoded",
        "exponentNotBase64URLUIntEncoded",
        "privateExponentNotBase64URLUIntEncoded",
        "symmetricKeyNotBase64URLEncoded",
        "xNotBase64URLUIntEncoded",
        "yNotBase64URLUIntEncoded",
        "privateKeyNotBase64URLUIntEncoded",
        "invalidCurveType",
        "compressedCurvePointsUnsupported",
        "invalidCurvePointOctetLength",
        "compressionFailed",
        "decompressionFailed",
        "compressionAlgorithmNotSupported",
        "rawDataMustBeGreaterThanZero",
        "compressedDataMustBeGreaterThanZero",
        "thumbprintSerialization",
    };
    using Value = FailureValue;
};

using JOSEError = TypedFailure<JOSEErrorCase>;

/// A failed step of a key operation on both sides of the JOSE layer's own keys.
enum class JWKErrorCase {
    cannotExtractRSAPublicKeyComponents,
    cannotExtractRSAPrivateKeyComponents,
    notAPublicKey,
    notAPrivateKey,
    cannotConvertToSecKeyChildClasses,
    modulusNotBase64URLUIntEncoded,
    exponentNotBase64URLUIntEncoded,
    privateExponentNotBase64URLUIntEncoded,
    invalidECCurveType,
};

template <>
struct FailureTraits<JWKErrorCase> {
    static constexpr std::string_view domain = "JWKError";
    static constexpr std::array<std::string_view, 9> cases{
        "cannotExtractRSAPublicKeyComponents",
        "cannotExtractRSAPrivateKeyComponents",
        "notAPublicKey",
        "notAPrivateKey",
        "cannotConvertToSecKeyChildClasses",
        "modulusNotBase64URLUIntEncoded",
        "exponentNotBase64URLUIntEncoded",
        "privateExponentNotBase64URLUIntEncoded",
        "invalidECCurveType",
    };
    using Value = FailureValue;
};

using JWKError = TypedFailure<JWKErrorCase>;

enum class JWEErrorCase {
    keyManagementAlgorithmMismatch,
    contentEncryptionAlgorithmMismatch,
    keyLengthNotSatisfied,
    hmacNotAuthenticated,
};

template <>
struct FailureTraits<JWEErrorCase> {
    static constexpr std::string_view domain = "JWEError";
    static constexpr std::array<std::string_view, 4> cases{"keyManagementAlgorithmMismatch",
                                                           "contentEncryptionAlgorithmMismatch",
                                                           "keyLengthNotSatisfied", "hmacNotAuthenticated"};
    using Value = FailureValue;
};

using JWEError = TypedFailure<JWEErrorCase>;

enum class JWSErrorCase { algorithmMismatch, cannotComputeSigningInput };

template <>
struct FailureTraits<JWSErrorCase> {
    static constexpr std::string_view domain = "JWSError";
    static constexpr std::array<std::string_view, 2> cases{"algorithmMismatch", "cannotComputeSigningInput"};
    using Value = FailureValue;
};

using JWSError = TypedFailure<JWSErrorCase>;

} // namespace korvane
