#include "Crypt/JWEHeader.h"

namespace korvane {

namespace {

JSON algorithmMembers(KeyManagementAlgorithm alg, ContentEncryptionAlgorithm enc) {
    JSON::object_t members;
    members.reserve(3);
    members.emplace_back(HeaderParameter::alg, rawValue(alg));
    members.emplace_back(HeaderParameter::enc, rawValue(enc));
    return JSON(std::move(members));
}

} // namespace

JWEHeader::JWEHeader(JSON parameters, std::optional<Bytes> headerData)
    : JOSEHeader(std::move(parameters), std::move(headerData), {HeaderParameter::alg, HeaderParameter::enc}) {
}

JWEHeader::JWEHeader(KeyManagementAlgorithm keyManagementAlgorithm,
                     ContentEncryptionAlgorithm contentEncryptionAlgorithm)
    : JWEHeader(algorithmMembers(keyManagementAlgorithm, contentEncryptionAlgorithm)) {}

JWEHeader::JWEHeader(KeyManagementAlgorithm keyManagementAlgorithm,
                     ContentEncryptionAlgorithm contentEncryptionAlgorithm,
                     const ECPublicKey& ephemeralPublicKey)
    : JWEHeader([&] {
          JSON members = algorithmMembers(keyManagementAlgorithm, contentEncryptionAlgorithm);
          members[std::string(HeaderParameter::epk)] = jsonOf(ephemeralPublicKey.parameters());
          return members;
      }()) {}

JWEHeader::JWEHeader(KeyManagementAlgorithm keyManagementAlgorithm,
                     ContentEncryptionAlgorithm contentEncryptionAlgorithm,
                     const std::string& agreementPartyUInfo, const std::string& agreementPartyVInfo,
                     const ECPublicKey& ephemeralPublicKey)
    : JWEHeader([&] {
          JSON members = algorithmMembers(keyManagementAlgorithm, contentEncryptionAlgorithm);
          members[std::string(HeaderParameter::apu)] = agreementPartyUInfo;
          members[std::string(HeaderParameter::apv)] = agreementPartyVInfo;
          members[std::string(HeaderParameter::epk)] = jsonOf(ephemeralPublicKey.parameters());
          return members;
      }()) {}

std::optional<JWEHeader> JWEHeader::make(Bytes&& data) {
    return parse<JWEHeader>(std::move(data));
}

std::optional<KeyManagementAlgorithm> JWEHeader::keyManagementAlgorithm() const {
    const std::string* name = rawText(HeaderParameter::alg);
    return name ? fromRawValue<KeyManagementAlgorithm>(*name) : std::nullopt;
}

std::optional<ContentEncryptionAlgorithm> JWEHeader::contentEncryptionAlgorithm() const {
    const std::string* name = rawText(HeaderParameter::enc);
    return name ? fromRawValue<ContentEncryptionAlgorithm>(*name) : std::nullopt;
}

std::optional<CompressionAlgorithm> JWEHeader::compressionAlgorithm() const {
    if (!parameters().contains(HeaderParameter::zip)) return CompressionAlgorithm::NONE;
    const std::string* name = rawText(HeaderParameter::zip);
    return name ? fromRawValue<CompressionAlgorithm>(*name) : std::nullopt;
}

std::optional<ECPublicKey> JWEHeader::epk() const {
    const JSON* object = textMap(HeaderParameter::epk);
    if (!object) return std::nullopt;
    try {
        return ECPublicKey::decode(*object);
    } catch (const Failure&) {
        return std::nullopt;
    }
}

void JWEHeader::setEpk(const std::optional<ECPublicKey>& value) {
    setKey(HeaderParameter::epk, value ? &*value : nullptr);
}

} // namespace korvane
