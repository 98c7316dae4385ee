#include "Sdk/SecureChannel/KeysContainer.h"

#include "Crypt/JWS.h"
#include "Sdk/Events/SdkError.h"
#include "Sdk/SecureChannel/CertificateMemo.h"

#include <algorithm>

namespace korvane {

namespace {

using enum SdkErrorCase;

constexpr const char* kParse = "parseAcsSignedContent(_:sdkReferenceNumber:)";
constexpr const char* kValidate = "validateCertChain(_:)";

bool isAllowed(SignatureAlgorithm algorithm) {
    constexpr auto& allowed = KeysContainer::allowedAcsSignedContentAlgorithms;
    return std::find(allowed.begin(), allowed.end(), algorithm) != allowed.end();
}

} // namespace

std::string KeysContainer::parseAcsSignedContent(std::string_view content,
                                                 const std::string& sdkReferenceNumber) {
    const JWS jws(content);
    // The chain comes first: who cannot be trusted is told nothing about algorithms.
    const auto chain = jws.header().x5c();
    const auto key = chain ? validateCertChain(*chain) : std::nullopt;
    const auto algorithm = jws.header().algorithm();
    if (!key || !algorithm || !isAllowed(*algorithm))
        KORVANE_RAISE(kParse, InvalidAcsResponseException, "AcsSignedContent JWS is not valid.");
    const auto verifier = Verifier::make(*algorithm, *key);
    if (!verifier)
        KORVANE_RAISE(kParse, SDKRuntimeException,
                      "Can not create JWS verifier for algorithm " + std::string(rawValue(*algorithm)) + ".");
    return decryptAcsSignedContent(jws.validate(*verifier).payload().data(), sdkReferenceNumber);
}

std::optional<SecKey> KeysContainer::validateCertChain(const std::vector<std::string>& chain) {
    if (chain.empty())
        KORVANE_RAISE(kValidate, InvalidInputException, "No certificates found in JWS header.");
    const SecPolicy policy = SecPolicyCreateBasicX509();
    const std::vector<SecCertificate> certificates = convertStringsToCerts(chain);
    std::optional<SecTrust> trust;
    if (SecTrustCreateWithCertificates(certificates, policy, trust) != errSecSuccess)
        KORVANE_RAISE(kValidate, SDKRuntimeException, "Can not create SecTrust for cert chain validation.");
    dsRootCA_ = rootCertificate();
    if (!trust) KORVANE_RAISE(kValidate, SDKRuntimeException, "SecTrust for cert validation is nil.");
    SecTrustSetAnchorCertificates(*trust, {&*dsRootCA_, 1});

    const auto error = SecTrustEvaluateWithError(*trust);
    auto key = error ? std::nullopt : SecCertificateCopyKey(certificates.front());
    if (key) return key;

    const std::string failure = "SecTrust cert chain validation fail";
    KORVANE_LOG(kValidate, error ? failure + ": " + error->localizedDescription() + ")" : failure + ".");
    throw SdkError(SDKRuntimeException, failure + ".");
}

SecCertificate KeysContainer::rootCertificate() const {
    if (providedCerts_)
        if (auto certificate = rememberedCertificate(providedCerts_->dsRootCADerBytes))
            return std::move(*certificate);
    if (!devInfoCert_)
        KORVANE_RAISE(kValidate, InvalidInputException,
                      "Can not load root CA certificate for cert chain validation.");
    return loadCert(devInfoCert_->rootCACertFilename);
}

} // namespace korvane
