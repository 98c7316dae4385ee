#include "Sdk/SecureChannel/KeysContainer.h"

#include "Crypt/EC.h"
#include "Crypt/JWE.h"
#include "Platform/JSON.h"
#include "Sdk/Events/SdkError.h"
#include "Sdk/SecureChannel/CertificateMemo.h"
#include "Sdk/SecureChannel/KeyDerivation.h"

namespace korvane {

namespace {

using enum SdkErrorCase;
constexpr auto kContentEncryption = ContentEncryptionAlgorithm::A128CBCHS256;

} // namespace

std::string KeysContainer::getEncryptedDeviceInfo(ByteView data) {
    dePublicKey_ = SecCertificateCopyKey(deviceInfoCertificate());
    const CertAlgorithm algorithm = providedCerts_ ? providedCerts_->algorithm : devInfoCert_->certAlgorithm;
    return algorithm == CertAlgorithm::RSA ? encryptDevInfoWithRsa(data) : encryptDevInfoWithEc(data);
}

SecCertificate KeysContainer::deviceInfoCertificate() const {
    if (providedCerts_)
        if (auto certificate = rememberedCertificate(providedCerts_->deviceInfoEncCertDerBytes))
            return std::move(*certificate);
    if (!devInfoCert_)
        KORVANE_RAISE("getEncryptedDeviceInfo(_:)", InvalidInputException,
                      "Can not load certificate for device info encryption.");
    return loadCert(devInfoCert_->certFilename);
}

std::string KeysContainer::encryptDevInfoWithRsa(ByteView deviceInfo) const {
    constexpr const char* kFunction = "encryptDevInfoWithRsa(deviceInfo:)";
    constexpr auto kKeyManagement = KeyManagementAlgorithm::RSAOAEP256;
    if (!dePublicKey_) KORVANE_RAISE(kFunction, InvalidInputException, "Can not get dePublicKey");
    const auto encrypter = Encrypter::make(kKeyManagement, kContentEncryption, *dePublicKey_);
    if (!encrypter) KORVANE_RAISE(kFunction, SDKRuntimeException, "Can not create RSAOAEP256 encrypter.");
    return JWE(JWEHeader(kKeyManagement, kContentEncryption), Payload(toBytes(deviceInfo)), *encrypter)
        .compactSerializedString();
}

std::string KeysContainer::encryptDevInfoWithEc(ByteView deviceInfo) const {
    constexpr const char* kFunction = "encryptDevInfoWithEc(deviceInfo:)";
    constexpr auto kKeyManagement = KeyManagementAlgorithm::direct;
    const ECPrivateKey ephemeral = ECPrivateKey::generateWith(ECCurveType::P256);
    if (!dePublicKey_) KORVANE_RAISE(kFunction, InvalidInputException, "Can not get dePublicKey.");
    const SecretBytes z = ecdhDeriveBits(ephemeral.getPrivate(), ECPublicKey(*dePublicKey_));
    const std::string* partyVInfo = directoryServerID();
    if (!partyVInfo || !isUtf8(*partyVInfo))
        KORVANE_RAISE(kFunction, InvalidInputException, "Can not calculate partyVInfo.");
    const SecretBytes key = deriveContentKey(z, *partyVInfo);
    const auto encrypter = Encrypter::make(kKeyManagement, kContentEncryption, key);
    if (!encrypter) KORVANE_RAISE(kFunction, SDKRuntimeException, "Can not create A128CBCHS256 encrypter.");
    return JWE(JWEHeader(kKeyManagement, kContentEncryption, ephemeral.getPublic()),
               Payload(toBytes(deviceInfo)), *encrypter)
        .compactSerializedString();
}

const std::string* KeysContainer::directoryServerID() const {
    if (devInfoCert_) return &devInfoCert_->directoryServerIDAkaRID;
    const auto& provided = providedCerts_->directoryServerIDAkaRID;
    return provided ? &*provided : nullptr;
}

} // namespace korvane
