#include "Crypt/Encrypter.h"

#include "Crypt/AESCBCEncryption.h"
#include "Crypt/DataExtensions.h"
#include "Crypt/JOSEError.h"

namespace korvane {

namespace {

constexpr std::string_view kHeaderData = "headerData";
constexpr std::string_view kEncryptedKey = "encryptedKey";
constexpr std::string_view kContentKey = "contentKey";

Bytes decodeBase64(const JSON& object, std::string_view name) {
    std::optional<Bytes> bytes = fromBase64(decodeString(object, name));
    if (!bytes)
        throw DecodingError(DecodingErrorCase::dataCorrupted, "\"" + std::string(name) + "\" is not Base64.",
                            {std::string(name)});
    return std::move(*bytes);
}

} // namespace

SecretBytes Encrypter::ECEncryptionContext::jsonData() const {
    const std::array<std::pair<std::string_view, ByteView>, 3> members{
        {{kHeaderData, headerData}, {kEncryptedKey, encryptedKey}, {kContentKey, contentKey}}};
    constexpr std::size_t kRoomForNames = 64;
    JSONObjectWriter writer(kRoomForNames +
                            2 * (headerData.size() + encryptedKey.size() + contentKey.size()));
    for (const auto& [name, value] : members)
        writer.addString(name, SecretString(base64EncodedString(value)));
    std::string json = std::move(writer).finish();
    SecretBytes data = toSecretBytes(asBytes(json));
    cleanse(json);
    return data;
}

Encrypter::ECEncryptionContext Encrypter::ECEncryptionContext::make(ByteView json) {
    const SecretJSON object(decodeObject(asText(json)));
    Bytes contentKey = decodeBase64(*object, kContentKey);
    ECEncryptionContext context{decodeBase64(*object, kHeaderData), decodeBase64(*object, kEncryptedKey),
                                toSecretBytes(contentKey)};
    cleanse(contentKey);
    return context;
}

std::optional<Encrypter> Encrypter::make(KeyManagementAlgorithm keyManagementAlgorithm,
                                         ContentEncryptionAlgorithm contentEncryptionAlgorithm,
                                         const AnyKey& encryptionKey,
                                         std::optional<Bytes> agreementPartyUInfo,
                                         std::optional<Bytes> agreementPartyVInfo) {
    auto mode =
        makeEncryptionKeyManagementMode(keyManagementAlgorithm, contentEncryptionAlgorithm, encryptionKey,
                                        std::move(agreementPartyUInfo), std::move(agreementPartyVInfo));
    if (!mode) return std::nullopt;
    return Encrypter(std::move(mode), keyManagementAlgorithm, contentEncryptionAlgorithm);
}

Encrypter::EncryptionContext Encrypter::encrypt(JWEHeader& header, const Payload& payload) const {
    if (header.keyManagementAlgorithm() != keyManagementAlgorithm_)
        throw JWEError(JWEErrorCase::keyManagementAlgorithmMismatch);
    if (header.contentEncryptionAlgorithm() != contentEncryptionAlgorithm_)
        throw JWEError(JWEErrorCase::contentEncryptionAlgorithmMismatch);
    if (!header.isWritten()) throw HeaderParsingError(HeaderParsingErrorCase::headerIsNotValidJSONObject);
    Bytes encryptedKey;
    SecretBytes contentKey = determineContentKey(header, encryptedKey);
    ContentEncryptionContext content =
        makeContentEncrypter(contentEncryptionAlgorithm_, std::move(contentKey))
            .encrypt(header.data(), payload);
    return {std::move(encryptedKey), std::move(content.ciphertext), std::move(content.authenticationTag),
            std::move(content.initializationVector)};
}

SecretBytes Encrypter::determineContentKey(JWEHeader& header, Bytes& encryptedKey) const {
    if (!shouldContainEphemeralPublicKey(keyManagementAlgorithm_)) {
        auto result = keyManagementMode_->determineContentEncryptionKey();
        encryptedKey = std::move(result.encryptedKey);
        return std::move(result.contentEncryptionKey);
    }
    auto context = ECEncryptionContext::make(keyManagementMode_->determineContentEncryptionKey(header));
    auto newHeader = JWEHeader::make(std::move(context.headerData));
    // A header that was just written cannot be read: callers see a message that does not authenticate.
    if (!newHeader) throw JWEError(JWEErrorCase::hmacNotAuthenticated);
    header = std::move(*newHeader);
    encryptedKey = std::move(context.encryptedKey);
    return std::move(context.contentKey);
}

} // namespace korvane
