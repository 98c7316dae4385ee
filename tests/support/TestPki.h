#pragma once

#include "Platform/Bytes.h"
#include "Platform/Security/SecCertificate.h"
#include "Platform/Security/SecKey.h"

#include <string>
#include <utility>
#include <vector>

namespace korvane {

/// `rsaOfOne` has 1 for its exponents, so that a padded text is its own signature.
enum class TestKeyType { p256, p384, rsa2048, rsa1024, rsaOfOne, ed25519 };

/// What a certificate says. Good for a leaf by default; a test changes what it is about.
struct CertificateFields {
    std::string commonName = "ACS";
    TestKeyType key = TestKeyType::p256;
    /// As OpenSSL writes it; empty for none.
    std::string basicConstraints = "critical,CA:FALSE";
    /// The validity in days from now.
    int firstDay = -1;
    int lastDay = 365;
    /// The digest of the signature.
    std::string digest = "SHA256";
    /// Further extensions: name and value, as OpenSSL writes them.
    std::vector<std::pair<std::string, std::string>> extensions = {};
};

/// A certificate with its private key. A value.
struct TestIdentity {
    Bytes der;
    Bytes pkcs8;

    [[nodiscard]] SecCertificate certificate() const { return *SecCertificateCreateWithData(der); }
    [[nodiscard]] SecKey privateKey() const { return SecKeyCreateWithPKCS8(pkcs8); }
    /// As "x5c" holds it.
    [[nodiscard]] std::string base64() const;

    /// A new identity under this one, whatever this one may sign.
    [[nodiscard]] TestIdentity issue(const CertificateFields& fields) const;
};

/// As an application leaves one that uses OpenSSL too.
void leaveOpenSSLError();

[[nodiscard]] TestIdentity selfSigned(const CertificateFields& fields);

/// The fields of an authority.
[[nodiscard]] CertificateFields authority(const std::string& commonName);

/// A root at the front, and `intermediates` authorities below it, each under the one before.
[[nodiscard]] std::vector<TestIdentity> authorities(std::size_t intermediates);

} // namespace korvane
