#pragma once

#include "Crypt/AnyKey.h"
#include "Crypt/JWEHeader.h"
#include "Crypt/KeyManagementModes.h"
#include "Crypt/Payload.h"

#include <memory>
#include <optional>

namespace korvane {

/// Seals payloads under one key with one pair of algorithms. A value, immutable.
class Encrypter {
public:
    /// The four parts behind the header.
    struct EncryptionContext {
        Bytes encryptedKey;
        Bytes ciphertext;
        Bytes authenticationTag;
        Bytes initializationVector;
    };

    /// The three results of the EC modes, which travel as one JSON text with bytes in ordinary Base64.
    struct ECEncryptionContext {
        Bytes headerData;
        Bytes encryptedKey;
        SecretBytes contentKey;

        [[nodiscard]] SecretBytes jsonData() const;

        /// @throws DecodingError
        [[nodiscard]] static ECEncryptionContext make(ByteView json);
    };

    /// @return no value when the key's type does not suit the algorithm (see
    /// `makeEncryptionKeyManagementMode`).
    [[nodiscard]] static std::optional<Encrypter>
    make(KeyManagementAlgorithm keyManagementAlgorithm, ContentEncryptionAlgorithm contentEncryptionAlgorithm,
         const AnyKey& encryptionKey, std::optional<Bytes> agreementPartyUInfo = std::nullopt,
         std::optional<Bytes> agreementPartyVInfo = std::nullopt);

    /// The same, with the key between the algorithms and no party information.
    [[nodiscard]] static std::optional<Encrypter> make(KeyManagementAlgorithm keyEncryptionAlgorithm,
                                                       const AnyKey& encryptionKey,
                                                       ContentEncryptionAlgorithm contentEncyptionAlgorithm) {
        return make(keyEncryptionAlgorithm, contentEncyptionAlgorithm, encryptionKey);
    }

    /// Seals a payload.
    /// @param header  must name the algorithms; the ECDH-ES rows replace it by one with the sender's "epk".
    /// @throws JWEError keyManagementAlgorithmMismatch, contentEncryptionAlgorithmMismatch; what mode and
    ///         content encryption throw.
    [[nodiscard]] EncryptionContext encrypt(JWEHeader& header, const Payload& payload) const;

private:
    Encrypter(std::shared_ptr<const EncryptionKeyManagementMode> mode,
              KeyManagementAlgorithm keyManagementAlgorithm,
              ContentEncryptionAlgorithm contentEncryptionAlgorithm)
        : keyManagementMode_(std::move(mode)), keyManagementAlgorithm_(keyManagementAlgorithm),
          contentEncryptionAlgorithm_(contentEncryptionAlgorithm) {}

    /// The content key; `encryptedKey` and, for the EC rows, `header` are set beside it.
    [[nodiscard]] SecretBytes determineContentKey(JWEHeader& header, Bytes& encryptedKey) const;

    std::shared_ptr<const EncryptionKeyManagementMode> keyManagementMode_;
    KeyManagementAlgorithm keyManagementAlgorithm_;
    ContentEncryptionAlgorithm contentEncryptionAlgorithm_;
};

} // namespace korvane
