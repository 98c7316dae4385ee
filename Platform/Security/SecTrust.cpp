#include "Platform/Security/SecTrust.h"

#include "Platform/Security/SecCertificateMaterial.h"
#include "Platform/Security/SecKeyMaterial.h"

#include <openssl/x509_vfy.h>
#include <openssl/x509v3.h>

#include <algorithm>

namespace korvane {

namespace {

using namespace openssl;

constexpr int kIntermediateLimit = 16;
constexpr int kAuthenticationLevel = 1;
constexpr int kLeastModulusBits = 2048;

void freeStack(STACK_OF(X509) * stack) {
    sk_X509_free(stack);
}

/// Borrows its certificates.
using CertificateStack = Handle<STACK_OF(X509), freeStack>;
using StoreContext = Handle<X509_STORE_CTX, X509_STORE_CTX_free>;

CertificateStack stackOf(const std::vector<SecCertificate>& certificates) {
    CertificateStack stack = required(CertificateStack(sk_X509_new_null()), "a list of certificates");
    for (const SecCertificate& each : certificates)
        if (sk_X509_push(stack.get(), each.material().certificate.get()) <= 0) throw std::bad_alloc();
    return stack;
}

CFError reason(int code) {
    return {code, X509_verify_cert_error_string(code)};
}

void configure(X509_VERIFY_PARAM* parameters,
               std::optional<std::chrono::system_clock::time_point> verifyDate) {
    // An anchor ends the chain, whether or not it signed itself.
    X509_VERIFY_PARAM_set_flags(parameters, X509_V_FLAG_PARTIAL_CHAIN | X509_V_FLAG_POLICY_CHECK);
    // Any policy serves where a certificate demands one. OpenSSL takes no list for an empty one.
    X509_VERIFY_PARAM_add0_policy(parameters, OBJ_nid2obj(NID_any_policy));
    X509_VERIFY_PARAM_set_depth(parameters, kIntermediateLimit);
    X509_VERIFY_PARAM_set_auth_level(parameters, kAuthenticationLevel);
    if (verifyDate) X509_VERIFY_PARAM_set_time(parameters, std::chrono::system_clock::to_time_t(*verifyDate));
}

bool isWeak(const EVP_PKEY* key) {
    const bool isRSA = EVP_PKEY_is_a(key, "RSA") == 1 || EVP_PKEY_is_a(key, "RSA-PSS") == 1;
    return isRSA && (EVP_PKEY_get_bits(key) < kLeastModulusBits || !hasUsableExponent(key));
}

/// OpenSSL's levels of strength round a modulus up and do not look at its exponent.
std::optional<CFError> weakKeyOf(const STACK_OF(X509) * chain) {
    for (int index = 0; index < sk_X509_num(chain); ++index)
        if (isWeak(X509_get0_pubkey(sk_X509_value(chain, index))))
            return reason(index == 0 ? X509_V_ERR_EE_KEY_TOO_SMALL : X509_V_ERR_CA_KEY_TOO_SMALL);
    return std::nullopt;
}

/// Constraints on policies in a certificate that names none (RFC 5280 section 4.2.1.11). OpenSSL 3.0 loses
/// their memory each time that it looks at such a certificate, and anyone can send one.
bool hasConstraintsWithoutPolicies(const SecCertificate& certificate) {
    const X509* x509 = certificate.material().certificate.get();
    return X509_get_ext_by_NID(x509, NID_policy_constraints, -1) >= 0 &&
           X509_get_ext_by_NID(x509, NID_certificate_policies, -1) < 0;
}

} // namespace

SecPolicy SecPolicyCreateBasicX509() {
    return SecPolicy::basicX509;
}

OSStatus SecTrustCreateWithCertificates(std::span<const SecCertificate> certificates, SecPolicy,
                                        std::optional<SecTrust>& trust) {
    trust.reset();
    if (certificates.empty()) return CFError::errSecParam;
    trust = SecTrust(certificates);
    return errSecSuccess;
}

OSStatus SecTrustSetAnchorCertificates(SecTrust& trust, std::span<const SecCertificate> anchors) {
    trust.anchors_.assign(anchors.begin(), anchors.end());
    return errSecSuccess;
}

std::optional<CFError>
SecTrustEvaluateWithError(const SecTrust& trust,
                          std::optional<std::chrono::system_clock::time_point> verifyDate) {
    const ErrorScope errors;
    if (std::ranges::any_of(trust.certificates(), hasConstraintsWithoutPolicies))
        return reason(X509_V_ERR_INVALID_POLICY_EXTENSION);
    const CertificateStack untrusted = stackOf(trust.certificates());
    const CertificateStack anchors = stackOf(trust.anchors());
    const StoreContext context = required(StoreContext(X509_STORE_CTX_new()), "a chain check");
    // Without a store there is no place where OpenSSL could look for further anchors.
    if (X509_STORE_CTX_init(context.get(), nullptr, sk_X509_value(untrusted.get(), 0), untrusted.get()) != 1)
        return reason(X509_V_ERR_UNSPECIFIED);
    X509_STORE_CTX_set0_trusted_stack(context.get(), anchors.get());
    configure(X509_STORE_CTX_get0_param(context.get()), verifyDate);

    if (X509_verify_cert(context.get()) != 1) return reason(X509_STORE_CTX_get_error(context.get()));
    return weakKeyOf(X509_STORE_CTX_get0_chain(context.get()));
}

} // namespace korvane
