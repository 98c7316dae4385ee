#pragma once

#include "Crypt/Decrypter.h"
#include "Crypt/Deserializer.h"
#include "Crypt/Encrypter.h"
#include "Crypt/JWEHeader.h"
#include "Crypt/Payload.h"
#include "Crypt/Serializer.h"

namespace korvane {

/// One JSON Web Encryption in compact form (RFC 7516 section 7.1). A value.
class JWE {
public:
    static constexpr std::size_t componentCount = 5;

    /// Seals a payload. The payload is compressed first where the header says so.
    /// @throws JOSEError compressionFailed or compressionAlgorithmNotSupported; encryptingFailed, with the
    ///         words of what happened, for any other reason.
    JWE(JWEHeader header, const Payload& payload, const Encrypter& encrypter);

    /// Reads five parts. Nothing is decrypted yet.
    /// @throws JOSEError as `JOSEDeserializer::deserialize`
    explicit JWE(std::string_view compactSerialization);

    /// @throws JOSEError as `JOSEDeserializer::deserialize`
    explicit JWE(ByteView compactSerialization);

    explicit JWE(const CompactDeserializer& deserializer);

    [[nodiscard]] const JWEHeader& header() const noexcept { return header_; }
    /// Empty for `direct` and `ECDH_ES`.
    [[nodiscard]] const Bytes& encryptedKey() const noexcept { return encryptedKey_; }
    [[nodiscard]] const Bytes& initializationVector() const noexcept { return initializationVector_; }
    [[nodiscard]] const Bytes& ciphertext() const noexcept { return ciphertext_; }
    [[nodiscard]] const Bytes& authenticationTag() const noexcept { return authenticationTag_; }

    [[nodiscard]] std::string compactSerializedString() const { return JOSESerializer().serialize(*this); }
    [[nodiscard]] Bytes compactSerializedData() const { return toBytes(compactSerializedString()); }

    /// Opens the JWE and inflates its payload where the header says so.
    /// @throws JOSEError decompressionFailed or compressionAlgorithmNotSupported; decryptingFailed, with the
    ///         words of what happened, for any other reason, a wrong key and a changed part included.
    [[nodiscard]] Payload decrypt(const Decrypter& decrypter) const&;
    /// In the memory of the ciphertext, which is gone then.
    [[nodiscard]] Payload decrypt(const Decrypter& decrypter) &&;

    /// The same with the algorithms that the header names: the key's owner must know what it is used for.
    /// @throws JOSEError as above.
    [[nodiscard]] Payload decrypt(const AnyKey& key) const;

    void serialize(CompactSerializer& serializer) const;

private:
    void requireAlgorithms(const Decrypter& decrypter) const;
    /// @param ciphertext  that of this JWE.
    [[nodiscard]] Payload open(const Decrypter& decrypter, Bytes ciphertext) const;

    JWEHeader header_;
    Bytes encryptedKey_;
    Bytes initializationVector_;
    Bytes ciphertext_;
    Bytes authenticationTag_;
};

} // namespace korvane
