#pragma once

#include "Crypt/Algorithms.h"
#include "Crypt/JOSEHeader.h"
#include "Crypt/Payload.h"
#include "Platform/Security/Secret.h"

#include <array>
#include <string>

namespace korvane {

/// What sealing gives. The vector has 16 bytes, the tag 16 or 32.
struct ContentEncryptionContext {
    Bytes ciphertext;
    Bytes authenticationTag;
    Bytes initializationVector;
};

/// What opening takes. Views, but the ciphertext, which is decrypted where it stands.
struct ContentDecryptionContext {
    Bytes ciphertext;
    ByteView initializationVector;
    ByteView additionalAuthenticatedData;
    ByteView authenticationTag;
};

class ContentEncrypter {
public:
    virtual ~ContentEncrypter() = default;

    /// Seals a payload. The Base64URL text of `headerData` is authenticated with it (RFC 7516
    /// section 5.1 step 14).
    [[nodiscard]] virtual ContentEncryptionContext encrypt(ByteView headerData,
                                                           const Payload& payload) const = 0;
};

class ContentDecrypter {
public:
    virtual ~ContentDecrypter() = default;

    /// Opens what was sealed. The tag is checked first, and nothing is decrypted where it is wrong.
    [[nodiscard]] virtual Bytes decrypt(ContentDecryptionContext decryptionContext) const = 0;
};

/// AES_CBC_HMAC_SHA2 (RFC 7518 section 5.2) under one content key, which is not looked at before it is used.
class AESCBCEncryption : public ContentEncrypter, public ContentDecrypter {
public:
    AESCBCEncryption(ContentEncryptionAlgorithm contentEncryptionAlgorithm, SecretBytes contentEncryptionKey)
        : contentEncryptionAlgorithm_(contentEncryptionAlgorithm), ownKey_(std::move(contentEncryptionKey)) {}

    /// @param contentEncryptionKey  outlives this and its copies: it is not copied.
    AESCBCEncryption(ContentEncryptionAlgorithm contentEncryptionAlgorithm, ByteView contentEncryptionKey)
        : contentEncryptionAlgorithm_(contentEncryptionAlgorithm), borrowedKey_(contentEncryptionKey) {}

    /// @throws JWEError keyLengthNotSatisfied, AESError encryptingFailed, SecureRandomError
    [[nodiscard]] ContentEncryptionContext encrypt(ByteView headerData,
                                                   const Payload& payload) const override;

    /// As above, with the authenticated data as they are and a fresh random vector.
    [[nodiscard]] ContentEncryptionContext encrypt(ByteView plaintext,
                                                   ByteView additionalAuthenticatedData) const;

    /// @throws JWEError keyLengthNotSatisfied; hmacNotAuthenticated for any changed
    /// part; AESError decryptingFailed
    [[nodiscard]] Bytes decrypt(Bytes ciphertext, ByteView initializationVector,
                                ByteView additionalAuthenticatedData, ByteView authenticationTag) const;

    /// As above, by the context's fields.
    [[nodiscard]] Bytes decrypt(ContentDecryptionContext decryptionContext) const override;

private:
    [[nodiscard]] ByteView contentEncryptionKey() const {
        return ownKey_.empty() ? borrowedKey_ : ByteView(ownKey_);
    }

    ContentEncryptionAlgorithm contentEncryptionAlgorithm_;
    SecretBytes ownKey_;
    ByteView borrowedKey_;
};

/// The encrypter and decrypter of a row of "enc": one type serves all rows. The decrypter borrows its key.
[[nodiscard]] inline AESCBCEncryption makeContentEncrypter(ContentEncryptionAlgorithm algorithm,
                                                           SecretBytes contentEncryptionKey) {
    return {algorithm, std::move(contentEncryptionKey)};
}
[[nodiscard]] inline AESCBCEncryption makeContentDecrypter(ContentEncryptionAlgorithm algorithm,
                                                           ByteView contentEncryptionKey) {
    return {algorithm, contentEncryptionKey};
}

/// A header's Base64URL text as authenticated data, without the heap for headers of usual length.
class AdditionalAuthenticatedData {
public:
    explicit AdditionalAuthenticatedData(ByteView headerData);
    /// @param header  outlives this; its text is not made anew where it keeps it.
    explicit AdditionalAuthenticatedData(const JOSEHeader& header);
    AdditionalAuthenticatedData(const AdditionalAuthenticatedData&) = delete;
    AdditionalAuthenticatedData& operator=(const AdditionalAuthenticatedData&) = delete;

    [[nodiscard]] ByteView view() const { return view_; }

private:
    static constexpr std::size_t kUsualLength = 512;

    void encode(ByteView headerData);

    std::array<char, kUsualLength> usual_;
    std::string long_;
    ByteView view_;
};

} // namespace korvane
