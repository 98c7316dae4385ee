#pragma once

#include "Platform/Bytes.h"
#include "Platform/Security/SecKey.h"

#include <optional>

namespace korvane {

/// One X.509 certificate (RFC 5280). A handle: copies share the certificate, which never changes. Any thread.
class SecCertificate {
public:
    struct Material;
    explicit SecCertificate(std::shared_ptr<Material> material) : material_(std::move(material)) {}

    [[nodiscard]] Material& material() const noexcept { return *material_; }

private:
    std::shared_ptr<Material> material_;
};

/// @return no value for anything but one certificate in DER: other forms of BER are refused.
[[nodiscard]] std::optional<SecCertificate> SecCertificateCreateWithData(ByteView der);

/// The subject's public key.
/// @return no value for a key that is neither RSA nor on P-256, P-384 or P-521.
[[nodiscard]] std::optional<SecKey> SecCertificateCopyKey(const SecCertificate& certificate);

} // namespace korvane
