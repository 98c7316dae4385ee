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
    JWEHeader header(kKeyManagement, kContentEncryption);
    header.setKid(acsTransactionId);
    if (!cek_) KORVANE_RAISE(kFunction, InvalidInputException, "Can not get CEK.");
    const auto encrypter = Encrypter::make(kKeyManagement, kContentEncryption, *cek_);
    if (!encrypter) KORVANE_RAISE(kFunction, SDKRuntimeException, "Can not create A128CBCHS256 encrypter.");
    const JWE jwe(std::move(header), Payload(std::move(cReq)), *encrypter);
    // A "kid" that is no text leaves the header without it, and the ACS without a way to find its key.
    if (!isUtf8(acsTransactionId))
        KORVANE_RAISE(kFunction, InvalidInputException, "Can not get serialize JWE.");
    return jwe.compactSerializedData();
}

Bytes KeysContainer::decryptCRes(ByteView cRes) const {
    constexpr const char* kFunction = "decryptCRes(_:)";
    const JWE jwe(cRes);
    if (!cek_) KORVANE_RAISE(kFunction, InvalidInputException, "Can not get CEK.");
    const auto decrypter = Decrypter::make(kKeyManagement, kContentEncryption, *cek_);
    if (!decrypter) KORVANE_RAISE(kFunction, SDKRuntimeException, "Can not create A128CBCHS256 decrypter.");
    return jwe.decrypt(*decrypter).payload();
}

} // namespace korvane
