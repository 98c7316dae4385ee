#include "Crypt/Algorithms.h"

#include "Crypt/JOSEError.h"

#include <array>
#include <span>

namespace korvane {

namespace {

struct HashRow {
    Hash hash;
    std::size_t bitLength;
    CCHmacAlgorithm ccHmacAlgorithm;
    SecretBytes (*digestFunc)(ByteView);
};

template <std::size_t Length, void (*Digest)(ByteView, std::span<std::uint8_t, Length>)>
SecretBytes digestBy(ByteView data) {
    SecretBytes octets(Length);
    Digest(data, std::span(octets).template first<Length>());
    return octets;
}

constexpr std::array<HashRow, 3> kHashes{{
    {Hash::SHA256, 256, CCHmacAlgorithm::kCCHmacAlgSHA256, digestBy<32, CC_SHA256>},
    {Hash::SHA384, 384, CCHmacAlgorithm::kCCHmacAlgSHA384, digestBy<48, CC_SHA384>},
    {Hash::SHA512, 512, CCHmacAlgorithm::kCCHmacAlgSHA512, digestBy<64, CC_SHA512>},
}};
static_assert(hasRowsOfAllCases(kHashes, &HashRow::hash));

const HashRow& rowOf(Hash hash) {
    return kHashes[static_cast<std::size_t>(hash)];
}

struct HMACRow {
    HMACAlgorithm algorithm;
    std::size_t outputLength;
    CCHmacAlgorithm ccAlgorithm;
};

constexpr std::array<HMACRow, 2> kHMACs{{
    {HMACAlgorithm::SHA512, 64, CCHmacAlgorithm::kCCHmacAlgSHA512},
    {HMACAlgorithm::SHA256, 32, CCHmacAlgorithm::kCCHmacAlgSHA256},
}};
static_assert(hasRowsOfAllCases(kHMACs, &HMACRow::algorithm));

const HMACRow& rowOf(HMACAlgorithm algorithm) {
    return kHMACs[static_cast<std::size_t>(algorithm)];
}

using KM = KeyManagementAlgorithm;
using enum KeyManagementFamily;
using enum SecKeyAlgorithm;

struct KeyManagementRow {
    KM algorithm;
    KeyManagementFamily family;
    std::optional<SecKeyAlgorithm> secKeyAlgorithm;
    /// Bytes that RSA padding takes at least.
    std::ptrdiff_t paddingLength;
    std::optional<std::size_t> keyBitSize;
    std::optional<KM> keyWrapAlgorithm;
};

constexpr auto kNone = std::nullopt;

constexpr std::array<KeyManagementRow, 11> kKeyManagement{{
    {KM::RSA1_5, RSA, kSecKeyAlgorithmRSAEncryptionPKCS1, 11, kNone, kNone},
    {KM::RSAOAEP, RSA, kSecKeyAlgorithmRSAEncryptionOAEPSHA1, 42, kNone, kNone},
    {KM::RSAOAEP256, RSA, kSecKeyAlgorithmRSAEncryptionOAEPSHA256, 66, kNone, kNone},
    {KM::A128KW, AES, kNone, 0, 128, kNone},
    {KM::A192KW, AES, kNone, 0, 192, kNone},
    {KM::A256KW, AES, kNone, 0, 256, kNone},
    {KM::direct, direct, kNone, 0, kNone, kNone},
    {KM::ECDH_ES, EC, kNone, 0, kNone, kNone},
    {KM::ECDH_ES_A128KW, EC, kNone, 0, kNone, KM::A128KW},
    {KM::ECDH_ES_A192KW, EC, kNone, 0, kNone, KM::A192KW},
    {KM::ECDH_ES_A256KW, EC, kNone, 0, kNone, KM::A256KW},
}};
static_assert(hasRowsOfAllCases(kKeyManagement, &KeyManagementRow::algorithm));

const KeyManagementRow& rowOf(KM algorithm) {
    return kKeyManagement[static_cast<std::size_t>(algorithm)];
}

struct ContentEncryptionRow {
    ContentEncryptionAlgorithm algorithm;
    std::size_t keyLength;
    std::size_t aesKeyLength;
    HMACAlgorithm hmacAlgorithm;
    std::size_t tagLength;
};

constexpr std::array<ContentEncryptionRow, 2> kContentEncryption{{
    {ContentEncryptionAlgorithm::A256CBCHS512, 64, 32, HMACAlgorithm::SHA512, 32},
    {ContentEncryptionAlgorithm::A128CBCHS256, 32, 16, HMACAlgorithm::SHA256, 16},
}};
static_assert(hasRowsOfAllCases(kContentEncryption, &ContentEncryptionRow::algorithm));

const ContentEncryptionRow& rowOf(ContentEncryptionAlgorithm algorithm) {
    return kContentEncryption[static_cast<std::size_t>(algorithm)];
}

struct SignatureRow {
    SignatureAlgorithm algorithm;
    SecKeyAlgorithm secKeyAlgorithm;
    std::optional<ECCurveType> curveType;
};

using SA = SignatureAlgorithm;

constexpr std::array<SignatureRow, 9> kSignatures{{
    {SA::RS256, kSecKeyAlgorithmRSASignatureMessagePKCS1v15SHA256, kNone},
    {SA::RS384, kSecKeyAlgorithmRSASignatureMessagePKCS1v15SHA384, kNone},
    {SA::RS512, kSecKeyAlgorithmRSASignatureMessagePKCS1v15SHA512, kNone},
    {SA::PS256, kSecKeyAlgorithmRSASignatureMessagePSSSHA256, kNone},
    {SA::PS384, kSecKeyAlgorithmRSASignatureMessagePSSSHA384, kNone},
    {SA::PS512, kSecKeyAlgorithmRSASignatureMessagePSSSHA512, kNone},
    {SA::ES256, kSecKeyAlgorithmECDSASignatureMessageX962SHA256, ECCurveType::P256},
    {SA::ES384, kSecKeyAlgorithmECDSASignatureMessageX962SHA384, ECCurveType::P384},
    {SA::ES512, kSecKeyAlgorithmECDSASignatureMessageX962SHA512, ECCurveType::P521},
}};
static_assert(hasRowsOfAllCases(kSignatures, &SignatureRow::algorithm));

const SignatureRow& rowOf(SA algorithm) {
    return kSignatures[static_cast<std::size_t>(algorithm)];
}

} // namespace

std::size_t bitLength(Hash hash) {
    return rowOf(hash).bitLength;
}

std::size_t digestByteLength(Hash hash) {
    return bitLength(hash) / 8;
}

CCHmacAlgorithm ccHmacAlgorithm(Hash hash) {
    return rowOf(hash).ccHmacAlgorithm;
}

SecretBytes digest(Hash hash, ByteView data) {
    return rowOf(hash).digestFunc(data);
}

Bytes mac(Hash hash, ByteView key, ByteView value) {
    std::array<std::uint8_t, kMaxDigestLength> output{};
    const std::size_t length = CCHmac(ccHmacAlgorithm(hash), key, {value}, output);
    return {output.begin(), output.begin() + static_cast<std::ptrdiff_t>(length)};
}

std::size_t outputLength(HMACAlgorithm algorithm) {
    return rowOf(algorithm).outputLength;
}

CCHmacAlgorithm ccAlgorithm(HMACAlgorithm algorithm) {
    return rowOf(algorithm).ccAlgorithm;
}

KeyManagementFamily family(KM algorithm) {
    return rowOf(algorithm).family;
}

std::optional<SecKeyAlgorithm> secKeyAlgorithm(KM algorithm) {
    return rowOf(algorithm).secKeyAlgorithm;
}

std::optional<std::size_t> keyBitSize(KM algorithm) {
    return rowOf(algorithm).keyBitSize;
}

std::optional<KM> keyWrapAlgorithm(KM algorithm) {
    return rowOf(algorithm).keyWrapAlgorithm;
}

bool shouldContainEphemeralPublicKey(KM algorithm) {
    return family(algorithm) == EC;
}

std::optional<std::ptrdiff_t> maxMessageLength(KM algorithm, const SecKey& publicKey) {
    if (family(algorithm) != RSA) return std::nullopt;
    return static_cast<std::ptrdiff_t>(SecKeyGetBlockSize(publicKey)) - rowOf(algorithm).paddingLength;
}

std::optional<bool> isPlainTextLengthSatisfied(KM algorithm, ByteView data, const SecKey& publicKey) {
    const auto longest = maxMessageLength(algorithm, publicKey);
    if (!longest) return std::nullopt;
    return static_cast<std::ptrdiff_t>(data.size()) <= *longest;
}

std::optional<bool> isCipherTextLenghtSatisfied(KM algorithm, ByteView data, const SecKey& privateKey) {
    if (family(algorithm) != RSA) return std::nullopt;
    return data.size() == SecKeyGetBlockSize(privateKey);
}

std::optional<bool> checkAESKeyLength(KM algorithm, ByteView key) {
    const auto bits = keyBitSize(algorithm);
    if (!bits) return std::nullopt;
    return key.size() * 8 == *bits;
}

std::size_t keyBitSize(ContentEncryptionAlgorithm algorithm) {
    return 8 * rowOf(algorithm).keyLength;
}

HMACAlgorithm hmacAlgorithm(ContentEncryptionAlgorithm algorithm) {
    return rowOf(algorithm).hmacAlgorithm;
}

std::size_t tagLength(ContentEncryptionAlgorithm algorithm) {
    return rowOf(algorithm).tagLength;
}

std::size_t initializationVectorLength(ContentEncryptionAlgorithm) {
    return kCCBlockSizeAES128;
}

CCAlgorithm ccAlgorithm(ContentEncryptionAlgorithm) {
    return CCAlgorithm::kCCAlgorithmAES;
}

bool checkKeyLength(ContentEncryptionAlgorithm algorithm, ByteView key) {
    return key.size() == rowOf(algorithm).keyLength;
}

bool checkAESKeyLength(ContentEncryptionAlgorithm algorithm, ByteView key) {
    return key.size() == rowOf(algorithm).aesKeyLength;
}

ContentKeys retrieveKeys(ContentEncryptionAlgorithm algorithm, ByteView inputKey) {
    if (!checkKeyLength(algorithm, inputKey)) throw JWEError(JWEErrorCase::keyLengthNotSatisfied);
    const std::size_t hmacKeyLength = inputKey.size() - rowOf(algorithm).aesKeyLength;
    return {inputKey.first(hmacKeyLength), inputKey.subspan(hmacKeyLength)};
}

ByteView authenticationTag(ContentEncryptionAlgorithm algorithm, ByteView hmac) {
    return hmac.first(tagLength(algorithm));
}

std::optional<SecKeyAlgorithm> rsaSecKeyAlgorithm(SA algorithm) {
    if (curveType(algorithm)) return std::nullopt;
    return rowOf(algorithm).secKeyAlgorithm;
}

std::optional<SecKeyAlgorithm> ecSecKeyAlgorithm(SA algorithm) {
    if (!curveType(algorithm)) return std::nullopt;
    return rowOf(algorithm).secKeyAlgorithm;
}

std::optional<ECCurveType> curveType(SA algorithm) {
    return rowOf(algorithm).curveType;
}

} // namespace korvane
