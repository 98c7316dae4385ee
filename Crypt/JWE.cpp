#include "Crypt/JWE.h"

#include "Crypt/JOSEError.h"

#include <algorithm>

namespace korvane {

namespace {

using enum JOSEErrorCase;
namespace Index = ComponentCompactSerializedIndex;

JOSEError decryptingError(std::string_view text) {
    return JOSEError(decryptingFailed, Description{std::string(text)});
}

/// Runs a sealing or opening. A `JOSEError` of one of the cases in `passed` goes on as it is, any other
/// failure becomes `wrapped` with its own words.
template <class Operation>
auto withMappedErrors(std::initializer_list<JOSEErrorCase> passed, JOSEErrorCase wrapped,
                      Operation operation) {
    try {
        return operation();
    } catch (const JOSEError& error) {
        if (std::find(passed.begin(), passed.end(), error.kind()) != passed.end()) throw;
        throw JOSEError(wrapped, Description{error.localizedDescription()});
    } catch (const Failure& error) {
        throw JOSEError(wrapped, Description{error.localizedDescription()});
    }
}

} // namespace

JWE::JWE(JWEHeader header, const Payload& payload, const Encrypter& encrypter) : header_(std::move(header)) {
    withMappedErrors({compressionFailed, compressionAlgorithmNotSupported}, encryptingFailed, [&] {
        const auto compression = header_.compressionAlgorithm();
        // Without compression the payload goes in as it is, not as a copy.
        Encrypter::EncryptionContext sealed =
            compression == CompressionAlgorithm::NONE
                ? encrypter.encrypt(header_, payload)
                : encrypter.encrypt(header_, payload.compressed(compression));
        encryptedKey_ = std::move(sealed.encryptedKey);
        initializationVector_ = std::move(sealed.initializationVector);
        ciphertext_ = std::move(sealed.ciphertext);
        authenticationTag_ = std::move(sealed.authenticationTag);
    });
}

JWE::JWE(std::string_view compactSerialization)
    : JWE(JOSEDeserializer().deserialize<JWE>(compactSerialization)) {}

JWE::JWE(ByteView compactSerialization) : JWE(JOSEDeserializer().deserialize<JWE>(compactSerialization)) {}

JWE::JWE(const CompactDeserializer& deserializer)
    : header_(deserializer.deserializeHeader<JWEHeader>()),
      encryptedKey_(deserializer.deserializeBytes(Index::jweEncryptedKeyIndex)),
      initializationVector_(deserializer.deserializeBytes(Index::jweInitializationVectorIndex)),
      ciphertext_(deserializer.deserializeBytes(Index::jweCiphertextIndex)),
      authenticationTag_(deserializer.deserializeBytes(Index::jweAuthenticationTagIndex)) {}

void JWE::requireAlgorithms(const Decrypter& decrypter) const {
    if (header_.keyManagementAlgorithm() != decrypter.keyManagementAlgorithm() ||
        header_.contentEncryptionAlgorithm() != decrypter.contentEncryptionAlgorithm())
        throw decryptingError("JWE header algorithms do not match encrypter algorithms.");
}

Payload JWE::decrypt(const Decrypter& decrypter) const& {
    requireAlgorithms(decrypter);
    return open(decrypter, ciphertext_);
}

Payload JWE::decrypt(const Decrypter& decrypter) && {
    requireAlgorithms(decrypter);
    return open(decrypter, std::move(ciphertext_));
}

Payload JWE::decrypt(const AnyKey& key) const {
    const auto algorithm = header_.algorithm();
    const auto encryption = header_.encryptionAlgorithm();
    if (!algorithm || !encryption) throw decryptingError("Invalid header parameter.");
    const auto decrypter = Decrypter::make(*algorithm, *encryption, key);
    if (!decrypter) throw decryptingError("Wrong key type.");
    return open(*decrypter, ciphertext_);
}

void JWE::serialize(CompactSerializer& serializer) const {
    serializer.serialize(header_);
    serializer.serialize(encryptedKey_);
    serializer.serialize(initializationVector_);
    serializer.serialize(ciphertext_);
    serializer.serialize(authenticationTag_);
}

Payload JWE::open(const Decrypter& decrypter, Bytes ciphertext) const {
    return withMappedErrors({decompressionFailed, compressionAlgorithmNotSupported}, decryptingFailed, [&] {
        const auto compression = header_.compressionAlgorithm();
        const CompressorProtocol& compressor = CompressorFactory().makeCompressor(compression);
        Bytes opened = decrypter.open(
            {header_, encryptedKey_, initializationVector_, std::move(ciphertext), authenticationTag_});
        if (compression == CompressionAlgorithm::NONE) return Payload(std::move(opened));
        return Payload(compressor.decompress(Payload(std::move(opened)).data()));
    });
}

} // namespace korvane
