#include "bench/BareOpenSSL.h"

#include "Crypt/DataExtensions.h"
#include "Platform/Failure.h"
#include "Platform/Security/OpenSSLHandles.h"

#include <openssl/core_names.h>
#include <openssl/crypto.h>
#include <openssl/ec.h>
#include <openssl/params.h>
#include <openssl/rand.h>
#include <openssl/rsa.h>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace korvane::bench::bare {

namespace {

using namespace openssl;

using Mac = Handle<EVP_MAC, EVP_MAC_free>;
using MacContext = Handle<EVP_MAC_CTX, EVP_MAC_CTX_free>;
using EcSignature = Handle<ECDSA_SIG, ECDSA_SIG_free>;

constexpr std::size_t kBlock = 16;
constexpr std::size_t kCoordinate = 32;
constexpr std::size_t kPoint = 1 + 2 * kCoordinate;

std::size_t opensslAllocations = 0;

void* countedMalloc(std::size_t size, const char*, int) {
    ++opensslAllocations;
    return std::malloc(size);
}

void* countedRealloc(void* memory, std::size_t size, const char*, int) {
    ++opensslAllocations;
    return std::realloc(memory, size);
}

void plainFree(void* memory, const char*, int) {
    std::free(memory);
}

void must(bool isDone) {
    if (!isDone) fatalError("A bare OpenSSL call failed: " + ErrorScope::reason());
}

std::string_view nextPart(std::string_view& text) {
    const std::size_t end = std::min(text.find('.'), text.size());
    const std::string_view part = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return part;
}

Bytes decoded(std::string_view part) {
    return fromBase64URL(part).value();
}

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

Key publicEcKey(EVP_PKEY* group, ByteView point) {
    Key key(EVP_PKEY_dup(group));
    must(EVP_PKEY_set1_encoded_public_key(key.get(), point.data(), point.size()) == 1);
    return key;
}

Key publicRsaKey(ByteView der) {
    const unsigned char* position = der.data();
    Key key(d2i_PublicKey(EVP_PKEY_RSA, nullptr, &position, static_cast<long>(der.size())));
    must(key != nullptr);
    return key;
}

/// SHA-256 in a context that is reused.
class Sha256 {
public:
    std::array<std::uint8_t, 32> operator()(std::initializer_list<ByteView> pieces) {
        std::array<std::uint8_t, 32> result{};
        bool isDone = EVP_DigestInit_ex2(context_.get(), digest_.get(), nullptr) == 1;
        for (const ByteView piece : pieces)
            isDone = isDone && EVP_DigestUpdate(context_.get(), piece.data(), piece.size()) == 1;
        must(isDone && EVP_DigestFinal_ex(context_.get(), result.data(), nullptr) == 1);
        return result;
    }

    [[nodiscard]] const EVP_MD* algorithm() const { return digest_.get(); }

private:
    Digest digest_{EVP_MD_fetch(nullptr, "SHA256", nullptr)};
    DigestContext context_{EVP_MD_CTX_new()};
};

} // namespace

void countAllocations() {
    must(CRYPTO_set_mem_functions(countedMalloc, countedRealloc, plainFree) == 1);
}

std::size_t allocationCount() {
    return opensslAllocations;
}

struct Sealing::State {
    Cipher cipher{EVP_CIPHER_fetch(nullptr, "AES-128-CBC", nullptr)};
    CipherContext cipherContext{EVP_CIPHER_CTX_new()};
    Mac hmac{EVP_MAC_fetch(nullptr, "HMAC", nullptr)};
    MacContext macContext{EVP_MAC_CTX_new(hmac.get())};

    State() {
        std::array<char, 7> digest{"SHA256"};
        std::array<OSSL_PARAM, 2> parameters{
            OSSL_PARAM_construct_utf8_string(OSSL_MAC_PARAM_DIGEST, digest.data(), 0),
            OSSL_PARAM_construct_end()};
        must(EVP_CipherInit_ex2(cipherContext.get(), cipher.get(), nullptr, nullptr, 1, nullptr) == 1 &&
             EVP_MAC_CTX_set_params(macContext.get(), parameters.data()) == 1);
    }

    std::array<std::uint8_t, 32> tag(ByteView macKey, ByteView additional, ByteView vector,
                                     ByteView ciphertext) {
        std::array<std::uint8_t, 32> result{};
        const auto al = getByteLengthAsOctetHexData(additional);
        bool isDone = EVP_MAC_init(macContext.get(), macKey.data(), macKey.size(), nullptr) == 1;
        for (const ByteView piece : {additional, vector, ciphertext, ByteView(al)})
            isDone = isDone && EVP_MAC_update(macContext.get(), piece.data(), piece.size()) == 1;
        std::size_t length = 0;
        must(isDone && EVP_MAC_final(macContext.get(), result.data(), &length, result.size()) == 1);
        return result;
    }

    std::size_t crypt(int direction, ByteView key, ByteView vector, ByteView input, std::uint8_t* output) {
        int body = 0;
        int tail = 0;
        EVP_CIPHER_CTX* context = cipherContext.get();
        must(EVP_CipherInit_ex2(context, nullptr, key.data(), vector.data(), direction, nullptr) == 1 &&
             EVP_CipherUpdate(context, output, &body, input.data(), static_cast<int>(input.size())) == 1 &&
             EVP_CipherFinal_ex(context, output + body, &tail) == 1);
        return static_cast<std::size_t>(body + tail);
    }
};

Sealing::Sealing() : state_(std::make_unique<State>()) {}
Sealing::~Sealing() = default;

std::string Sealing::seal(ByteView header, ByteView encryptedKey, ByteView contentKey, ByteView payload) {
    std::array<std::uint8_t, kBlock> vector{};
    must(RAND_bytes(vector.data(), kBlock) == 1);
    Bytes ciphertext(payload.size() / kBlock * kBlock + kBlock);
    state_->crypt(1, contentKey.subspan(kBlock), vector, payload, ciphertext.data());

    const std::size_t headerLength = base64URLLength(header.size());
    const std::array<ByteView, 3> middle{encryptedKey, vector, ciphertext};
    std::size_t length = headerLength + middle.size() + 1 + base64URLLength(kBlock);
    for (const ByteView part : middle)
        length += base64URLLength(part.size());
    std::string text(length, '.');
    char* next = text.data();
    writeBase64URL(header, next);
    next += headerLength + 1;
    for (const ByteView part : middle) {
        writeBase64URL(part, next);
        next += base64URLLength(part.size()) + 1;
    }
    const ByteView additional = asBytes(std::string_view(text).substr(0, headerLength));
    const auto tag = state_->tag(contentKey.first(kBlock), additional, vector, ciphertext);
    writeBase64URL(ByteView(tag).first(kBlock), next);
    return text;
}

Bytes Sealing::open(std::string_view compact, ByteView contentKey) {
    const ByteView additional = asBytes(nextPart(compact));
    nextPart(compact);
    const Bytes vector = decoded(nextPart(compact));
    const Bytes ciphertext = decoded(nextPart(compact));
    const Bytes tag = decoded(nextPart(compact));
    const auto expected = state_->tag(contentKey.first(kBlock), additional, vector, ciphertext);
    must(tag.size() == kBlock && CRYPTO_memcmp(expected.data(), tag.data(), kBlock) == 0);
    Bytes payload(ciphertext.size() + kBlock);
    payload.resize(state_->crypt(0, contentKey.subspan(kBlock), vector, ciphertext, payload.data()));
    return payload;
}

struct KeyEncryption::State {
    Key key;
    KeyContext context{EVP_PKEY_CTX_new_from_pkey(nullptr, key.get(), nullptr)};

    explicit State(ByteView publicKey) : key(publicRsaKey(publicKey)) {
        must(EVP_PKEY_encrypt_init(context.get()) == 1 &&
             EVP_PKEY_CTX_set_rsa_padding(context.get(), RSA_PKCS1_OAEP_PADDING) == 1 &&
             EVP_PKEY_CTX_set_rsa_oaep_md_name(context.get(), "SHA256", nullptr) == 1);
    }
};

KeyEncryption::KeyEncryption(ByteView publicKey) : state_(std::make_unique<State>(publicKey)) {}
KeyEncryption::~KeyEncryption() = default;

KeyEncryption::Result KeyEncryption::encryptFreshKey() {
    constexpr int kContentKey = 32;
    Result result{Bytes(kContentKey), Bytes(static_cast<std::size_t>(EVP_PKEY_get_size(state_->key.get())))};
    std::size_t length = result.encryptedKey.size();
    must(RAND_bytes(result.contentKey.data(), kContentKey) == 1 &&
         EVP_PKEY_encrypt(state_->context.get(), result.encryptedKey.data(), &length,
                          result.contentKey.data(), kContentKey) == 1);
    return result;
}

struct Verification::State {
    Sha256 sha256;
    Key group{groupTemplate()};
    bool isEc;
    Key key;
    KeyContext context{EVP_PKEY_CTX_new_from_pkey(nullptr, key.get(), nullptr)};

    State(Signature signature, ByteView publicKey)
        : isEc(signature == Signature::ES256),
          key(isEc ? publicEcKey(group.get(), publicKey) : publicRsaKey(publicKey)) {
        must(EVP_PKEY_verify_init(context.get()) == 1 &&
             EVP_PKEY_CTX_set_signature_md(context.get(), sha256.algorithm()) == 1);
        if (signature == Signature::PS256)
            must(EVP_PKEY_CTX_set_rsa_padding(context.get(), RSA_PKCS1_PSS_PADDING) == 1 &&
                 EVP_PKEY_CTX_set_rsa_pss_saltlen(context.get(), RSA_PSS_SALTLEN_DIGEST) == 1);
    }
};

namespace {

/// Raw r and s as a DER SEQUENCE.
Bytes derSignature(ByteView raw) {
    constexpr int kHalf = 32;
    const EcSignature signature(ECDSA_SIG_new());
    must(raw.size() == 2 * kHalf && ECDSA_SIG_set0(signature.get(), BN_bin2bn(raw.data(), kHalf, nullptr),
                                                   BN_bin2bn(raw.data() + kHalf, kHalf, nullptr)) == 1);
    Bytes der(static_cast<std::size_t>(i2d_ECDSA_SIG(signature.get(), nullptr)));
    unsigned char* next = der.data();
    must(i2d_ECDSA_SIG(signature.get(), &next) > 0);
    return der;
}

} // namespace

Verification::Verification(Signature signature, ByteView publicKey)
    : state_(std::make_unique<State>(signature, publicKey)) {}
Verification::~Verification() = default;

Bytes Verification::verify(std::string_view compact) {
    const std::string_view signingInput = compact.substr(0, compact.rfind('.'));
    nextPart(compact);
    Bytes payload = decoded(nextPart(compact));
    Bytes signature = decoded(nextPart(compact));
    if (state_->isEc) signature = derSignature(signature);
    const auto digest = state_->sha256({asBytes(signingInput)});
    must(EVP_PKEY_verify(state_->context.get(), signature.data(), signature.size(), digest.data(),
                         digest.size()) == 1);
    return payload;
}

struct Agreement::State {
    Sha256 sha256;
    Key group{groupTemplate()};
    KeyContext import{EVP_PKEY_CTX_new_from_name(nullptr, "EC", nullptr)};

    State() { must(EVP_PKEY_fromdata_init(import.get()) == 1); }

    static std::array<std::uint8_t, kPoint> pointOf(const KeyTexts& key) {
        std::array<std::uint8_t, kPoint> point{POINT_CONVERSION_UNCOMPRESSED};
        const Bytes x = decoded(key.x);
        const Bytes y = decoded(key.y);
        std::copy(x.begin(), x.end(), point.begin() + 1);
        std::copy(y.begin(), y.end(), point.begin() + 1 + kCoordinate);
        return point;
    }

    Key importPrivate(const KeyTexts& key) {
        std::array<char, 11> groupName{"prime256v1"};
        auto point = pointOf(key);
        // OpenSSL takes the number in the machine's own order.
        Bytes number = decoded(key.d);
        if constexpr (std::endian::native == std::endian::little) std::reverse(number.begin(), number.end());
        std::array<OSSL_PARAM, 4> parameters{
            OSSL_PARAM_construct_utf8_string(OSSL_PKEY_PARAM_GROUP_NAME, groupName.data(), 0),
            OSSL_PARAM_construct_octet_string(OSSL_PKEY_PARAM_PUB_KEY, point.data(), point.size()),
            OSSL_PARAM_construct_BN(OSSL_PKEY_PARAM_PRIV_KEY, number.data(), number.size()),
            OSSL_PARAM_construct_end()};
        EVP_PKEY* imported = nullptr;
        must(EVP_PKEY_fromdata(import.get(), &imported, EVP_PKEY_KEYPAIR, parameters.data()) == 1);
        return Key(imported);
    }
};

Agreement::Agreement() : state_(std::make_unique<State>()) {}
Agreement::~Agreement() = default;

Bytes Agreement::agree(const KeyTexts& privateKey, const KeyTexts& publicKey, ByteView otherInfo) {
    const Key peer = publicEcKey(state_->group.get(), State::pointOf(publicKey));
    const Key own = state_->importPrivate(privateKey);
    const KeyContext context(EVP_PKEY_CTX_new_from_pkey(nullptr, own.get(), nullptr));
    std::array<std::uint8_t, kCoordinate> shared{};
    std::size_t length = shared.size();
    // The point was checked when it was set.
    constexpr int kNoSecondCheck = 0;
    must(EVP_PKEY_derive_init(context.get()) == 1 &&
         EVP_PKEY_derive_set_peer_ex(context.get(), peer.get(), kNoSecondCheck) == 1 &&
         EVP_PKEY_derive(context.get(), shared.data(), &length) == 1);
    constexpr std::array<std::uint8_t, 4> kFirstRound{0, 0, 0, 1};
    return toBytes(state_->sha256({kFirstRound, shared, otherInfo}));
}

struct KeyGeneration::State {
    Key group{groupTemplate()};
    KeyContext context{EVP_PKEY_CTX_new_from_pkey(nullptr, group.get(), nullptr)};

    State() { must(EVP_PKEY_keygen_init(context.get()) == 1); }
};

KeyGeneration::KeyGeneration() : state_(std::make_unique<State>()) {}
KeyGeneration::~KeyGeneration() = default;

KeyTexts KeyGeneration::generate() {
    EVP_PKEY* generated = nullptr;
    must(EVP_PKEY_generate(state_->context.get(), &generated) == 1);
    const Key key(generated);
    std::array<std::uint8_t, kPoint> point{};
    std::array<std::uint8_t, kCoordinate> secret{};
    std::size_t length = 0;
    BIGNUM* number = nullptr;
    must(EVP_PKEY_get_octet_string_param(key.get(), OSSL_PKEY_PARAM_PUB_KEY, point.data(), point.size(),
                                         &length) == 1 &&
         EVP_PKEY_get_bn_param(key.get(), OSSL_PKEY_PARAM_PRIV_KEY, &number) == 1);
    const Number owned(number);
    must(BN_bn2binpad(owned.get(), secret.data(), kCoordinate) == kCoordinate);
    return {base64URLEncodedString(ByteView(point).subspan(1, kCoordinate)),
            base64URLEncodedString(ByteView(point).subspan(1 + kCoordinate)), base64URLEncodedString(secret)};
}

} // namespace korvane::bench::bare
