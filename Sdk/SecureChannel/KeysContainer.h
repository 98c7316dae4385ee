#pragma once

#include "Crypt/Algorithms.h"
#include "Crypt/ECPrivateKey.h"
#include "Platform/Bytes.h"
#include "Platform/Security/SecCertificate.h"
#include "Platform/Security/SecTrust.h"
#include "Platform/Security/Secret.h"
#include "Sdk/SecureChannel/DevInfoCert.h"
#include "Sdk/SecureChannel/TransactionCerts.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvane {

/// The keys and certificates of one transaction, and all that is done with them: sealing the device data for
/// the directory server, verifying what the ACS signed, agreeing on a key with the ACS, and sealing and
/// opening the messages of the challenge. It has no lock: one thread at a time.
///
/// Where an `SdkError` is raised, its text has been logged before. Failures of the JOSE layer and of JSON
/// decoding pass through as they are.
class KeysContainer {
    friend struct KeysContainerPeer;

public:
    /// The signature algorithms that the ACS's content may have.
    static constexpr std::array<SignatureAlgorithm, 3> allowedAcsSignedContentAlgorithms{
        SignatureAlgorithm::PS256, SignatureAlgorithm::RS256, SignatureAlgorithm::ES256};

    /// No certificate is read yet.
    explicit KeysContainer(DevInfoCert devInfoCert);
    explicit KeysContainer(TransactionCerts providedCerts);

    KeysContainer(const KeysContainer&) = delete;
    KeysContainer& operator=(const KeysContainer&) = delete;

    /// Seals the device document for the directory server, as a compact JWE with A128CBC-HS256. For an RSA
    /// certificate the content key is random and wrapped with RSA-OAEP-256. For an EC certificate it is
    /// derived from a key pair of this one message, whose JWK is the header's "epk" with all its members; the
    /// directory server's identifier goes into the derivation.
    /// @throws SdkError without a certificate, key or identifier; JOSEError, ECError, JWKError.
    [[nodiscard]] std::string getEncryptedDeviceInfo(ByteView data);

    /// Reads a DER certificate of the configured bundle.
    /// @param name  resource name and extension, parted by ".".
    /// @throws SdkError
    [[nodiscard]] SecCertificate loadCert(const std::string& name) const;

    /// @param strings  ordinary Base64 of DER.
    /// @throws SdkError for the first text that is no certificate.
    [[nodiscard]] static std::vector<SecCertificate>
    convertStringsToCerts(const std::vector<std::string>& strings);

    /// Verifies the ACS's signed content, a compact JWS, by its certificate chain and the directory server's
    /// root, and derives the session's key from the ACS's key in it. The key pair of
    /// `getEphemeralPublicKey` is used up then.
    /// @param sdkReferenceNumber  goes into the derivation.
    /// @return the URL of the ACS.
    /// @throws SdkError; JOSEError for a bad signature or form; DecodingError; ECError, JWKError.
    std::string parseAcsSignedContent(std::string_view content, const std::string& sdkReferenceNumber);

    /// The public key that the ACS is to agree with, as JWK text: the same one until the session's
    /// key has been derived.
    /// @throws ECKeyPairError
    [[nodiscard]] std::optional<std::string> getEphemeralPublicKey();

    /// Seals a message under the session's key.
    /// @param acsTransactionId  becomes the header's "kid".
    /// @return the compact JWE.
    /// @throws SdkError without a session's key; JOSEError.
    [[nodiscard]] Bytes encryptCReq(Bytes cReq, const std::string& acsTransactionId) const;

    /// Opens a message under the session's key. The header's "kid" is not looked at.
    /// @throws SdkError without a session's key; JOSEError.
    [[nodiscard]] Bytes decryptCRes(ByteView cRes) const;

private:
    [[nodiscard]] SecCertificate deviceInfoCertificate() const;
    [[nodiscard]] std::string encryptDevInfoWithRsa(ByteView deviceInfo) const;
    [[nodiscard]] std::string encryptDevInfoWithEc(ByteView deviceInfo) const;
    [[nodiscard]] const std::string* directoryServerID() const;

    [[nodiscard]] std::optional<SecKey> validateCertChain(const std::vector<std::string>& chain);
    [[nodiscard]] SecCertificate rootCertificate() const;

    std::string decryptAcsSignedContent(ByteView content, const std::string& sdkReferenceNumber);
    const ECPrivateKey& generateEphemeralKeyPair();

    const std::optional<DevInfoCert> devInfoCert_;
    const std::optional<TransactionCerts> providedCerts_;
    std::optional<ECPrivateKey> ephemeralKeyPair_;
    std::optional<SecretBytes> cek_;
    std::optional<SecKey> dePublicKey_;
    std::optional<SecCertificate> dsRootCA_;
};

} // namespace korvane
