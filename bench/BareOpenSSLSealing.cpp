#include "bench/BareOpenSSLSealing.h"

#include "Crypt/DataExtensions.h"
#include "Platform/Security/OpenSSLHandles.h"
#include "bench/BareBase64.h"
#include "bench/BareOpenSSL.h"

#include <openssl/crypto.h>
#include <openssl/rand.h>

#include <algorithm>
#include <array>

namespace korvane::bench::bare {

namespace {

constexpr std::size_t kBlock = 16;
constexpr std::size_t kBlockText = base64URLLength(kBlock);
constexpr std::size_t kDigestBlock = 64;

} // namespace

struct Sealing::State {
    openssl::Cipher cipher{EVP_CIPHER_fetch(nullptr, "AES-128-CBC", nullptr)};
    openssl::CipherContext encryption{EVP_CIPHER_CTX_new()};
    openssl::CipherContext decryption{EVP_CIPHER_CTX_new()};
    Sha256 sha256;
    std::array<std::uint8_t, kDigestBlock> innerKey{};
    std::array<std::uint8_t, kDigestBlock> outerKey{};
    Bytes octets;
    std::string text;

    State() {
        // Without padding: a cipher that pads holds a block back, and gives it in a call of its own.
        unsigned padding = 0;
        const std::array<OSSL_PARAM, 2> parameters{
            OSSL_PARAM_construct_uint(OSSL_CIPHER_PARAM_PADDING, &padding), OSSL_PARAM_construct_end()};
        must(EVP_CipherInit_ex2(encryption.get(), cipher.get(), nullptr, nullptr, 1, parameters.data()) ==
                 1 &&
             EVP_CipherInit_ex2(decryption.get(), cipher.get(), nullptr, nullptr, 0, parameters.data()) == 1);
    }

    void setKey(EVP_CIPHER_CTX* context, ByteView key) {
        for (std::size_t index = 0; index < kDigestBlock; ++index) {
            const unsigned octet = index < kBlock ? key[index] : 0U;
            innerKey[index] = static_cast<std::uint8_t>(octet ^ 0x36U);
            outerKey[index] = static_cast<std::uint8_t>(octet ^ 0x5CU);
        }
        must(EVP_CipherInit_ex2(context, nullptr, key.subspan(kBlock).data(), nullptr, -1, nullptr) == 1);
    }

    // Of two digests: OpenSSL's own HMAC copies contexts, and allocates them, for every message.
    std::array<std::uint8_t, 32> tag(std::string_view header, ByteView vector, ByteView ciphertext) {
        const auto al = getByteLengthAsOctetHexData(asBytes(header));
        return sha256({outerKey, sha256({innerKey, asBytes(header), vector, ciphertext, al})});
    }

    static void crypt(EVP_CIPHER_CTX* context, ByteView input, std::uint8_t* output) {
        int moved = 0;
        must(EVP_CipherUpdate(context, output, &moved, input.data(), static_cast<int>(input.size())) == 1 &&
             static_cast<std::size_t>(moved) == input.size());
    }

    std::size_t encrypt(ByteView vector, ByteView payload, std::uint8_t* output) {
        const std::size_t tail = payload.size() % kBlock;
        const std::size_t whole = payload.size() - tail;
        std::array<std::uint8_t, kBlock> last;
        last.fill(static_cast<std::uint8_t>(kBlock - tail));
        std::copy_n(payload.begin() + static_cast<std::ptrdiff_t>(whole), tail, last.begin());
        must(EVP_CipherInit_ex2(encryption.get(), nullptr, nullptr, vector.data(), -1, nullptr) == 1);
        crypt(encryption.get(), payload.first(whole), output);
        crypt(encryption.get(), last, output + whole);
        return whole + kBlock;
    }

    /// In the place of the ciphertext.
    std::size_t decrypt(ByteView vector, std::span<std::uint8_t> ciphertext) {
        must(EVP_CipherInit_ex2(decryption.get(), nullptr, nullptr, vector.data(), -1, nullptr) == 1);
        crypt(decryption.get(), ciphertext, ciphertext.data());
        const std::size_t padding = ciphertext.back();
        must(padding >= 1 && padding <= kBlock &&
             std::all_of(ciphertext.end() - static_cast<std::ptrdiff_t>(padding), ciphertext.end(),
                         [padding](std::uint8_t octet) { return octet == padding; }));
        return ciphertext.size() - padding;
    }
};

Sealing::Sealing() : state_(std::make_unique<State>()) {}
Sealing::Sealing(ByteView contentKey) : Sealing() {
    setSealingKey(contentKey);
    setOpeningKey(contentKey);
}
Sealing::~Sealing() = default;

void Sealing::setSealingKey(ByteView contentKey) {
    state_->setKey(state_->encryption.get(), contentKey);
}

void Sealing::setOpeningKey(ByteView contentKey) {
    state_->setKey(state_->decryption.get(), contentKey);
}

void Sealing::forget() {
    constexpr std::array<std::uint8_t, 2 * kBlock> kZeros{};
    setOpeningKey(kZeros);
    OPENSSL_cleanse(state_->octets.data(), state_->octets.size());
}

std::string_view Sealing::seal(std::string_view header, ByteView encryptedKey, ByteView payload) {
    State& state = *state_;
    std::array<std::uint8_t, kBlock> vector{};
    must(RAND_bytes(vector.data(), kBlock) == 1);
    if (state.octets.size() < payload.size() + kBlock) state.octets.resize(payload.size() + kBlock);
    const std::size_t length = state.encrypt(vector, payload, state.octets.data());
    const ByteView ciphertext = ByteView(state.octets).first(length);
    const auto tag = state.tag(header, vector, ciphertext);

    const std::size_t most =
        header.size() + base64URLLength(encryptedKey.size()) + base64URLLength(length) + 2 * kBlockText + 4;
    if (state.text.size() < most) state.text.resize(most);
    char* next = std::copy(header.begin(), header.end(), state.text.data());
    for (const ByteView part : {encryptedKey, ByteView(vector), ciphertext, ByteView(tag).first(kBlock)}) {
        *next++ = '.';
        next = encodeBase64URL(part, next);
    }
    return std::string_view(state.text).substr(0, static_cast<std::size_t>(next - state.text.data()));
}

ByteView Sealing::open(std::string_view header, std::string_view compact) {
    State& state = *state_;
    const std::size_t vectorAt = header.size() + 2;
    const std::size_t ciphertextAt = vectorAt + kBlockText + 1;
    const std::size_t tagAt = compact.size() - kBlockText;
    must(compact.starts_with(header) && compact.substr(header.size(), 2) == ".." &&
         compact[ciphertextAt - 1] == '.' && compact[tagAt - 1] == '.');
    std::array<std::uint8_t, kBlock> vector{};
    std::array<std::uint8_t, kBlock> received{};
    if (state.octets.size() < compact.size()) state.octets.resize(compact.size());
    std::uint8_t* const octets = state.octets.data();
    decodeBase64URL(compact.substr(vectorAt, kBlockText), vector.data());
    decodeBase64URL(compact.substr(tagAt), received.data());
    std::uint8_t* const end = decodeBase64URL(compact.substr(ciphertextAt, tagAt - 1 - ciphertextAt), octets);
    const std::span<std::uint8_t> ciphertext(octets, static_cast<std::size_t>(end - octets));
    const auto expected = state.tag(header, vector, ciphertext);
    must(CRYPTO_memcmp(expected.data(), received.data(), kBlock) == 0);
    return ciphertext.first(state.decrypt(vector, ciphertext));
}

} // namespace korvane::bench::bare
