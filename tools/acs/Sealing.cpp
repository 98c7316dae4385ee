#include "tools/acs/Sealing.h"

#include "Crypt/ConcatKDF.h"
#include "Crypt/DataExtensions.h"
#include "Crypt/EC.h"
#include "Crypt/JWE.h"
#include "Crypt/JWS.h"
#include "Platform/Security/SecCertificate.h"
#include "tools/common/UsageError.h"

namespace korvane::acs {

using tools::UsageError;

namespace {

constexpr auto kContentEncryption = ContentEncryptionAlgorithm::A128CBCHS256;
constexpr std::size_t kKeyBits = 256;

SecKey readKey(const Pki& pki, std::string_view name) {
    std::string text = pki.key(name);
    try {
        SecKey key = SecKeyCreateWithPEM(text);
        cleanse(text);
        return key;
    } catch (const Failure& failure) {
        throw UsageError(pki.file(name, ".key").string() + ": " + failure.localizedDescription());
    }
}

/// A private key of the kind that its name stands for: RSA, or EC on P-256.
SecKey loadKey(const Pki& pki, std::string_view name, SecKeyType type) {
    constexpr std::size_t kCurveBits = 256;
    SecKey key = readKey(pki, name);
    const SecKeyAttributes found = SecKeyCopyAttributes(key);
    const bool isRSA = type == SecKeyType::kSecAttrKeyTypeRSA;
    const bool isFit = found.kSecAttrKeyClass == SecKeyClass::kSecAttrKeyClassPrivate &&
                       found.kSecAttrKeyType == type && (isRSA || found.kSecAttrKeySizeInBits == kCurveBits);
    if (!isFit)
        throw UsageError(pki.file(name, ".key").string() + ": This is no private " +
                         (isRSA ? "RSA key." : "EC key on P-256."));
    return key;
}

std::string loadCertificate(const Pki& pki, std::string_view name) {
    const Bytes der = pki.certificate(name);
    if (!SecCertificateCreateWithData(der))
        throw UsageError(pki.file(name, ".der").string() + ": This is no certificate in DER.");
    return base64EncodedString(der);
}

Chain chainOf(const Pki& pki, std::string_view leaf, std::string_view intermediate) {
    return {loadCertificate(pki, leaf), loadCertificate(pki, intermediate)};
}

SigningIdentity loadIdentity(const Pki& pki, SecKeyType type, std::string_view name,
                             std::string_view foreignName) {
    return {loadKey(pki, name, type), chainOf(pki, name, Pki::directoryServerIntermediate),
            chainOf(pki, foreignName, Pki::foreignIntermediate)};
}

Bytes decrypted(const JWE& jwe, KeyManagementAlgorithm algorithm, const AnyKey& key) {
    const auto decrypter = Decrypter::make(algorithm, kContentEncryption, key);
    if (!decrypter) throw JOSEError(JOSEErrorCase::decryptingFailed, Description{"The key does not suit."});
    return jwe.decrypt(*decrypter).data();
}

} // namespace

KeyRing::KeyRing(const Pki& pki, std::string directoryServerID)
    : directoryServerID_(std::move(directoryServerID)),
      deviceDataRSA_(loadKey(pki, Pki::deviceDataRSA, SecKeyType::kSecAttrKeyTypeRSA)),
      deviceDataEC_(loadKey(pki, Pki::deviceDataEC, SecKeyType::kSecAttrKeyTypeEC)),
      rsa_(loadIdentity(pki, SecKeyType::kSecAttrKeyTypeRSA, Pki::signingRSA, Pki::foreignRSA)),
      ec_(loadIdentity(pki, SecKeyType::kSecAttrKeyTypeEC, Pki::signingEC, Pki::foreignEC)) {}

const SigningIdentity& KeyRing::signingIdentity(SignatureAlgorithm algorithm) const {
    return algorithm == SignatureAlgorithm::ES256 ? ec_ : rsa_;
}

std::string KeyRing::openDeviceData(std::string_view compact) const {
    const JWE jwe(compact);
    const auto algorithm = jwe.header().keyManagementAlgorithm();
    if (algorithm == KeyManagementAlgorithm::RSAOAEP256)
        return std::string(asText(decrypted(jwe, *algorithm, deviceDataRSA_)));
    const auto epk = jwe.header().epk();
    if (algorithm != KeyManagementAlgorithm::direct || !epk)
        throw JOSEError(JOSEErrorCase::decryptingFailed,
                        Description{"The header has neither RSA-OAEP-256 nor dir with an epk."});
    const SecretBytes key = agreedKey(deviceDataEC_, *epk, directoryServerID_);
    return std::string(asText(decrypted(jwe, *algorithm, key)));
}

SecretBytes agreedKey(const ECPrivateKey& privateKey, const ECPublicKey& publicKey,
                      std::string_view partyVInfo) {
    const SecretBytes z = ecdhDeriveBits(privateKey, publicKey);
    return concatKDF(Hash::SHA256, z, kKeyBits, {}, {}, asBytes(partyVInfo),
                     bigEndianData(static_cast<std::uint32_t>(kKeyBits)));
}

std::string seal(std::string_view text, ByteView key, const std::string& kid) {
    JWEHeader header(KeyManagementAlgorithm::direct, kContentEncryption);
    header.setKid(kid);
    const auto encrypter = Encrypter::make(KeyManagementAlgorithm::direct, kContentEncryption, key);
    return JWE(std::move(header), Payload(toBytes(text)), encrypter.value()).compactSerializedString();
}

std::string sign(std::string_view text, SignatureAlgorithm algorithm, const SecKey& key, const Chain& chain) {
    JWSHeader header(algorithm);
    header.setX5c(chain);
    const auto signer = Signer::make(algorithm, key);
    return JWS(std::move(header), Payload(toBytes(text)), signer.value()).compactSerializedString();
}

} // namespace korvane::acs
