#include "tools/acs/Sealing.h"

#include "Crypt/ConcatKDF.h"
#include "Crypt/DataExtensions.h"
#include "Crypt/EC.h"
#include "Crypt/JWE.h"
#include "Crypt/JWS.h"
#include "tools/acs/UsageError.h"

namespace korvane::acs {

namespace {

constexpr auto kContentEncryption = ContentEncryptionAlgorithm::A128CBCHS256;
constexpr std::size_t kKeyBits = 256;

SecKey loadKey(const Pki& pki, std::string_view name) {
    std::string text = pki.key(name);
    try {
        SecKey key = SecKeyCreateWithPEM(text);
        cleanse(text);
        return key;
    } catch (const Failure& failure) {
        throw UsageError(pki.file(name, ".key").string() + ": " + failure.localizedDescription());
    }
}

Chain chainOf(const Pki& pki, std::string_view leaf, std::string_view intermediate) {
    return {base64EncodedString(pki.certificate(leaf)), base64EncodedString(pki.certificate(intermediate))};
}

SigningIdentity loadIdentity(const Pki& pki, std::string_view name, std::string_view foreignName) {
    return {loadKey(pki, name), chainOf(pki, name, Pki::directoryServerIntermediate),
            chainOf(pki, foreignName, Pki::foreignIntermediate)};
}

Bytes decrypted(const JWE& jwe, KeyManagementAlgorithm algorithm, const AnyKey& key) {
    const auto decrypter = Decrypter::make(algorithm, kContentEncryption, key);
    if (!decrypter) throw JOSEError(JOSEErrorCase::decryptingFailed, Description{"The key does not suit."});
    return jwe.decrypt(*decrypter).data();
}

} // namespace

KeyRing::KeyRing(const Pki& pki, std::string directoryServerID)
    : directoryServerID_(std::move(directoryServerID)), deviceDataRSA_(loadKey(pki, Pki::deviceDataRSA)),
      deviceDataEC_(loadKey(pki, Pki::deviceDataEC)),
      rsa_(loadIdentity(pki, Pki::signingRSA, Pki::foreignRSA)),
      ec_(loadIdentity(pki, Pki::signingEC, Pki::foreignEC)) {}

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
