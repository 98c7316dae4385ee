// Compact JWEs: reading, writing back, opening under a key of each family, and sealing anew
// under the header's rows.

#include "Crypt/JWE.h"
#include "Crypt/JOSEError.h"
#include "fuzz/support/Fuzz.h"
#include "fuzz/support/Keys.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace korvane::fuzzing {

namespace {

using enum JOSEErrorCase;

struct Row {
    KeyManagementAlgorithm algorithm;
    ContentEncryptionAlgorithm encryption;
};

constexpr auto kSmall = ContentEncryptionAlgorithm::A128CBCHS256;
constexpr auto kLarge = ContentEncryptionAlgorithm::A256CBCHS512;

/// One row of each family, and the second length of key.
constexpr std::array<Row, 6> kRows{{{KeyManagementAlgorithm::direct, kSmall},
                                    {KeyManagementAlgorithm::direct, kLarge},
                                    {KeyManagementAlgorithm::A128KW, kSmall},
                                    {KeyManagementAlgorithm::RSAOAEP256, kSmall},
                                    {KeyManagementAlgorithm::ECDH_ES, kLarge},
                                    {KeyManagementAlgorithm::ECDH_ES_A128KW, kSmall}}};

enum class Side { sealing, opening };

AnyKey keyFor(Row row, Side side) {
    switch (family(row.algorithm)) {
    case KeyManagementFamily::RSA: return side == Side::sealing ? keys().rsaPublic : keys().rsaPrivate;
    case KeyManagementFamily::AES: return Keys::shared(keyBitSize(row.algorithm).value() / 8);
    case KeyManagementFamily::direct: return Keys::shared(keyBitSize(row.encryption) / 8);
    case KeyManagementFamily::EC:
        if (side == Side::sealing) return keys().ecPublic;
        return keys().ec;
    }
    fatalError("A row without a family.");
}

/// Runs an operation that may fail in the given ways only.
template <class Operation>
auto orCase(std::initializer_list<JOSEErrorCase> allowed, Operation operation) {
    return attempt<JOSEError>([&] {
        try {
            return operation();
        } catch (const JOSEError& error) {
            require(std::find(allowed.begin(), allowed.end(), error.kind()) != allowed.end(), error.what());
            throw;
        }
    });
}

std::optional<Payload> open(const JWE& jwe, const AnyKey& key) {
    return orCase({decryptingFailed, decompressionFailed, compressionAlgorithmNotSupported},
                  [&] { return jwe.decrypt(key); });
}

std::optional<Payload> openText(std::string_view compact, Row row) {
    return open(JWE(compact), keyFor(row, Side::opening));
}

void checkRewriting(const JWE& jwe, std::string_view compact) {
    const std::string written = jwe.compactSerializedString();
    require(!isCanonical(compact) || written == compact, "A canonical JWE changes when it is written back.");
    const JWE again(written);
    require(again.header() == jwe.header() && again.ciphertext() == jwe.ciphertext() &&
                again.encryptedKey() == jwe.encryptedKey() &&
                again.initializationVector() == jwe.initializationVector() &&
                again.authenticationTag() == jwe.authenticationTag(),
            "A JWE differs from itself after writing and reading.");
}

void checkOpening(const JWE& jwe) {
    for (const Row& row : kRows) {
        const AnyKey key = keyFor(row, Side::opening);
        const auto decrypter = Decrypter::make(row.algorithm, row.encryption, key).value();
        const auto opened = orCase({decryptingFailed, decompressionFailed, compressionAlgorithmNotSupported},
                                   [&] { return jwe.decrypt(decrypter); });
        const bool isHeaderOfRow =
            jwe.header().algorithm() == row.algorithm && jwe.header().encryptionAlgorithm() == row.encryption;
        require(isHeaderOfRow || !opened, "A JWE opens under algorithms that its header does not name.");
        if (isHeaderOfRow) require(open(jwe, key) == opened, "The two ways to open a JWE differ.");
    }
}

/// A part after the header with one bit turned must not open. The second part of `ECDH_ES` is not looked at.
void checkTampering(const JWE& sealed, Row row, std::size_t seed) {
    std::array<Bytes, 5> parts{sealed.header().data(), sealed.encryptedKey(), sealed.initializationVector(),
                               sealed.ciphertext(), sealed.authenticationTag()};
    Bytes& part = parts[1 + seed % 4];
    if (part.empty()) return;
    part = withTurnedBit(std::move(part), seed);
    const std::array<DataConvertible, 5> components{parts[0], parts[1], parts[2], parts[3], parts[4]};
    require(!openText(joinedBase64URL(components), row), "A changed JWE opens.");
}

void checkSealing(const JWEHeader& header, const Payload& payload, std::size_t seed) {
    const auto algorithm = header.algorithm();
    const auto encryption = header.encryptionAlgorithm();
    if (!algorithm || !encryption) return;
    const Row row{*algorithm, *encryption};
    const auto encrypter = Encrypter::make(row.algorithm, row.encryption, keyFor(row, Side::sealing)).value();
    const auto sealed = orCase({encryptingFailed, compressionFailed, compressionAlgorithmNotSupported},
                               [&] { return JWE(header, payload, encrypter); });
    if (!sealed) return;
    require(openText(sealed->compactSerializedString(), row) == payload,
            "A sealed payload does not open to itself.");
    checkTampering(*sealed, row, seed);
}

} // namespace

void run(ByteView input) {
    const std::string compact = compactText(input);
    const auto jwe = attempt<JOSEError>([&] { return JWE(asBytes(compact)); });
    if (!jwe) return;
    checkRewriting(*jwe, compact);
    checkOpening(*jwe);
    checkSealing(jwe->header(), Payload(jwe->ciphertext()), input.size());
}

} // namespace korvane::fuzzing
