#pragma once

#include "Platform/Bytes.h"
#include "Platform/Security/SecKey.h"
#include "Sdk/Service/TransactionCertsProducerProtocol.h"

#include <string>

namespace korvane::challenge {

// Certificate files that options name, in DER or PEM (RFC 7468).

/// The certificate of a file, the first one of a PEM text, as DER.
/// @throws UsageError naming a file that cannot be read or holds no certificate, here and below.
[[nodiscard]] Bytes readCertificate(const std::string& path);

/// As `readCertificate`, of a certificate with a key of this kind.
[[nodiscard]] Bytes readCertificate(const std::string& path, SecKeyType type);

/// Where a directory server's certificates lie.
struct DirectoryServer {
    std::string identifier;
    /// "EC" or "RSA": the kind of key in its certificate.
    std::string algorithm;
    /// For device data.
    std::string certificate;
    /// The root of the ACS's chain.
    std::string root;
};

/// @throws UsageError as `readCertificate`.
[[nodiscard]] TransactionCerts readTransactionCerts(const DirectoryServer& server);

/// Gives the certificates of the one directory server that a tool is told of.
class GivenCertificates final : public TransactionCertsProducerProtocol {
public:
    explicit GivenCertificates(TransactionCerts certificates) : certificates_(std::move(certificates)) {}

    [[nodiscard]] TransactionCerts getCerts(const std::string& /*directoryServerID*/) override {
        return certificates_;
    }

private:
    TransactionCerts certificates_;
};

/// All certificates of a file as PEM.
[[nodiscard]] std::string readAuthorities(const std::string& path);

} // namespace korvane::challenge
