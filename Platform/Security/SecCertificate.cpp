#include "Platform/Security/SecCertificate.h"

#include "Platform/Security/SecKeyMaterial.h"

namespace korvane {

using namespace openssl;

struct SecCertificate::Material {
    Certificate certificate;
};

std::optional<SecCertificate> SecCertificateCreateWithData(ByteView der) {
    const ErrorScope errors;
    const unsigned char* position = der.data();
    Certificate certificate(d2i_X509(nullptr, &position, static_cast<long>(der.size())));
    if (!certificate || position != der.data() + der.size()) return std::nullopt;
    return SecCertificate(
        std::make_shared<SecCertificate::Material>(SecCertificate::Material{std::move(certificate)}));
}

std::optional<SecKey> SecCertificateCopyKey(const SecCertificate& certificate) {
    const ErrorScope errors;
    Key key(X509_get_pubkey(certificate.material().certificate.get()));
    if (!key) return std::nullopt;
    try {
        return adoptParsedKey(std::move(key), SecKeyClass::kSecAttrKeyClassPublic);
    } catch (const CFError&) {
        return std::nullopt;
    }
}

} // namespace korvane
