#pragma once

#include "Crypt/Algorithms.h"
#include "Crypt/ECPrivateKey.h"
#include "Crypt/ECPublicKey.h"
#include "Crypt/JWEHeader.h"
#include "Crypt/KeyManagementModes.h"
#include "Platform/Failure.h"
#include "Platform/Security/SecKey.h"
#include "Platform/Security/Secret.h"

namespace korvane {

enum class ECErrorCase {
    invalidJWK,                // Description
    deriveKeyFail,             // Description
    signingFailed,             // Description
    verifyingFailed,           // Description
    encryptingFailed,          // Description
    decryptingFailed,          // Description
    localAuthenticationFailed, // std::int64_t: the platform's error code
    unknownOrUnsupportedAlgorithm,
    invalidKeySize,
    wrapKeyFail,
    unwrapKeyFail,
    invalidCurveDigestAlgorithm,
    couldNotAllocateMemoryForSignature,
};

[[nodiscard]] constexpr std::string_view rawValue(ECErrorCase value) {
    using enum ECErrorCase;
    switch (value) {
    case invalidJWK: return "invalidJWK";
    case deriveKeyFail: return "deriveKeyFail";
    case signingFailed: return "signingFailed";
    case verifyingFailed: return "verifyingFailed";
    case encryptingFailed: return "encryptingFailed";
    case decryptingFailed: return "decryptingFailed";
    case localAuthenticationFailed: return "localAuthenticationFailed";
    case unknownOrUnsupportedAlgorithm: return "unknownOrUnsupportedAlgorithm";
    case invalidKeySize: return "invalidKeySize";
    case wrapKeyFail: return "wrapKeyFail";
    case unwrapKeyFail: return "unwrapKeyFail";
    case invalidCurveDigestAlgorithm: return "invalidCurveDigestAlgorithm";
    case couldNotAllocateMemoryForSignature: return "couldNotAllocateMemoryForSignature";
    }
    return kNoRawValue;
}

template <>
struct FailureTraits<ECErrorCase> {
    static constexpr std::string_view domain = "ECError";
    using Value = FailureValue;
};

using ECError = TypedFailure<ECErrorCase>;

/// Plain ECDH: the X coordinate of the shared point, big-endian at the curve's length (RFC 7518 section 4.6).
/// @param bitLen  keeps only that many bits from the front; 0 keeps all.
/// @throws ECError deriveKeyFail; what `converted` of the keys throws.
[[nodiscard]] SecretBytes ecdhDeriveBits(const ECPrivateKey& privateKey, const ECPublicKey& publicKey,
                                         std::size_t bitLen = 0);

/// Derives the agreed key of the ECDH-ES rows: the content key of `ECDH_ES`, the wrapping key of the others.
///
/// The layout departs from RFC 7518 section 4.6.2: the algorithm identifier of `ECDH_ES` is empty, and each
/// of the three values carries its length twice. Peers of this layer agree through it, and with nobody else.
/// @throws ECError deriveKeyFail; what `ecdhDeriveBits` throws.
[[nodiscard]] SecretBytes keyAgreementCompute(KeyManagementAlgorithm algorithm,
                                              ContentEncryptionAlgorithm encryption,
                                              const ECPrivateKey& privateKey, const ECPublicKey& publicKey,
                                              ByteView apu, ByteView apv);

/// EC over JWKs and platform keys.
struct EC {
    /// The sender's side of the ECDH-ES rows, with a fresh key pair unless `options` hold one. The header
    /// that results has an "epk" of the pair with all its `parameters`, the private number included.
    /// @return the JSON of an `Encrypter::ECEncryptionContext`.
    /// @throws ECError encryptingFailed where header or pair have a text that is not UTF-8; what
    /// `keyAgreementCompute`, `AES::wrap` and key generation throw.
    [[nodiscard]] static SecretBytes encryptionContextFor(const ECPublicKey& recipientPublicKey,
                                                          KeyManagementAlgorithm algorithm,
                                                          ContentEncryptionAlgorithm encryption,
                                                          JWEHeader header, const ECOptions& options = {});

    /// The receiver's side. Without key wrap the second part is not looked at.
    /// @param header  may be null, which fails.
    /// @throws ECError invalidJWK without a header or a readable "epk"; what `keyAgreementCompute` and
    ///         `AES::unwrap` throw.
    [[nodiscard]] static SecretBytes decrypt(ByteView encryptedKey, const ECPrivateKey& privateKey,
                                             KeyManagementAlgorithm algorithm,
                                             ContentEncryptionAlgorithm encryption, const JWEHeader* header);

    /// @return raw r and s, each at the curve's length (RFC 7518 section 3.4).
    /// @throws ECError unknownOrUnsupportedAlgorithm, invalidCurveDigestAlgorithm, invalidKeySize for a key
    ///         of another curve, localAuthenticationFailed, signingFailed
    [[nodiscard]] static Bytes sign(ByteView signingInput, const SecKey& privateKey,
                                    SignatureAlgorithm algorithm);

    /// @param signature  raw r and s of the algorithm's curve.
    /// @throws ECError unknownOrUnsupportedAlgorithm, invalidCurveDigestAlgorithm; verifyingFailed for
    /// another length; invalidKeySize for a key of another curve.
    [[nodiscard]] static bool verify(ByteView verifyingInput, ByteView signature, const SecKey& publicKey,
                                     SignatureAlgorithm algorithm);
};

/// Between raw numbers of fixed length and ASN.1 INTEGER values.
struct Asn1IntegerConversion {
    /// Without leading zeros, but with one where the top bit is set; zero is one zero byte.
    /// An empty input is a programmer's fault and ends the process.
    [[nodiscard]] static Bytes fromRaw(ByteView data);

    /// At exactly `expectedLength` bytes. A longer number, or a sign byte that is not 0, is a programmer's
    /// fault and ends the process.
    [[nodiscard]] static Bytes toRaw(ByteView data, std::size_t expectedLength);
};

} // namespace korvane
