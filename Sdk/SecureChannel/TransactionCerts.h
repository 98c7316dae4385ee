#pragma once

#include "Platform/Bytes.h"
#include "Sdk/SecureChannel/CertAlgorithm.h"

#include <optional>
#include <string>

namespace korvane {

/// The certificates of one directory server as DER bytes.
struct TransactionCerts {
    /// The certificate that device data is sealed for.
    Bytes deviceInfoEncCertDerBytes;
    /// The root certificate that the ACS's chain must end in.
    Bytes dsRootCADerBytes;
    CertAlgorithm algorithm;
    /// Needed with `CertAlgorithm::EC`, where it goes into the derivation of the key.
    std::optional<std::string> directoryServerIDAkaRID = std::nullopt;
};

} // namespace korvane
