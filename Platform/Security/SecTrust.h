#pragma once

#include "Platform/Security/SecCertificate.h"

#include <chrono>
#include <optional>
#include <span>
#include <vector>

namespace korvane {

/// A result number of the platform: 0, or one of `CFError`.
using OSStatus = int;
inline constexpr OSStatus errSecSuccess = 0;

/// What a chain is judged by: there is one policy.
enum class SecPolicy { basicX509 };

/// RFC 5280 section 6 without revocation: validity, signatures, basic constraints, key usage, name
/// constraints, policy constraints, critical extensions. No host name, no purpose.
[[nodiscard]] SecPolicy SecPolicyCreateBasicX509();

/// Certificates to judge, and the anchors that they are judged by. A value; evaluating does not change it.
class SecTrust {
public:
    /// The first certificate is the one to judge; the others may serve as its issuers, in any order.
    [[nodiscard]] const std::vector<SecCertificate>& certificates() const noexcept { return certificates_; }
    [[nodiscard]] const std::vector<SecCertificate>& anchors() const noexcept { return anchors_; }

private:
    explicit SecTrust(std::span<const SecCertificate> certificates)
        : certificates_(certificates.begin(), certificates.end()) {}

    friend OSStatus SecTrustCreateWithCertificates(std::span<const SecCertificate>, SecPolicy,
                                                   std::optional<SecTrust>&);
    friend OSStatus SecTrustSetAnchorCertificates(SecTrust&, std::span<const SecCertificate>);

    std::vector<SecCertificate> certificates_;
    std::vector<SecCertificate> anchors_;
};

/// @param trust  is set on success, and no value otherwise.
/// @return `CFError::errSecParam` without a certificate.
[[nodiscard]] OSStatus SecTrustCreateWithCertificates(std::span<const SecCertificate> certificates,
                                                      SecPolicy policy, std::optional<SecTrust>& trust);

/// Sets the only anchors that end a chain, self-signed or not. There are no others: the system's are never
/// asked, and without any nothing is trusted.
OSStatus SecTrustSetAnchorCertificates(SecTrust& trust, std::span<const SecCertificate> anchors);

/// Judges the first certificate. Refused as too weak, wherever they stand in the chain, are MD5 and SHA-1
/// signatures, RSA moduli below 2048 bits and public exponents that are even or 1; chains end after 16
/// intermediate certificates.
/// @param verifyDate  the time of the judgement; no value is now.
/// @return no value for a chain that reaches an anchor, else OpenSSL's reason as number and text.
[[nodiscard]] std::optional<CFError>
SecTrustEvaluateWithError(const SecTrust& trust,
                          std::optional<std::chrono::system_clock::time_point> verifyDate = std::nullopt);

} // namespace korvane
