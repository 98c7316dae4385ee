#include "Sdk/SecureChannel/KeysContainer.h"

#include "Crypt/EC.h"
#include "Crypt/JWE.h"
#include "Platform/JSON.h"
#include "Sdk/Events/SdkError.h"
#include "Sdk/SecureChannel/AcsSignedContent.h"
#include "Sdk/SecureChannel/KeyDerivation.h"

namespace korvane {

namespace {

using enum SdkErrorCase;

constexpr auto kKeyManagement = KeyManagementAlgorithm::direct;
constexpr auto kContentEncryption = ContentEncryptionAlgorithm::A128CBCHS256;

/// Written once, where a "kid" that is set later would have it written twice; and not again for the next
/// request of the same challenge.
JWEHeader headerWithKid(const std::string& kid) {
    thread_local std::optional<JWEHeader> last;
    if (last && last->kid() == kid) return *last;
    JSON::object_t members;
    members.reserve(3);
    members.emplace_back(HeaderParameter::alg, rawValue(kKeyManagement));
    members.emplace_back(HeaderParameter::enc, rawValue(kContentEncryption));
    members.emplace_back(HeaderParameter::kid, kid);
    return last.emplace(JSON(std::move(members)));
}

} // namespace

std::optional<std::string> KeysContainer::getEphemeralPublicKey() {
    const ECPrivateKey& pair = ephemeralKeyPair_ ? *ephemeralKeyPair_ : generateEphemeralKeyPair();
    return pair.getPublic().jsonString();
}

const ECPrivateKey& KeysContainer::generateEphemeralKeyPair() {
    return ephemeralKeyPair_.emplace(ECPrivateKey::generateWithoutParametersWith(ECCurveType::P256));
}

std::string KeysContainer::decryptAcsSignedContent(ByteView content, const std::string& sdkReferenceNumber) {
    constexpr const char* kFunction = "decryptAcsSignedContent(_:sdkReferenceNumber:)";
    AcsSignedContent signedContent = AcsSignedContent::decode(content);
    if (!ephemeralKeyPair_)
        KORVANE_RAISE(kFunction, InvalidInputException, "Can not get private key from ephemeral KeyPair.");
    const SecretBytes z = ecdhDeriveBits(ephemeralKeyPair_->getPrivate(), signedContent.acsEphemPubKey);
    if (!isUtf8(sdkReferenceNumber)) KORVANE_RAISE(kFunction, SDKRuntimeException, "Can not get partyVInfo.");
    cek_ = deriveContentKey(z, sdkReferenceNumber);
    ephemeralKeyPair_.reset();
    return std::move(signedContent.acsURL);
}

Bytes KeysContainer::encryptCReq(Bytes cReq, const std::string& acsTransactionId) const {
    constexpr const char* kFunction = "encryptCReq(_:_:)";
    const Payload payload(std::move(cReq));
    if (!cek_) KORVANE_RAISE(kFunction, InvalidInputException, "Can not get CEK.");
    const auto encrypter = Encrypter::make(kKeyManagement, kContentEncryption, *cek_);
    if (!encrypter) KORVANE_RAISE(kFunction, SDKRuntimeException, "Can not create A128CBCHS256 encrypter.");
    // No header can hold a "kid" that is no text, and without one the ACS has no way to find its key.
    if (!isUtf8(acsTransactionId))
        KORVANE_RAISE(kFunction, InvalidInputException, "Can not get serialize JWE.");
    const JWE jwe(headerWithKid(acsTransactionId), payload, *encrypter);
    return jwe.compactSerializedData();
}

Bytes KeysContainer::decryptCRes(ByteView cRes) const {
    constexpr const char* kFunction = "decryptCRes(_:)";
    JWE jwe(cRes);
    if (!cek_) KORVANE_RAISE(kFunction, InvalidInputException, "Can not get CEK.");
    const auto decrypter = Decrypter::make(kKeyManagement, kContentEncryption, *cek_);
    if (!decrypter) KORVANE_RAISE(kFunction, SDKRuntimeException, "Can not create A128CBCHS256 decrypter.");
    return std::move(jwe).decrypt(*decrypter).payload();
}

} // namespace korvane
