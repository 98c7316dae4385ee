#include "Platform/Security/SecCertificateMaterial.h"

#include "Platform/Security/SecKeyMaterial.h"

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

} // namespace

const std::optional<SecKey>& SecCertificate::Material::key() {
    std::call_once(keyIsMade_, [this] { key_ = adoptKey(certificate.get()); });
    return key_;
}

std::optional<SecCertificate> SecCertificateCreateWithData(ByteView der) {
    const ErrorScope errors;
    const unsigned char* position = der.data();
    Certificate certificate(d2i_X509(nullptr, &position, static_cast<long>(der.size())));
    if (!certificate || position != der.data() + der.size()) return std::nullopt;
    return SecCertificate(std::make_shared<SecCertificate::Material>(std::move(certificate)));
}

std::optional<SecKey> SecCertificateCopyKey(const SecCertificate& certificate) {
    return certificate.material().key();
}

} // namespace korvane
