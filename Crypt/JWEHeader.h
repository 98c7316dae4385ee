#pragma once

#include "Crypt/Algorithms.h"
#include "Crypt/DeflateWrapper.h"
#include "Crypt/ECPublicKey.h"
#include "Crypt/JOSEHeader.h"

namespace korvane {

/// The protected header of a JWE (RFC 7516 section 4). "alg" and "enc" must be texts; values that no row of
/// the layer has are kept and read as no value.
class JWEHeader : public JOSEHeader {
public:
    /// @param headerData  the bytes of `parameters`, or no value: then they are serialised here.
    /// @throws HeaderParsingError headerIsNotValidJSONObject, or
    /// requiredHeaderParameterMissing for "alg" or "enc".
    explicit JWEHeader(JSON parameters, std::optional<Bytes> headerData = std::nullopt);

    JWEHeader(KeyManagementAlgorithm keyManagementAlgorithm,
              ContentEncryptionAlgorithm contentEncryptionAlgorithm);

    /// "epk" takes over the whole `parameters` of the key.
    JWEHeader(KeyManagementAlgorithm keyManagementAlgorithm,
              ContentEncryptionAlgorithm contentEncryptionAlgorithm, const ECPublicKey& ephemeralPublicKey);

    /// "apu" and "apv" take the texts as they are, without any encoding.
    JWEHeader(KeyManagementAlgorithm keyManagementAlgorithm,
              ContentEncryptionAlgorithm contentEncryptionAlgorithm, const std::string& agreementPartyUInfo,
              const std::string& agreementPartyVInfo, const ECPublicKey& ephemeralPublicKey);

    /// The header of the wire's bytes, which it takes; they stay with the caller where there is no header.
    /// @return no value for anything but a JSON object with the required parameters.
    [[nodiscard]] static std::optional<JWEHeader> make(Bytes&& data);

    [[nodiscard]] std::optional<KeyManagementAlgorithm> algorithm() const { return keyManagementAlgorithm(); }
    [[nodiscard]] std::optional<KeyManagementAlgorithm> keyManagementAlgorithm() const;
    [[nodiscard]] std::optional<ContentEncryptionAlgorithm> encryptionAlgorithm() const {
        return contentEncryptionAlgorithm();
    }
    [[nodiscard]] std::optional<ContentEncryptionAlgorithm> contentEncryptionAlgorithm() const;

    /// `NONE` where there is no "zip"; no value for one that is unknown.
    [[nodiscard]] std::optional<CompressionAlgorithm> compressionAlgorithm() const;

    [[nodiscard]] std::optional<std::string> zip() const { return text(HeaderParameter::zip); }
    [[nodiscard]] std::optional<ECPublicKey> epk() const;
    [[nodiscard]] std::optional<std::string> apu() const { return text(HeaderParameter::apu); }
    [[nodiscard]] std::optional<std::string> apv() const { return text(HeaderParameter::apv); }

    void setZip(const std::optional<std::string>& value) { set(HeaderParameter::zip, value); }
    void setEpk(const std::optional<ECPublicKey>& value);
    void setApu(const std::optional<std::string>& value) { set(HeaderParameter::apu, value); }
    void setApv(const std::optional<std::string>& value) { set(HeaderParameter::apv, value); }
};

} // namespace korvane
