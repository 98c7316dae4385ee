#pragma once

namespace korvane {

/// How device data is sealed for a directory server: the type of its certificate's key.
enum class CertAlgorithm { RSA, EC };

} // namespace korvane
