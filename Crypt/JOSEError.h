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

[[nodiscard]] constexpr std::string_view rawValue(JOSEErrorCase value) {
    using enum JOSEErrorCase;
    switch (value) {
    case signingFailed: return "signingFailed";
    case verifyingFailed: return "verifyingFailed";
    case encryptingFailed: return "encryptingFailed";
    case decryptingFailed: return "decryptingFailed";
    case wrongDataEncoding: return "wrongDataEncoding";
    case invalidCompactSerializationComponentCount: return "invalidCompactSerializationComponentCount";
    case componentNotValidBase64URL: return "componentNotValidBase64URL";
    case componentCouldNotBeInitializedFromData: return "componentCouldNotBeInitializedFromData";
    case localAuthenticationFailed: return "localAuthenticationFailed";
    case signatureInvalid: return "signatureInvalid";
    case couldNotConstructJWK: return "couldNotConstructJWK";
    case modulusNotBase64URLUIntEncoded: return "modulusNotBase64URLUIntEncoded";
    case exponentNotBase64URLUIntEncoded: return "exponentNotBase64URLUIntEncoded";
    case privateExponentNotBase64URLUIntEncoded: return "privateExponentNotBase64URLUIntEncoded";
    case symmetricKeyNotBase64URLEncoded: return "symmetricKeyNotBase64URLEncoded";
    case xNotBase64URLUIntEncoded: return "xNotBase64URLUIntEncoded";
    case yNotBase64URLUIntEncoded: return "yNotBase64URLUIntEncoded";
    case privateKeyNotBase64URLUIntEncoded: return "privateKeyNotBase64URLUIntEncoded";
    case invalidCurveType: return "invalidCurveType";
    case compressedCurvePointsUnsupported: return "compressedCurvePointsUnsupported";
    case invalidCurvePointOctetLength: return "invalidCurvePointOctetLength";
    case compressionFailed: return "compressionFailed";
    case decompressionFailed: return "decompressionFailed";
    case compressionAlgorithmNotSupported: return "compressionAlgorithmNotSupported";
    case rawDataMustBeGreaterThanZero: return "rawDataMustBeGreaterThanZero";
    case compressedDataMustBeGreaterThanZero: return "compressedDataMustBeGreaterThanZero";
    case thumbprintSerialization: return "thumbprintSerialization";
    }
    return kNoRawValue;
}

template <>
struct FailureTraits<JOSEErrorCase> {
    static constexpr std::string_view domain = "JOSEError";
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

[[nodiscard]] constexpr std::string_view rawValue(JWKErrorCase value) {
    using enum JWKErrorCase;
    switch (value) {
    case cannotExtractRSAPublicKeyComponents: return "cannotExtractRSAPublicKeyComponents";
    case cannotExtractRSAPrivateKeyComponents: return "cannotExtractRSAPrivateKeyComponents";
    case notAPublicKey: return "notAPublicKey";
    case notAPrivateKey: return "notAPrivateKey";
    case cannotConvertToSecKeyChildClasses: return "cannotConvertToSecKeyChildClasses";
    case modulusNotBase64URLUIntEncoded: return "modulusNotBase64URLUIntEncoded";
    case exponentNotBase64URLUIntEncoded: return "exponentNotBase64URLUIntEncoded";
    case privateExponentNotBase64URLUIntEncoded: return "privateExponentNotBase64URLUIntEncoded";
    case invalidECCurveType: return "invalidECCurveType";
    }
    return kNoRawValue;
}

template <>
struct FailureTraits<JWKErrorCase> {
    static constexpr std::string_view domain = "JWKError";
    using Value = FailureValue;
};

using JWKError = TypedFailure<JWKErrorCase>;

enum class JWEErrorCase {
    keyManagementAlgorithmMismatch,
    contentEncryptionAlgorithmMismatch,
    keyLengthNotSatisfied,
    hmacNotAuthenticated,
};

[[nodiscard]] constexpr std::string_view rawValue(JWEErrorCase value) {
    using enum JWEErrorCase;
    switch (value) {
    case keyManagementAlgorithmMismatch: return "keyManagementAlgorithmMismatch";
    case contentEncryptionAlgorithmMismatch: return "contentEncryptionAlgorithmMismatch";
    case keyLengthNotSatisfied: return "keyLengthNotSatisfied";
    case hmacNotAuthenticated: return "hmacNotAuthenticated";
    }
    return kNoRawValue;
}

template <>
struct FailureTraits<JWEErrorCase> {
    static constexpr std::string_view domain = "JWEError";
    using Value = FailureValue;
};

using JWEError = TypedFailure<JWEErrorCase>;

enum class JWSErrorCase { algorithmMismatch, cannotComputeSigningInput };

[[nodiscard]] constexpr std::string_view rawValue(JWSErrorCase value) {
    switch (value) {
    case JWSErrorCase::algorithmMismatch: return "algorithmMismatch";
    case JWSErrorCase::cannotComputeSigningInput: return "cannotComputeSigningInput";
    }
    return kNoRawValue;
}

template <>
struct FailureTraits<JWSErrorCase> {
    static constexpr std::string_view domain = "JWSError";
    using Value = FailureValue;
};

using JWSError = TypedFailure<JWSErrorCase>;

} // namespace korvane
