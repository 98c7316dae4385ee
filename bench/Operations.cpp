#include "bench/Operations.h"

#include "Crypt/ConcatKDF.h"
#include "Crypt/EC.h"
#include "Crypt/JWE.h"
#include "Crypt/JWS.h"
#include "Crypt/RSAPublicKey.h"
#include "bench/BareOpenSSL.h"

#include <benchmark/benchmark.h>

#include <array>
#include <memory>

namespace korvane::bench {

namespace {

constexpr auto kEncryption = ContentEncryptionAlgorithm::A128CBCHS256;
constexpr std::size_t kKeyLength = 32;
constexpr std::size_t kMessageSize = 4096;
constexpr double kPublicKeyTarget = 1.1;

/// The two sides must agree before they are compared.
void require(bool holds, const std::string& operation) {
    if (!holds) fatalError("Both sides of " + operation + " do not understand each other.");
}

/// A payload that looks like text.
Bytes payloadOf(std::size_t size) {
    Bytes payload(size);
    for (std::size_t index = 0; index < size; ++index)
        payload[index] = static_cast<std::uint8_t>('a' + index % 26);
    return payload;
}

template <class Korvane, class Bare>
Operation row(std::string name, double target, Korvane korvane, Bare bare) {
    return {std::move(name), target, false, [korvane] { benchmark::DoNotOptimize(korvane()); },
            [bare] { benchmark::DoNotOptimize(bare()); }};
}

struct Size {
    std::string name;
    std::size_t bytes;
    double sealTarget;
    double openTarget;
};

void addDirect(std::vector<Operation>& rows, const Size& size) {
    const auto bare = std::make_shared<bare::Sealing>();
    const SecretBytes key(kKeyLength, 7);
    const auto encrypter = Encrypter::make(KeyManagementAlgorithm::direct, kEncryption, key).value();
    const auto decrypter = Decrypter::make(KeyManagementAlgorithm::direct, kEncryption, key).value();
    const JWEHeader header(KeyManagementAlgorithm::direct, kEncryption);
    const Payload payload(payloadOf(size.bytes));
    const std::string text = bare->seal(header.data(), {}, key, payload.data());
    require(JWE(text).decrypt(decrypter) == payload, "opening");
    require(bare->open(JWE(header, payload, encrypter).compactSerializedString(), key) == payload.data(),
            "sealing");

    rows.push_back(row(
        "seal dir A128CBC-HS256 " + size.name, size.sealTarget,
        [=] { return JWE(header, payload, encrypter).compactSerializedString(); },
        [=] { return bare->seal(header.data(), {}, key, payload.data()); }));
    rows.back().countsAllocations = size.bytes == kMessageSize;
    rows.push_back(row(
        "open dir A128CBC-HS256 " + size.name, size.openTarget, [=] { return JWE(text).decrypt(decrypter); },
        [=] { return bare->open(text, key); }));
    rows.back().countsAllocations = size.bytes == kMessageSize;
}

void addRsaSealing(std::vector<Operation>& rows, const SecKey& privateKey) {
    const SecKey publicKey = SecKeyCopyPublicKey(privateKey);
    const auto bareKey = std::make_shared<bare::KeyEncryption>(SecKeyCopyExternalRepresentation(publicKey));
    const auto bare = std::make_shared<bare::Sealing>();
    const auto algorithm = KeyManagementAlgorithm::RSAOAEP256;
    const auto encrypter = Encrypter::make(algorithm, kEncryption, publicKey).value();
    const JWEHeader header(algorithm, kEncryption);
    const Payload payload(payloadOf(kMessageSize));
    const auto sealBare = [=] {
        const auto key = bareKey->encryptFreshKey();
        return bare->seal(header.data(), key.encryptedKey, key.contentKey, payload.data());
    };
    require(JWE(sealBare()).decrypt(privateKey) == payload, "RSA sealing");
    rows.push_back(row(
        "seal RSA-OAEP-256 4 KB", kPublicKeyTarget,
        [=] { return JWE(header, payload, encrypter).compactSerializedString(); }, sealBare));
}

void addVerification(std::vector<Operation>& rows, SignatureAlgorithm algorithm, bare::Signature signature,
                     const SecKey& privateKey) {
    constexpr std::size_t kSignedSize = 1024;
    const SecKey publicKey = SecKeyCopyPublicKey(privateKey);
    const auto verifier = Verifier::make(algorithm, publicKey).value();
    const JWS jws(JWSHeader(algorithm), Payload(payloadOf(kSignedSize)),
                  Signer::make(algorithm, privateKey).value());
    const std::string text = jws.compactSerializedString();
    const auto bare =
        std::make_shared<bare::Verification>(signature, SecKeyCopyExternalRepresentation(publicKey));
    require(bare->verify(text) == JWS(text).validate(verifier).payload().data(), "verification");
    rows.push_back(row(
        "verify " + std::string(rawValue(algorithm)) + " 1 KB", kPublicKeyTarget,
        [=] {
            JWS parsed(text);
            parsed.validate(verifier);
            return parsed;
        },
        [=] { return bare->verify(text); }));
}

void addAgreement(std::vector<Operation>& rows) {
    constexpr std::size_t kKeyBits = 256;
    const auto own = ECPrivateKey::generateWithoutParametersWith(ECCurveType::P256);
    const auto peer = ECPrivateKey::generateWithoutParametersWith(ECCurveType::P256);
    const ECPublicKey peerPublic(ECCurveType::P256, peer.x(), peer.y());
    const Bytes partyU = toBytes(std::string_view("3DS_LOA_SDK"));
    const Bytes partyV = toBytes(std::string_view("3DS_LOA_ACS"));
    const Bytes publicInfo = bigEndianData(kKeyBits);
    const auto agree = [=] {
        return concatKDF(Hash::SHA256, ecdhDeriveBits(own, peerPublic), kKeyBits, {}, partyU, partyV,
                         publicInfo);
    };
    Bytes otherInfo;
    for (const Bytes& piece :
         {prefixedBigEndenLen({}), prefixedBigEndenLen(partyU), prefixedBigEndenLen(partyV), publicInfo})
        otherInfo.insert(otherInfo.end(), piece.begin(), piece.end());
    const auto bare = std::make_shared<bare::Agreement>();
    const bare::KeyTexts ownTexts{own.x(), own.y(), own.privateKey()};
    const bare::KeyTexts peerTexts{peer.x(), peer.y(), {}};
    const auto agreeBare = [=] { return bare->agree(ownTexts, peerTexts, otherInfo); };
    require(toSecretBytes(agreeBare()) == agree(), "key agreement");
    rows.push_back(row("ECDH P-256 and Concat KDF", kPublicKeyTarget, agree, agreeBare));
}

void addKeyGeneration(std::vector<Operation>& rows) {
    const auto bare = std::make_shared<bare::KeyGeneration>();
    const bare::KeyTexts texts = bare->generate();
    const ECPrivateKey key("P-256", texts.x, texts.y, texts.d);
    require(ECPrivateKey(key.converted<SecKey>()) == key, "key generation");
    rows.push_back(row(
        "generate P-256 key", kPublicKeyTarget,
        [] { return ECPrivateKey::generateWithoutParametersWith(ECCurveType::P256); },
        [=] { return bare->generate(); }));
}

} // namespace

std::vector<Operation> operations() {
    const std::array<Size, 3> sizes{
        {{"512 B", 512, 1.6, 2.0}, {"4 KB", kMessageSize, 1.2, 1.2}, {"100 KB", 102400, 1.1, 1.1}}};
    const SecKey rsa = SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeRSA, 2048);
    const SecKey ec = SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeEC, 256);
    std::vector<Operation> rows;
    for (const Size& size : sizes)
        addDirect(rows, size);
    addRsaSealing(rows, rsa);
    addVerification(rows, SignatureAlgorithm::RS256, bare::Signature::RS256, rsa);
    addVerification(rows, SignatureAlgorithm::PS256, bare::Signature::PS256, rsa);
    addVerification(rows, SignatureAlgorithm::ES256, bare::Signature::ES256, ec);
    addAgreement(rows);
    addKeyGeneration(rows);
    return rows;
}

} // namespace korvane::bench
