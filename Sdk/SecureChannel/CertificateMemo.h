#pragma once

#include "Platform/Bytes.h"
#include "Platform/Security/SecCertificate.h"

#include <optional>

namespace korvane {

/// The certificate of DER bytes, as `SecCertificateCreateWithData`, of which the last few are remembered: a
/// certificate of the configuration is asked for in every transaction, and to decode its key costs more than
/// to seal for it. Not for certificates that come from a peer. Any thread.
[[nodiscard]] std::optional<SecCertificate> rememberedCertificate(ByteView der);

} // namespace korvane
