#include "tools/challenge/Hints.h"

#include "Crypt/DataExtensions.h"
#include "Platform/Security/CFError.h"
#include "Platform/Security/SecTrust.h"
#include "tools/challenge/FailureNames.h"

#include <vector>

namespace korvane::challenge {

namespace {

/// The certificates in the header of a compact JWS (RFC 7515 section 4.1.6); none of a text that is no such.
std::vector<SecCertificate> chainOf(std::string_view compact) {
    std::vector<SecCertificate> chain;
    const auto header = fromBase64URL(compact.substr(0, compact.find('.')));
    const auto object = header ? JSONSerialization::jsonObject(asText(*header)) : std::nullopt;
    if (!object || !object->is_object()) return chain;
    for (const JSON& text : object->value("x5c", JSON::array())) {
        const auto der = text.is_string() ? fromBase64(text.get<std::string>()) : std::nullopt;
        const auto certificate = der ? SecCertificateCreateWithData(*der) : std::nullopt;
        if (certificate) chain.push_back(*certificate);
    }
    return chain;
}

/// The judgement is the library's own, once more: its endings keep the reason to themselves.
std::string complaintAboutChain(const Circumstances& circumstances) {
    const auto root = SecCertificateCreateWithData(circumstances.root);
    std::optional<SecTrust> trust;
    const OSStatus status = SecTrustCreateWithCertificates(chainOf(circumstances.signedContent),
                                                           SecPolicyCreateBasicX509(), trust);
    if (!root || status != errSecSuccess) return {};
    SecTrustSetAnchorCertificates(*trust, {&*root, 1});
    const auto error = SecTrustEvaluateWithError(*trust);
    if (!error) return {};
    return "The chain in acsSignedContent does not lead to the certificate of --ds-root: " +
           error->localizedDescription() + ".";
}

std::string namesIn(const JSON& ending) {
    std::string texts;
    for (const JSON& member : ending)
        if (member.is_string()) texts += member.get<std::string>() + "\n";
    return namesOfFailures(texts);
}

} // namespace

std::string hintAt(const JSON& ending, const Circumstances& circumstances) {
    const bool isRuntimeError = ending["event"] == "runtimeError";
    std::string hint;
    for (const std::string& sentence :
         {circumstances.wire.complaint(), isRuntimeError ? complaintAboutChain(circumstances) : std::string(),
          namesIn(ending)})
        hint += (hint.empty() || sentence.empty() ? "" : " ") + sentence;
    return hint;
}

} // namespace korvane::challenge
