#include "Sdk/SecureChannel/KeysContainer.h"

#include "Crypt/DataExtensions.h"
#include "Platform/Platform.h"
#include "Sdk/Events/ForeignText.h"
#include "Sdk/Events/SdkError.h"
#include "Sdk/SecureChannel/CertificateMemo.h"

namespace korvane {

namespace {

using enum SdkErrorCase;

/// The first two pieces of a name between its dots, empty pieces left out; what is missing is empty.
struct ResourceName {
    std::string name;
    std::string extension;
};

ResourceName splitAtDots(std::string_view text) {
    std::vector<std::string> pieces;
    while (!text.empty() && pieces.size() < 2) {
        const std::size_t end = std::min(text.find('.'), text.size());
        if (end > 0) pieces.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    pieces.resize(2);
    return {std::move(pieces[0]), std::move(pieces[1])};
}

constexpr const char* kLoadCert = "loadCert(_:)";

Bytes contentsOfCertFile(const std::string& path, const std::string& name) {
    try {
        return contentsOfFile(path);
    } catch (const CFError& error) {
        KORVANE_RAISE(kLoadCert, InvalidInputException,
                      "Can not load cert file " + name + " : " + error.localizedDescription());
    }
}

} // namespace

KeysContainer::KeysContainer(DevInfoCert devInfoCert) : devInfoCert_(std::move(devInfoCert)) {}

KeysContainer::KeysContainer(TransactionCerts providedCerts) : providedCerts_(std::move(providedCerts)) {}

SecCertificate KeysContainer::loadCert(const std::string& name) const {
    const bool hasOwnBundle = devInfoCert_ && devInfoCert_->bundle;
    const NSBundle& bundle = hasOwnBundle ? *devInfoCert_->bundle : Platform::current().mainBundle();
    const auto [resource, extension] = splitAtDots(name);
    const auto path = bundle.URLForResource(resource, extension);
    if (!path)
        KORVANE_RAISE(kLoadCert, InvalidInputException, "Can not get bundle url for cert file " + name);
    auto certificate = rememberedCertificate(contentsOfCertFile(*path, name));
    if (!certificate)
        KORVANE_RAISE(kLoadCert, SDKRuntimeException, "Can not create SecCertificate for file " + name);
    return std::move(*certificate);
}

std::vector<SecCertificate> KeysContainer::convertStringsToCerts(const std::vector<std::string>& strings) {
    constexpr const char* kFunction = "convertStringsToCerts(_:)";
    std::vector<SecCertificate> certificates;
    certificates.reserve(strings.size());
    for (const std::string& string : strings) {
        const auto der = fromBase64(string);
        if (!der)
            KORVANE_RAISE(kFunction, SDKRuntimeException,
                          "Can not decode base64 cert " + foreignText(string));
        auto certificate = SecCertificateCreateWithData(*der);
        if (!certificate)
            KORVANE_RAISE(kFunction, SDKRuntimeException,
                          "Can not create cert from data for certString " + foreignText(string));
        certificates.push_back(std::move(*certificate));
    }
    return certificates;
}

} // namespace korvane
