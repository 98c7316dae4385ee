#pragma once

#include "Platform/Security/OpenSSLHandles.h"
#include "Platform/Security/SecCertificate.h"

#include <mutex>

namespace korvane {

/// What a certificate handle shares.
struct SecCertificate::Material {
    explicit Material(openssl::Certificate owned) : certificate(std::move(owned)) {}

    const openssl::Certificate certificate;

    /// The subject's key, made at the first call and kept: who verifies under it again
    /// finds its contexts warm.
    [[nodiscard]] const std::optional<SecKey>& key();

private:
    std::once_flag keyIsMade_;
    std::optional<SecKey> key_;
};

} // namespace korvane
