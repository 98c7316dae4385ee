#include "Crypt/AES.h"
#include "Crypt/ConcatKDF.h"
#include "Crypt/EC.h"
#include "Crypt/HMAC.h"
#include "Crypt/JWE.h"
#include "Crypt/RSA.h"
#include "Crypt/SecureRandom.h"
#include "Crypt/SymmetricKey.h"
#include "tests/support/MemoryScan.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>

namespace korvane {
namespace {

using KM = KeyManagementAlgorithm;
using CE = ContentEncryptionAlgorithm;

/// Secrets that are looked for, 16 bytes at a time: a context may keep one block of them.
class Traces {
public:
    void follow(ByteView secret) {
        for (; secret.size() >= kLeast; secret = secret.subspan(std::min(kBlock, secret.size()))) {
            masked_.push_back(maskedForScan(secret.first(std::min(kBlock, secret.size()))));
            EXPECT_TRUE(isThere(masked_.back())) << "a scan that misses what is in use proves nothing";
        }
    }

    /// Follows a digest also as its context holds it: in words of this machine's order.
    void followDigest(ByteView digest, std::size_t wordLength) {
        follow(digest);
        SecretBytes words = toSecretBytes(digest.first(kBlock));
        for (auto word = words.begin(); word != words.end(); word += std::ptrdiff_t(wordLength))
            std::reverse(word, word + std::ptrdiff_t(wordLength));
        masked_.push_back(maskedForScan(words));
    }

    /// The blocks of which a copy is left.
    [[nodiscard]] std::size_t left() const {
        return static_cast<std::size_t>(std::count_if(masked_.begin(), masked_.end(), isThere));
    }

private:
    static constexpr std::size_t kBlock = 16;
    /// Shorter ones stand somewhere by chance.
    static constexpr std::size_t kLeast = 8;

    [[nodiscard]] static bool isThere(const Bytes& block) { return copiesInMemory(block) > 0; }

    std::vector<Bytes> masked_;
};

void derive(Traces& traces) {
    const SecretBytes z = SecureRandom::generate(32);
    traces.follow(z);
    const std::pair<Hash, std::size_t> rows[] = {{Hash::SHA256, 4}, {Hash::SHA384, 8}, {Hash::SHA512, 8}};
    for (const auto& [hash, wordLength] : rows)
        traces.followDigest(concatKDF(hash, z, bitLength(hash), {}, {}, {}, {}), wordLength);
}

void authenticate(Traces& traces) {
    for (const std::size_t length : {32U, 208U}) {
        const SecretBytes key = SecureRandom::generate(std::ptrdiff_t(length));
        traces.follow(key);
        static_cast<void>(HMAC::calculate(Bytes(10), key, HMACAlgorithm::SHA512));
    }
}

void sealAndOpen(Traces& traces, const char* zip) {
    const SecretBytes key = SecureRandom::generate(32);
    // Of a whole number of blocks, since the generator keeps what is left of its last one; then of one less,
    // so that the last one is padded.
    SecretBytes text = SecureRandom::generate(208);
    text.pop_back();
    const Payload payload(toBytes(text));
    traces.follow(key);
    traces.follow(payload.data());
    JWEHeader header(KM::direct, CE::A128CBCHS256);
    header.setZip(zip);
    const JWE jwe(header, payload, Encrypter::make(KM::direct, CE::A128CBCHS256, key).value());
    EXPECT_EQ(jwe.decrypt(Decrypter::make(KM::direct, CE::A128CBCHS256, key).value()), payload);
}

void wrapAndUnwrap(Traces& traces) {
    const SecretBytes wrapping = SecureRandom::generate(32);
    const SecretBytes key = SecureRandom::generate(64);
    traces.follow(wrapping);
    traces.follow(key);
    EXPECT_EQ(AES::unwrap(AES::wrap(key, wrapping, KM::A256KW), wrapping, KM::A256KW), key);
    const SecKey rsa = SecKeyCreateRandomKey(SecKeyType::kSecAttrKeyTypeRSA, 2048);
    const Bytes encrypted = RSA::encrypt(key, SecKeyCopyPublicKey(rsa), KM::RSAOAEP256);
    EXPECT_EQ(RSA::decrypt(encrypted, rsa, KM::RSAOAEP256), key);
}

void agree(Traces& traces) {
    const ECPrivateKey pair = ECPrivateKey::generateWithoutParametersWith(ECCurveType::P256);
    traces.follow(asBytes(pair.privateKey()));
    traces.follow(ecdhDeriveBits(pair, ECPrivateKey::generateWith(ECCurveType::P256).getPublic()));
    const JWE jwe(JWEHeader(KM::ECDH_ES_A128KW, CE::A128CBCHS256), Payload(Bytes(1)),
                  Encrypter::make(KM::ECDH_ES_A128KW, CE::A128CBCHS256, pair.getPublic()).value());
    static_cast<void>(jwe.decrypt(Decrypter::make(KM::ECDH_ES_A128KW, CE::A128CBCHS256, pair).value()));
}

void name(Traces& traces) {
    const SymmetricKey key(SecureRandom::generate(32));
    traces.follow(asBytes(key.key()));
    Bytes json = key.jsonData().value();
    EXPECT_EQ(SymmetricKey::make(json), key);
    cleanse(json.data(), json.size());
    static_cast<void>(key.thumbprint());
}

TEST(SecretsInMemory, NoneIsLeftBehind) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "the sanitizer's runtime saves registers, and the secrets in them, on the stack";
#endif
    const std::pair<const char*, std::function<void(Traces&)>> rows[] = {
        {"derived keys", derive},
        {"authenticating keys", authenticate},
        {"content key and message", [](Traces& traces) { sealAndOpen(traces, "NONE"); }},
        {"content key and compressed message", [](Traces& traces) { sealAndOpen(traces, "DEF"); }},
        {"wrapped key", wrapAndUnwrap},
        {"private number and shared secret", agree},
        {"symmetric JWK", name},
    };
    for (const auto& [name, use] : rows) {
        // Once with other secrets: at a function's first call the loader saves registers on the stack.
        Traces others;
        use(others);
        Traces traces;
        use(traces);
        EXPECT_EQ(traces.left(), 0U) << name;
    }
}

} // namespace
} // namespace korvane
