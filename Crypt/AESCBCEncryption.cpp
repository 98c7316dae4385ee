#include "Crypt/AESCBCEncryption.h"

#include "Crypt/AES.h"
#include "Crypt/DataExtensions.h"
#include "Crypt/JOSEError.h"
#include "Crypt/SecureRandom.h"

namespace korvane {

namespace {

/// An untruncated HMAC.
using Mac = std::array<std::uint8_t, kMaxDigestLength>;

/// RFC 7518 section 5.2.2.1 steps 4 and 5: the HMAC of AAD, vector, ciphertext and AL.
ByteView computeTag(ContentEncryptionAlgorithm algorithm, ByteView hmacKey,
                    ByteView additionalAuthenticatedData, ByteView initializationVector, ByteView ciphertext,
                    Mac& mac) {
    const auto al = getByteLengthAsOctetHexData(additionalAuthenticatedData);
    CCHmac(ccAlgorithm(hmacAlgorithm(algorithm)), hmacKey,
           {additionalAuthenticatedData, initializationVector, ciphertext, al}, mac);
    return authenticationTag(algorithm, mac);
}

} // namespace

ContentEncryptionContext AESCBCEncryption::encrypt(ByteView headerData, const Payload& payload) const {
    return encrypt(payload.data(), AdditionalAuthenticatedData(headerData).view());
}

ContentEncryptionContext AESCBCEncryption::encrypt(ByteView plaintext,
                                                   ByteView additionalAuthenticatedData) const {
    ContentEncryptionContext result;
    result.initializationVector.resize(initializationVectorLength(contentEncryptionAlgorithm_));
    SecureRandom::fill(result.initializationVector);
    const ContentKeys keys = retrieveKeys(contentEncryptionAlgorithm_, contentEncryptionKey());
    result.ciphertext =
        AES::encrypt(plaintext, keys.encryptionKey, contentEncryptionAlgorithm_, result.initializationVector);
    Mac mac;
    result.authenticationTag =
        toBytes(computeTag(contentEncryptionAlgorithm_, keys.hmacKey, additionalAuthenticatedData,
                           result.initializationVector, result.ciphertext, mac));
    return result;
}

Bytes AESCBCEncryption::decrypt(Bytes ciphertext, ByteView initializationVector,
                                ByteView additionalAuthenticatedData, ByteView authenticationTag) const {
    const ContentKeys keys = retrieveKeys(contentEncryptionAlgorithm_, contentEncryptionKey());
    Mac mac;
    const ByteView expected = computeTag(contentEncryptionAlgorithm_, keys.hmacKey,
                                         additionalAuthenticatedData, initializationVector, ciphertext, mac);
    if (!isEqualInConstantTime(expected, authenticationTag))
        throw JWEError(JWEErrorCase::hmacNotAuthenticated);
    return AES::decrypt(std::move(ciphertext), keys.encryptionKey, contentEncryptionAlgorithm_,
                        initializationVector);
}

Bytes AESCBCEncryption::decrypt(ContentDecryptionContext decryptionContext) const {
    return decrypt(std::move(decryptionContext.ciphertext), decryptionContext.initializationVector,
                   decryptionContext.additionalAuthenticatedData, decryptionContext.authenticationTag);
}

AdditionalAuthenticatedData::AdditionalAuthenticatedData(ByteView headerData) {
    encode(headerData);
}

AdditionalAuthenticatedData::AdditionalAuthenticatedData(const JOSEHeader& header)
    : view_(asBytes(header.keptText())) {
    if (view_.empty()) encode(header.data());
}

void AdditionalAuthenticatedData::encode(ByteView headerData) {
    const std::size_t length = base64URLLength(headerData.size());
    if (length > usual_.size()) long_.resize(length);
    char* const text = long_.empty() ? usual_.data() : long_.data();
    writeBase64URL(headerData, text);
    view_ = {reinterpret_cast<const std::uint8_t*>(text), length};
}

} // namespace korvane
