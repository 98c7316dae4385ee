#include "Platform/Security/SecCertificateMaterial.h"

#include "Platform/Security/DEREncoding.h"
#include "Platform/Security/SecKeyMaterial.h"

#include <openssl/x509v3.h>

namespace korvane {

using namespace openssl;

namespace {

/// OpenSSL has decoded the key together with its certificate; here it is only taken over.
std::optional<SecKey> adoptKey(X509* certificate) {
    const ErrorScope errors;
    Key key(X509_get_pubkey(certificate));
    if (!key) return std::nullopt;
    try {
        return adoptParsedKey(std::move(key), SecKeyClass::kSecAttrKeyClassPublic);
    } catch (const CFError&) {
        return std::nullopt;
    }
}

ByteView viewOf(const ASN1_OCTET_STRING* octets) {
    return {ASN1_STRING_get0_data(octets), static_cast<std::size_t>(ASN1_STRING_length(octets))};
}

/// What stands encoded within octets: the extensions that a chain is judged by, and the
/// numbers of an RSA key.
bool isInnerDER(const X509* certificate) {
    for (int index = 0; index < X509_get_ext_count(certificate); ++index) {
        X509_EXTENSION* extension = X509_get_ext(certificate, index);
        if (X509_supported_extension(extension) == 1 && !isDER(viewOf(X509_EXTENSION_get_data(extension))))
            return false;
    }
    const EVP_PKEY* key = X509_get0_pubkey(certificate);
    return !key || EVP_PKEY_is_a(key, "RSA") != 1 || isDER(viewOf(X509_get0_pubkey_bitstr(certificate)));
}

} // namespace

const std::optional<SecKey>& SecCertificate::Material::key() {
    std::call_once(keyIsMade_, [this] { key_ = adoptKey(certificate.get()); });
    return key_;
}

std::optional<SecCertificate> SecCertificateCreateWithData(ByteView der) {
    const ErrorScope errors;
    // OpenSSL reads BER, of which one certificate has many forms, each with another fingerprint.
    if (!isDER(der)) return std::nullopt;
    const unsigned char* position = der.data();
    Certificate certificate(d2i_X509(nullptr, &position, static_cast<long>(der.size())));
    if (!certificate || position != der.data() + der.size() || !isInnerDER(certificate.get()))
        return std::nullopt;
    return SecCertificate(std::make_shared<SecCertificate::Material>(std::move(certificate)));
}

std::optional<SecKey> SecCertificateCopyKey(const SecCertificate& certificate) {
    return certificate.material().key();
}

} // namespace korvane
