#pragma once

#include "Platform/NSBundle.h"
#include "Sdk/SecureChannel/CertAlgorithm.h"

#include <memory>
#include <string>

namespace korvane {

/// The certificates of one directory server as DER files of a bundle. They are read when they are needed.
struct DevInfoCert {
    /// The file of the certificate that device data is sealed for; a name with one extension.
    std::string certFilename;
    /// The file of the root certificate that the ACS's chain must end in; a name with one extension.
    std::string rootCACertFilename;
    std::string directoryServerIDAkaRID;
    CertAlgorithm certAlgorithm;
    /// Null stands for the application's main bundle.
    std::shared_ptr<NSBundle> bundle;
};

} // namespace korvane
