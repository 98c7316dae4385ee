#include "bench/BareOpenSSLKeys.h"

#include "Crypt/DataExtensions.h"
#include "bench/BareBase64.h"
#include "bench/BareOpenSSL.h"

#include <openssl/ec.h>
#include <openssl/rand.h>
#include <openssl/rsa.h>

#include <algorithm>
#include <bit>

namespace korvane::bench::bare {

namespace {

using namespace openssl;

constexpr std::size_t kNumber = 32;
constexpr std::size_t kPoint = 1 + 2 * kNumber;

Key groupTemplate() {
    const KeyContext context(EVP_PKEY_CTX_new_from_name(nullptr, "EC", nullptr));
    std::array<char, 11> group{"prime256v1"};
    std::array<OSSL_PARAM, 2> parameters{
        OSSL_PARAM_construct_utf8_string(OSSL_PKEY_PARAM_GROUP_NAME, group.data(), 0),
        OSSL_PARAM_construct_end()};
    EVP_PKEY* key = nullptr;
    must(EVP_PKEY_fromdata_init(context.get()) == 1 &&
         EVP_PKEY_fromdata(context.get(), &key, EVP_PKEY_KEY_PARAMETERS, parameters.data()) == 1);
    return Key(key);
}

Key publicEcKey(ByteView point) {
    Key key = groupTemplate();
    must(EVP_PKEY_set1_encoded_public_key(key.get(), point.data(), point.size()) == 1);
    return key;
}

Key publicRsaKey(ByteView der) {
    const unsigned char* position = der.data();
    Key key(d2i_PublicKey(EVP_PKEY_RSA, nullptr, &position, static_cast<long>(der.size())));
    must(key != nullptr);
    return key;
}

std::array<std::uint8_t, kPoint> pointOf(const KeyNumbers& numbers) {
    std::array<std::uint8_t, kPoint> point{POINT_CONVERSION_UNCOMPRESSED};
    std::copy(numbers.x.begin(), numbers.x.end(), point.begin() + 1);
    std::copy(numbers.y.begin(), numbers.y.end(), point.begin() + 1 + kNumber);
    return point;
}

} // namespace

struct KeyEncryption::State {
    Key key;
    KeyContext context{EVP_PKEY_CTX_new_from_pkey(nullptr, key.get(), nullptr)};
    std::array<std::uint8_t, 32> contentKey{};
    Bytes encryptedKey = Bytes(static_cast<std::size_t>(EVP_PKEY_get_size(key.get())));

    explicit State(ByteView publicKey) : key(publicRsaKey(publicKey)) {
        must(EVP_PKEY_encrypt_init(context.get()) == 1 &&
             EVP_PKEY_CTX_set_rsa_padding(context.get(), RSA_PKCS1_OAEP_PADDING) == 1 &&
             EVP_PKEY_CTX_set_rsa_oaep_md_name(context.get(), "SHA256", nullptr) == 1);
    }
};

KeyEncryption::KeyEncryption(ByteView publicKey) : state_(std::make_unique<State>(publicKey)) {}
KeyEncryption::~KeyEncryption() = default;

KeyEncryption::Result KeyEncryption::encryptFreshKey() {
    State& state = *state_;
    std::size_t length = state.encryptedKey.size();
    must(RAND_bytes(state.contentKey.data(), static_cast<int>(state.contentKey.size())) == 1 &&
         EVP_PKEY_encrypt(state.context.get(), state.encryptedKey.data(), &length, state.contentKey.data(),
                          state.contentKey.size()) == 1);
    return {state.contentKey, state.encryptedKey};
}

struct Verification::State {
    Sha256 sha256;
    bool isEc;
    Key key;
    KeyContext context{EVP_PKEY_CTX_new_from_pkey(nullptr, key.get(), nullptr)};
    Bytes payload;

    State(Signature signature, ByteView publicKey)
        : isEc(signature == Signature::ES256), key(isEc ? publicEcKey(publicKey) : publicRsaKey(publicKey)) {
        must(EVP_PKEY_verify_init(context.get()) == 1 &&
             EVP_PKEY_CTX_set_signature_md(context.get(), sha256.algorithm()) == 1);
        if (signature == Signature::PS256)
            must(EVP_PKEY_CTX_set_rsa_padding(context.get(), RSA_PKCS1_PSS_PADDING) == 1 &&
                 EVP_PKEY_CTX_set_rsa_pss_saltlen(context.get(), RSA_PSS_SALTLEN_DIGEST) == 1);
    }
};

namespace {

/// A number as a DER INTEGER. @return its end.
std::uint8_t* writeInteger(ByteView number, std::uint8_t* der) {
    while (number.size() > 1 && number.front() == 0)
        number = number.subspan(1);
    const bool needsSign = number.front() >= 0x80;
    *der++ = 0x02;
    *der++ = static_cast<std::uint8_t>(number.size() + (needsSign ? 1 : 0));
    if (needsSign) *der++ = 0;
    return std::copy(number.begin(), number.end(), der);
}

/// Raw r and s as a DER SEQUENCE. @return its length.
std::size_t writeSignature(ByteView raw, std::uint8_t* der) {
    must(raw.size() == 2 * kNumber);
    std::uint8_t* const end = writeInteger(raw.subspan(kNumber), writeInteger(raw.first(kNumber), der + 2));
    der[0] = 0x30;
    der[1] = static_cast<std::uint8_t>(end - der - 2);
    return static_cast<std::size_t>(end - der);
}

} // namespace

Verification::Verification(Signature signature, ByteView publicKey)
    : state_(std::make_unique<State>(signature, publicKey)) {}
Verification::~Verification() = default;

ByteView Verification::verify(std::string_view header, std::string_view compact) {
    State& state = *state_;
    const std::size_t payloadAt = header.size() + 1;
    const std::size_t dot = compact.rfind('.');
    must(compact.starts_with(header) && compact[header.size()] == '.' && dot > header.size());
    const std::string_view payloadText = compact.substr(payloadAt, dot - payloadAt);
    if (state.payload.size() < payloadText.size()) state.payload.resize(payloadText.size());
    const std::uint8_t* const payloadEnd = decodeBase64URL(payloadText, state.payload.data());
    std::array<std::uint8_t, 512> signature{};
    std::array<std::uint8_t, 80> der{};
    const std::uint8_t* const end = decodeBase64URL(compact.substr(dot + 1), signature.data());
    ByteView given(signature.data(), static_cast<std::size_t>(end - signature.data()));
    if (state.isEc) given = ByteView(der).first(writeSignature(given, der.data()));
    const auto digest = state.sha256({asBytes(compact.substr(0, dot))});
    must(EVP_PKEY_verify(state.context.get(), given.data(), given.size(), digest.data(), digest.size()) == 1);
    return {state.payload.data(), static_cast<std::size_t>(payloadEnd - state.payload.data())};
}

struct PublicKey::State {
    Key key;
};

PublicKey::PublicKey(const KeyNumbers& numbers)
    : state_(std::make_unique<State>(State{publicEcKey(pointOf(numbers))})) {}
PublicKey::~PublicKey() = default;

struct KeyPair::State {
    Sha256 sha256;
    Key group{groupTemplate()};
    KeyContext generation{EVP_PKEY_CTX_new_from_pkey(nullptr, group.get(), nullptr)};
    Key key;
    /// Ready for `peer`.
    KeyContext derivation;
    const PublicKey* peer = nullptr;
    std::array<char, 256> text{};

    explicit State(const KeyNumbers& numbers) {
        std::array<char, 11> groupName{"prime256v1"};
        auto point = pointOf(numbers);
        // OpenSSL takes the number in the machine's own order.
        Bytes number = toBytes(numbers.d);
        if constexpr (std::endian::native == std::endian::little) std::reverse(number.begin(), number.end());
        std::array<OSSL_PARAM, 4> parameters{
            OSSL_PARAM_construct_utf8_string(OSSL_PKEY_PARAM_GROUP_NAME, groupName.data(), 0),
            OSSL_PARAM_construct_octet_string(OSSL_PKEY_PARAM_PUB_KEY, point.data(), point.size()),
            OSSL_PARAM_construct_BN(OSSL_PKEY_PARAM_PRIV_KEY, number.data(), number.size()),
            OSSL_PARAM_construct_end()};
        const KeyContext import(EVP_PKEY_CTX_new_from_name(nullptr, "EC", nullptr));
        EVP_PKEY* imported = nullptr;
        must(EVP_PKEY_fromdata_init(import.get()) == 1 &&
             EVP_PKEY_fromdata(import.get(), &imported, EVP_PKEY_KEYPAIR, parameters.data()) == 1 &&
             EVP_PKEY_keygen_init(generation.get()) == 1);
        key.reset(imported);
    }

    void meet(const PublicKey& other, EVP_PKEY* otherKey) {
        if (peer == &other) return;
        derivation.reset(EVP_PKEY_CTX_new_from_pkey(nullptr, key.get(), nullptr));
        // The point was checked when it was set.
        constexpr int kNoSecondCheck = 0;
        must(EVP_PKEY_derive_init(derivation.get()) == 1 &&
             EVP_PKEY_derive_set_peer_ex(derivation.get(), otherKey, kNoSecondCheck) == 1);
        peer = &other;
    }

    std::string_view jwk(ByteView secret) {
        std::array<std::uint8_t, kPoint> point{};
        std::size_t length = 0;
        must(EVP_PKEY_get_octet_string_param(key.get(), OSSL_PKEY_PARAM_PUB_KEY, point.data(), point.size(),
                                             &length) == 1);
        char* next = text.data();
        const auto add = [&next](std::string_view piece, ByteView number) {
            next = std::copy(piece.begin(), piece.end(), next);
            next = encodeBase64URL(number, next);
        };
        add(R"({"crv":"P-256)", {});
        if (!secret.empty()) add(R"(","d":")", secret);
        add(R"(","kty":"EC","x":")", ByteView(point).subspan(1, kNumber));
        add(R"(","y":")", ByteView(point).subspan(1 + kNumber));
        add(R"("})", {});
        return {text.data(), static_cast<std::size_t>(next - text.data())};
    }
};

KeyPair::KeyPair(const KeyNumbers& numbers) : state_(std::make_unique<State>(numbers)) {}
KeyPair::~KeyPair() = default;

void KeyPair::generate() {
    EVP_PKEY* generated = nullptr;
    must(EVP_PKEY_generate(state_->generation.get(), &generated) == 1);
    state_->key.reset(generated);
    state_->peer = nullptr;
}

std::array<std::uint8_t, 32> KeyPair::agree(const PublicKey& peer, ByteView otherInfo) {
    state_->meet(peer, peer.state_->key.get());
    std::array<std::uint8_t, kNumber> shared{};
    std::size_t length = shared.size();
    must(EVP_PKEY_derive(state_->derivation.get(), shared.data(), &length) == 1);
    constexpr std::array<std::uint8_t, 4> kFirstRound{0, 0, 0, 1};
    return state_->sha256({kFirstRound, shared, otherInfo});
}

std::string_view KeyPair::publicJwk() {
    return state_->jwk({});
}

std::string_view KeyPair::privateJwk() {
    BIGNUM* number = nullptr;
    must(EVP_PKEY_get_bn_param(state_->key.get(), OSSL_PKEY_PARAM_PRIV_KEY, &number) == 1);
    const Number owned(number);
    std::array<std::uint8_t, kNumber> secret{};
    must(BN_bn2binpad(owned.get(), secret.data(), kNumber) == kNumber);
    return state_->jwk(secret);
}

} // namespace korvane::bench::bare
