#include "Crypt/JWS.h"

#include "Crypt/EC.h"
#include "Crypt/JOSEError.h"

namespace korvane {

namespace {

using enum JOSEErrorCase;
namespace Index = ComponentCompactSerializedIndex;

JOSEError verifyingError(std::string text) {
    return JOSEError(verifyingFailed, Description{std::move(text)});
}

JOSEError algorithmMismatch() {
    return verifyingError("JWS header algorithm does not match verifier algorithm.");
}

Bytes signedBy(const Signer& signer, const JWSHeader& header, const Payload& payload) {
    try {
        return signer.sign(header, payload);
    } catch (const ECError& error) {
        if (error.kind() == ECErrorCase::localAuthenticationFailed)
            throw JOSEError(localAuthenticationFailed, error.value());
        throw JOSEError(signingFailed, Description{error.localizedDescription()});
    } catch (const Failure& error) {
        throw JOSEError(signingFailed, Description{error.localizedDescription()});
    }
}

/// Whether a validation succeeds.
template <class Validation>
bool succeeds(Validation validation) {
    try {
        validation();
        return true;
    } catch (const Failure&) {
        return false;
    }
}

} // namespace

JWS::JWS(JWSHeader header, Payload payload, const Signer& signer)
    : header_(std::move(header)), payload_(std::move(payload)),
      signature_(signedBy(signer, header_, payload_)) {}

JWS::JWS(std::string_view compactSerialization)
    : JWS(JOSEDeserializer().deserialize<JWS>(compactSerialization)) {}

JWS::JWS(ByteView compactSerialization) : JWS(JOSEDeserializer().deserialize<JWS>(compactSerialization)) {}

JWS::JWS(const CompactDeserializer& deserializer)
    : header_(deserializer.deserializeHeader<JWSHeader>()),
      payload_(deserializer.deserializeBytes(Index::jwsPayloadIndex)),
      signature_(deserializer.deserializeBytes(Index::jwsSignatureIndex)) {}

const JWS& JWS::validate(const Verifier& verifier) const {
    if (header_.algorithm() != verifier.algorithm()) throw algorithmMismatch();
    bool isGenuine = false;
    try {
        isGenuine = verifier.verify(header_, payload_, signature_);
    } catch (const Failure& error) {
        throw verifyingError(error.localizedDescription());
    }
    if (!isGenuine) throw JOSEError(signatureInvalid);
    return *this;
}

const JWS& JWS::validate(const AnyKey& publicKey) const {
    const auto algorithm = header_.algorithm();
    if (!algorithm) throw algorithmMismatch();
    const auto verifier = Verifier::make(*algorithm, publicKey);
    if (!verifier) throw verifyingError("Wrong key type.");
    return validate(*verifier);
}

bool JWS::isValid(const Verifier& verifier) const {
    return succeeds([&] { validate(verifier); });
}

bool JWS::isValid(const AnyKey& publicKey) const {
    return succeeds([&] { validate(publicKey); });
}

void JWS::serialize(CompactSerializer& serializer) const {
    serializer.serialize(header_);
    serializer.serialize(payload_);
    serializer.serialize(signature_);
}

} // namespace korvane
