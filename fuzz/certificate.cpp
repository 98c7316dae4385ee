// One to three certificates, each behind its length in two big-endian bytes: parsing, the key, and the chain
// check against the fixed root and against the last one itself.

#include "Platform/Security/SecTrust.h"
#include "fuzz/support/Certificates.h"
#include "fuzz/support/Fuzz.h"
#include "fuzz/support/Keys.h"

#include <algorithm>

namespace korvane::fuzzing {

namespace {

std::vector<SecCertificate> parsed(ByteView input) {
    std::vector<SecCertificate> found;
    while (input.size() > 2 && found.size() < 3) {
        const std::size_t length = std::size_t{input[0]} << 8U | input[1];
        const ByteView der = input.subspan(2, std::min(length, input.size() - 2));
        if (auto certificate = SecCertificateCreateWithData(der)) found.push_back(std::move(*certificate));
        input = input.subspan(2 + der.size());
    }
    return found;
}

bool isTrusted(const std::vector<SecCertificate>& chain, const SecCertificate& anchor) {
    std::optional<SecTrust> trust;
    require(SecTrustCreateWithCertificates(chain, SecPolicyCreateBasicX509(), trust) == errSecSuccess,
            "A list of certificates cannot be judged.");
    SecTrustSetAnchorCertificates(*trust, {&anchor, 1});
    const auto error = SecTrustEvaluateWithError(*trust);
    require(!error || !error->localizedDescription().empty(), "A refusal has no text.");
    return !error;
}

/// Nobody can make a certificate under the root: what it vouches for has the key of a fixed certificate.
bool isKnown(const SecCertificate& certificate) {
    static const SecretBytes kRootKey = SecKeyCopyExternalRepresentation(
        *SecCertificateCopyKey(*SecCertificateCreateWithData(certificates().root)));
    const auto key = SecCertificateCopyKey(certificate);
    if (!key) return false;
    const SecretBytes bytes = SecKeyCopyExternalRepresentation(*key);
    return bytes == SecKeyCopyExternalRepresentation(SecKeyCopyPublicKey(keys().rsaLeafPrivate)) ||
           bytes == SecKeyCopyExternalRepresentation(keys().ecPublicSecKey) || bytes == kRootKey;
}

} // namespace

void run(ByteView input) {
    static const SecCertificate kRoot = *SecCertificateCreateWithData(certificates().root);
    const std::vector<SecCertificate> chain = parsed(input);
    if (chain.empty()) return;
    if (isTrusted(chain, kRoot)) require(isKnown(chain.front()), "A forged certificate is trusted.");
    static_cast<void>(isTrusted(chain, chain.back()));
    for (const SecCertificate& certificate : chain)
        static_cast<void>(SecCertificateCopyKey(certificate));
}

} // namespace korvane::fuzzing
