#pragma once

#include "Platform/Bytes.h"
#include "Platform/Security/SecKey.h"

#include <string>

namespace korvane::challenge {

// Certificate files that options name, in DER or PEM (RFC 7468).

/// The certificate of a file, the first one of a PEM text, as DER.
/// @throws UsageError naming a file that cannot be read or holds no certificate, here and below.
[[nodiscard]] Bytes readCertificate(const std::string& path);

/// As `readCertificate`, of a certificate with a key of this kind.
[[nodiscard]] Bytes readCertificate(const std::string& path, SecKeyType type);

/// All certificates of a file as PEM.
[[nodiscard]] std::string readAuthorities(const std::string& path);

} // namespace korvane::challenge
