#pragma once

#include "Crypt/Deserializer.h"
#include "Crypt/JWSHeader.h"
#include "Crypt/Payload.h"
#include "Crypt/Serializer.h"
#include "Crypt/Signer.h"
#include "Crypt/Verifier.h"

namespace korvane {

/// One JSON Web Signature in compact form (RFC 7515 section 7.1). A value.
class JWS {
public:
    static constexpr std::size_t componentCount = 3;

    /// Signs a payload.
    /// @throws JOSEError localAuthenticationFailed; signingFailed, with the words of what happened, for any
    ///         other reason.
    JWS(JWSHeader header, Payload payload, const Signer& signer);

    /// Reads three parts. Nothing is verified yet.
    /// @throws JOSEError as `JOSEDeserializer::deserialize`
    explicit JWS(std::string_view compactSerialization);

    /// @throws JOSEError as `JOSEDeserializer::deserialize`
    explicit JWS(ByteView compactSerialization);

    explicit JWS(const CompactDeserializer& deserializer);

    [[nodiscard]] const JWSHeader& header() const noexcept { return header_; }
    [[nodiscard]] const Payload& payload() const noexcept { return payload_; }
    [[nodiscard]] const Bytes& signature() const noexcept { return signature_; }

    [[nodiscard]] std::string compactSerializedString() const { return JOSESerializer().serialize(*this); }
    [[nodiscard]] Bytes compactSerializedData() const { return toBytes(compactSerializedString()); }

    /// @return this value, when the verifier's algorithm is the header's and the signature is its key's.
    /// @throws JOSEError signatureInvalid for another signature; verifyingFailed, with the words of what
    ///         happened, for any other reason.
    const JWS& validate(const Verifier& verifier) const;

    /// The same with the algorithm that the header names: the key's owner must know what it is used for.
    /// @throws JOSEError as above.
    const JWS& validate(const AnyKey& publicKey) const;

    /// As `validate`, with false in place of every failure.
    [[nodiscard]] bool isValid(const Verifier& verifier) const;
    [[nodiscard]] bool isValid(const AnyKey& publicKey) const;

    void serialize(CompactSerializer& serializer) const;

private:
    JWSHeader header_;
    Payload payload_;
    Bytes signature_;
};

} // namespace korvane
