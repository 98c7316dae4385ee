#pragma once

#include "Crypt/Algorithms.h"
#include "Crypt/AnyKey.h"
#include "Crypt/JWEHeader.h"
#include "Platform/Security/Secret.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>

namespace korvane {

/// Finds the content key for a new JWE and what stands in its second part. Each family fills in the form that
/// it needs. Immutable.
class EncryptionKeyManagementMode {
public:
    struct Result {
        SecretBytes contentEncryptionKey;
        Bytes encryptedKey;
    };

    virtual ~EncryptionKeyManagementMode() = default;

    /// The RSA, AES and direct families. @throws RSAError, AESError, SecureRandomError
    [[nodiscard]] virtual Result determineContentEncryptionKey() const { return {}; }

    /// The EC family: the JSON of an `Encrypter::ECEncryptionContext`. @throws ECError,
    /// JOSEError, JWKError, AESError
    [[nodiscard]] virtual SecretBytes determineContentEncryptionKey(const JWEHeader&) const { return {}; }
};

/// Finds the content key of a received JWE by its second part. Immutable.
class DecryptionKeyManagementMode {
public:
    virtual ~DecryptionKeyManagementMode() = default;

    /// The RSA, AES and direct families. @throws AESError, JOSEError
    [[nodiscard]] virtual SecretBytes determineContentEncryptionKey(ByteView) const { return {}; }

    /// The EC family. @throws ECError, JOSEError, JWKError, AESError
    [[nodiscard]] virtual SecretBytes determineContentEncryptionKey(ByteView, const JWEHeader&) const {
        return {};
    }

    /// The content key of the messages without a second part, where the mode has one for all of them; else
    /// null. It lives as long as the mode.
    [[nodiscard]] virtual const SecretBytes* sharedContentEncryptionKey() const { return nullptr; }
};

/// RFC 7518 sections 4.2 and 4.3.
namespace RSAKeyEncryption {

class EncryptionMode : public EncryptionKeyManagementMode {
public:
    EncryptionMode(KeyManagementAlgorithm keyManagementAlgorithm,
                   ContentEncryptionAlgorithm contentEncryptionAlgorithm, SecKey recipientPublicKey)
        : keyManagementAlgorithm_(keyManagementAlgorithm),
          contentEncryptionAlgorithm_(contentEncryptionAlgorithm),
          recipientPublicKey_(std::move(recipientPublicKey)) {}

    [[nodiscard]] Result determineContentEncryptionKey() const override;
    using EncryptionKeyManagementMode::determineContentEncryptionKey;

private:
    KeyManagementAlgorithm keyManagementAlgorithm_;
    ContentEncryptionAlgorithm contentEncryptionAlgorithm_;
    SecKey recipientPublicKey_;
};

/// A second part that does not open gives a random key, so that the failure shows at the tag only and tells
/// nothing about the padding (RFC 7516 section 11.5).
class DecryptionMode : public DecryptionKeyManagementMode {
public:
    DecryptionMode(KeyManagementAlgorithm keyManagementAlgorithm,
                   ContentEncryptionAlgorithm contentEncryptionAlgorithm, SecKey recipientPrivateKey)
        : keyManagementAlgorithm_(keyManagementAlgorithm),
          contentEncryptionAlgorithm_(contentEncryptionAlgorithm),
          recipientPrivateKey_(std::move(recipientPrivateKey)) {}

    [[nodiscard]] SecretBytes determineContentEncryptionKey(ByteView encryptedKey) const override;
    using DecryptionKeyManagementMode::determineContentEncryptionKey;

private:
    KeyManagementAlgorithm keyManagementAlgorithm_;
    ContentEncryptionAlgorithm contentEncryptionAlgorithm_;
    SecKey recipientPrivateKey_;
};

} // namespace RSAKeyEncryption

/// RFC 7518 section 4.4. Serves both directions.
class AESKeyWrappingMode : public EncryptionKeyManagementMode, public DecryptionKeyManagementMode {
public:
    AESKeyWrappingMode(KeyManagementAlgorithm keyManagementAlgorithm,
                       ContentEncryptionAlgorithm contentEncryptionAlgorithm, SecretBytes sharedSymmetricKey)
        : keyManagementAlgorithm_(keyManagementAlgorithm),
          contentEncryptionAlgorithm_(contentEncryptionAlgorithm),
          sharedSymmetricKey_(std::move(sharedSymmetricKey)) {}

    [[nodiscard]] Result determineContentEncryptionKey() const override;
    [[nodiscard]] SecretBytes determineContentEncryptionKey(ByteView encryptedKey) const override;
    using DecryptionKeyManagementMode::determineContentEncryptionKey;
    using EncryptionKeyManagementMode::determineContentEncryptionKey;

private:
    KeyManagementAlgorithm keyManagementAlgorithm_;
    ContentEncryptionAlgorithm contentEncryptionAlgorithm_;
    SecretBytes sharedSymmetricKey_;
};

/// RFC 7518 section 4.5. Serves both directions.
class DirectEncryptionMode : public EncryptionKeyManagementMode, public DecryptionKeyManagementMode {
public:
    explicit DirectEncryptionMode(SecretBytes sharedSymmetricKey)
        : sharedSymmetricKey_(std::move(sharedSymmetricKey)) {}

    [[nodiscard]] Result determineContentEncryptionKey() const override { return {sharedSymmetricKey_, {}}; }

    /// @throws JOSEError decryptingFailed when the second part is not empty.
    [[nodiscard]] SecretBytes determineContentEncryptionKey(ByteView encryptedKey) const override;
    using DecryptionKeyManagementMode::determineContentEncryptionKey;
    using EncryptionKeyManagementMode::determineContentEncryptionKey;

    [[nodiscard]] const SecretBytes* sharedContentEncryptionKey() const override {
        return &sharedSymmetricKey_;
    }

private:
    SecretBytes sharedSymmetricKey_;
};

/// What a caller may set in place of fresh random values: "ephemeralKeyPair" and "key".
using ECOptions = std::map<std::string, std::variant<ECPrivateKey, SecretBytes>, std::less<>>;

/// RFC 7518 section 4.6, with this layer's own framing (see `keyAgreementCompute`).
namespace ECKeyEncryption {

/// The party values that count are those of the header; the fields only keep what the caller gave.
class EncryptionMode : public EncryptionKeyManagementMode {
public:
    EncryptionMode(KeyManagementAlgorithm keyManagementAlgorithm,
                   ContentEncryptionAlgorithm contentEncryptionAlgorithm, ECPublicKey recipientPublicKey,
                   std::optional<Bytes> agreementPartyUInfo, std::optional<Bytes> agreementPartyVInfo,
                   ECOptions options = {});

    [[nodiscard]] SecretBytes determineContentEncryptionKey(const JWEHeader& header) const override;
    using EncryptionKeyManagementMode::determineContentEncryptionKey;

    [[nodiscard]] const std::optional<Bytes>& agreementPartyUInfo() const noexcept {
        return agreementPartyUInfo_;
    }
    [[nodiscard]] const std::optional<Bytes>& agreementPartyVInfo() const noexcept {
        return agreementPartyVInfo_;
    }

private:
    KeyManagementAlgorithm keyManagementAlgorithm_;
    ContentEncryptionAlgorithm contentEncryptionAlgorithm_;
    ECPublicKey recipientPublicKey_;
    std::optional<Bytes> agreementPartyUInfo_;
    std::optional<Bytes> agreementPartyVInfo_;
    ECOptions options_;
};

/// A key of the wrong length is replaced by a random one; a failure on the way to it is raised.
class DecryptionMode : public DecryptionKeyManagementMode {
public:
    DecryptionMode(KeyManagementAlgorithm keyManagementAlgorithm,
                   ContentEncryptionAlgorithm contentEncryptionAlgorithm, ECPrivateKey recipientPrivateKey)
        : keyManagementAlgorithm_(keyManagementAlgorithm),
          contentEncryptionAlgorithm_(contentEncryptionAlgorithm),
          recipientPrivateKey_(std::move(recipientPrivateKey)) {}

    [[nodiscard]] SecretBytes determineContentEncryptionKey(ByteView encryptedKey,
                                                            const JWEHeader& header) const override;
    using DecryptionKeyManagementMode::determineContentEncryptionKey;

private:
    KeyManagementAlgorithm keyManagementAlgorithm_;
    ContentEncryptionAlgorithm contentEncryptionAlgorithm_;
    ECPrivateKey recipientPrivateKey_;
};

} // namespace ECKeyEncryption

/// @return the mode of the row's family, or null for a key of a type that the family does not work with. RSA
///         takes a `SecKey`, AES and direct bytes, EC an `ECPublicKey`; the party values go to the EC mode
///         only.
[[nodiscard]] std::shared_ptr<const EncryptionKeyManagementMode> makeEncryptionKeyManagementMode(
    KeyManagementAlgorithm algorithm, ContentEncryptionAlgorithm contentEncryptionAlgorithm,
    const AnyKey& encryptionKey, std::optional<Bytes> agreementPartyUInfo = std::nullopt,
    std::optional<Bytes> agreementPartyVInfo = std::nullopt);

/// As above; EC takes an `ECPrivateKey`.
[[nodiscard]] std::shared_ptr<const DecryptionKeyManagementMode>
makeDecryptionKeyManagementMode(KeyManagementAlgorithm algorithm,
                                ContentEncryptionAlgorithm contentEncryptionAlgorithm,
                                const AnyKey& decryptionKey);

} // namespace korvane
