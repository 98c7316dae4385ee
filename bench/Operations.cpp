#include "bench/Operations.h"

#include "Crypt/ConcatKDF.h"
#include "Crypt/EC.h"
#include "Crypt/JWE.h"
#include "Crypt/JWS.h"
#include "Crypt/RSAPublicKey.h"
#include "bench/BareBase64.h"
#include "bench/BareOpenSSLKeys.h"
#include "bench/BareOpenSSLSealing.h"

#include <benchmark/benchmark.h>

#include <array>
#include <memory>

namespace korvane::bench {

namespace {

constexpr auto kEncryption = ContentEncryptionAlgorithm::A128CBCHS256;
constexpr std::size_t kKeyLength = 32;
constexpr std::size_t kMessageSize = 4096;
constexpr double kPublicKeyTarget = 1.05;
constexpr double kAgreementTarget = 1.15;
constexpr double kKeyTextTarget = 1.2;
/// For scale: there is nothing to reach.
constexpr double kNoTarget = 0;
constexpr std::size_t kAllocations = 8;
constexpr std::size_t kNoAllocationTarget = 0;
constexpr const char* kKeyID = "8c2f7a3e-5d14-4b0a-9f6e-1b7d3c9a2e58";

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
    return {std::move(name), target, std::nullopt, [korvane] { benchmark::DoNotOptimize(korvane()); },
            [bare] { benchmark::DoNotOptimize(bare()); }};
}

struct Size {
    std::string name;
    std::size_t bytes;
    double sealTarget;
    double openTarget;
};

JWEHeader headerWithKeyID() {
    JWEHeader header(KeyManagementAlgorithm::direct, kEncryption);
    header.setKid(kKeyID);
    return header;
}

void addDirect(std::vector<Operation>& rows, const Size& size) {
    const SecretBytes key(kKeyLength, 7);
    const auto bare = std::make_shared<bare::Sealing>(key);
    const auto encrypter = Encrypter::make(KeyManagementAlgorithm::direct, kEncryption, key).value();
    const auto decrypter = Decrypter::make(KeyManagementAlgorithm::direct, kEncryption, key).value();
    const JWEHeader header = headerWithKeyID();
    const std::string headerText = base64URLEncodedString(header.data());
    const Payload payload(payloadOf(size.bytes));
    const std::string text(bare->seal(headerText, {}, payload.data()));
    require(JWE(text).decrypt(decrypter) == payload, "opening");
    const std::string sealed = JWE(header, payload, encrypter).compactSerializedString();
    require(toBytes(bare->open(headerText, sealed)) == payload.data(), "sealing");

    rows.push_back(row(
        "seal dir A128CBC-HS256 " + size.name, size.sealTarget,
        [=] { return JWE(header, payload, encrypter).compactSerializedString(); },
        [=] { return bare->seal(headerText, {}, payload.data()); }));
    rows.back().allocationTarget = kAllocations;
    rows.push_back(row(
        "open dir A128CBC-HS256 " + size.name, size.openTarget, [=] { return JWE(text).decrypt(decrypter); },
        [=] { return bare->open(headerText, text); }));
    rows.back().allocationTarget = kAllocations;
}

void addHeader(std::vector<Operation>& rows) {
    const SecretBytes key(kKeyLength, 7);
    const auto bare = std::make_shared<bare::Sealing>(key);
    const auto encrypter = Encrypter::make(KeyManagementAlgorithm::direct, kEncryption, key).value();
    const std::string headerText = base64URLEncodedString(headerWithKeyID().data());
    const Payload payload(payloadOf(kMessageSize));
    rows.push_back(row(
        "seal 4 KB, header made anew", kNoTarget,
        [=] { return JWE(headerWithKeyID(), payload, encrypter).compactSerializedString(); },
        [=] { return bare->seal(headerText, {}, payload.data()); }));
    rows.push_back(row(
        "seal 4 KB, both with a new key", kNoTarget,
        [=] {
            return JWE(headerWithKeyID(), payload,
                       Encrypter::make(KeyManagementAlgorithm::direct, kEncryption, key).value())
                .compactSerializedString();
        },
        [=] {
            bare->setSealingKey(key);
            return bare->seal(headerText, {}, payload.data());
        }));
}

/// What is left of the difference where the limit, too, leaves neither key nor text behind.
void addForgetting(std::vector<Operation>& rows, const std::string& name, std::size_t size) {
    const SecretBytes key(kKeyLength, 7);
    const auto bare = std::make_shared<bare::Sealing>(key);
    const auto decrypter = Decrypter::make(KeyManagementAlgorithm::direct, kEncryption, key).value();
    const std::string headerText = base64URLEncodedString(headerWithKeyID().data());
    const std::string text(bare->seal(headerText, {}, payloadOf(size)));
    rows.push_back(row(
        "open " + name + ", both forgetting", kNoTarget, [=] { return JWE(text).decrypt(decrypter); },
        [=] {
            bare->setOpeningKey(key);
            const ByteView opened = bare->open(headerText, text);
            bare->forget();
            return opened;
        }));
}

void addRsaSealing(std::vector<Operation>& rows, const SecKey& privateKey) {
    const SecKey publicKey = SecKeyCopyPublicKey(privateKey);
    const auto bareKey = std::make_shared<bare::KeyEncryption>(SecKeyCopyExternalRepresentation(publicKey));
    const auto bare = std::make_shared<bare::Sealing>();
    const auto algorithm = KeyManagementAlgorithm::RSAOAEP256;
    const auto encrypter = Encrypter::make(algorithm, kEncryption, publicKey).value();
    const JWEHeader header(algorithm, kEncryption);
    const std::string headerText = base64URLEncodedString(header.data());
    const Payload payload(payloadOf(kMessageSize));
    const auto sealBare = [=] {
        const auto key = bareKey->encryptFreshKey();
        bare->setSealingKey(key.contentKey);
        return bare->seal(headerText, key.encryptedKey, payload.data());
    };
    require(JWE(sealBare()).decrypt(privateKey) == payload, "RSA sealing");
    rows.push_back(row(
        "seal RSA-OAEP-256 4 KB", kPublicKeyTarget,
        [=] { return JWE(header, payload, encrypter).compactSerializedString(); }, sealBare));
    rows.back().allocationTarget = kNoAllocationTarget;
}

void addVerification(std::vector<Operation>& rows, SignatureAlgorithm algorithm, bare::Signature signature,
                     const SecKey& privateKey) {
    constexpr std::size_t kSignedSize = 1024;
    const SecKey publicKey = SecKeyCopyPublicKey(privateKey);
    const auto verifier = Verifier::make(algorithm, publicKey).value();
    const JWS jws(JWSHeader(algorithm), Payload(payloadOf(kSignedSize)),
                  Signer::make(algorithm, privateKey).value());
    const std::string text = jws.compactSerializedString();
    const std::string headerText = base64URLEncodedString(jws.header().data());
    const auto bare =
        std::make_shared<bare::Verification>(signature, SecKeyCopyExternalRepresentation(publicKey));
    require(toBytes(bare->verify(headerText, text)) == JWS(text).validate(verifier).payload().data(),
            "verification");
    rows.push_back(row(
        "verify " + std::string(rawValue(algorithm)) + " 1 KB", kPublicKeyTarget,
        [=] {
            JWS parsed(text);
            parsed.validate(verifier);
            return parsed;
        },
        [=] { return bare->verify(headerText, text); }));
    rows.back().allocationTarget = kNoAllocationTarget;
}

/// The octets of a key's texts, and a view of them as numbers.
class Numbers {
public:
    template <class Key>
    explicit Numbers(const Key& key) : x_(*fromBase64URL(key.x())), y_(*fromBase64URL(key.y())) {
        if constexpr (requires { key.privateKey(); }) d_ = *fromBase64URL(key.privateKey());
    }

    [[nodiscard]] bare::KeyNumbers view() const { return {x_, y_, d_}; }

private:
    Bytes x_;
    Bytes y_;
    Bytes d_;
};

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
    const auto barePair = std::make_shared<bare::KeyPair>(Numbers(own).view());
    const auto barePeer = std::make_shared<bare::PublicKey>(Numbers(peerPublic).view());
    const auto agreeBare = [=] { return barePair->agree(*barePeer, otherInfo); };
    require(toSecretBytes(agreeBare()) == agree(), "key agreement");
    rows.push_back(row("ECDH P-256 and Concat KDF", kAgreementTarget, agree, agreeBare));
    rows.back().allocationTarget = kNoAllocationTarget;
}

void addKeyTexts(std::vector<Operation>& rows) {
    const SecKey pair = SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeEC, 256);
    const SecKey publicKey = SecKeyCopyPublicKey(pair);
    const auto bare = std::make_shared<bare::KeyPair>(Numbers(ECPrivateKey(pair)).view());
    const auto text = [=] { return ECPublicKey(publicKey).jsonString().value(); };
    require(text() == bare->publicJwk(), "the text of a public key");
    require(ECPrivateKey(pair).jsonString() == bare->privateJwk(), "the text of a private key");
    // Both sides measure a key that was generated: its point is not in the form that is written.
    bare->generate();
    rows.push_back(
        row("P-256 key to public JWK text", kKeyTextTarget, text, [=] { return bare->publicJwk(); }));
    rows.back().allocationTarget = kNoAllocationTarget;
    rows.push_back(row(
        "generate P-256 key as JWK", kKeyTextTarget,
        [] { return ECPrivateKey::generateWithoutParametersWith(ECCurveType::P256); },
        [=] {
            bare->generate();
            return bare->privateJwk();
        }));
}

void addEncoding(std::vector<Operation>& rows) {
    const Bytes octets = payloadOf(kMessageSize);
    const std::string text = base64URLEncodedString(octets);
    const auto output = std::make_shared<std::string>(text.size(), ' ');
    const auto decoded = std::make_shared<Bytes>(octets.size());
    bare::encodeBase64URLByVectors(octets, output->data());
    bare::decodeBase64URLByVectors(text, decoded->data());
    require(*output == text && *decoded == octets, "encoding");
    const std::string beside = bare::hasVectors() ? " beside vectors" : " (no vectors here)";
    rows.push_back(row(
        "encode 4 KB" + beside, kNoTarget, [=] { return base64URLEncodedString(octets); },
        [=] { return bare::encodeBase64URLByVectors(octets, output->data()); }));
    rows.push_back(row(
        "decode 4 KB" + beside, kNoTarget, [=] { return fromBase64URL(text); },
        [=] { return bare::decodeBase64URLByVectors(text, decoded->data()); }));
}

} // namespace

std::vector<Operation> operations() {
    const std::array<Size, 3> sizes{
        {{"512 B", 512, 1.5, 1.5}, {"4 KB", kMessageSize, 1.2, 1.2}, {"100 KB", 102400, 1.1, 1.1}}};
    const SecKey rsa = SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeRSA, 2048);
    const SecKey ec = SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeEC, 256);
    std::vector<Operation> rows;
    for (const Size& size : sizes)
        addDirect(rows, size);
    addHeader(rows);
    addForgetting(rows, "512 B", 512);
    addRsaSealing(rows, rsa);
    addVerification(rows, SignatureAlgorithm::RS256, bare::Signature::RS256, rsa);
    addVerification(rows, SignatureAlgorithm::PS256, bare::Signature::PS256, rsa);
    addVerification(rows, SignatureAlgorithm::ES256, bare::Signature::ES256, ec);
    addAgreement(rows);
    addKeyTexts(rows);
    addEncoding(rows);
    return rows;
}

} // namespace korvane::bench
