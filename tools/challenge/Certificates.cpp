#include "tools/challenge/Certificates.h"

#include "Crypt/DataExtensions.h"
#include "Platform/Security/SecCertificate.h"
#include "tools/common/InputFile.h"
#include "tools/common/UsageError.h"

#include <string_view>
#include <vector>

namespace korvane::challenge {

namespace {

constexpr std::string_view kBegin = "-----BEGIN CERTIFICATE-----";
constexpr std::string_view kEnd = "-----END CERTIFICATE-----";

[[noreturn]] void fail(const std::string& path, const std::string& reason) {
    throw tools::UsageError(path + ": " + reason);
}

std::string withoutSpace(std::string_view text) {
    std::string rest(text);
    std::erase_if(rest, [](char character) {
        return std::string_view(" \t\r\n").find(character) != std::string_view::npos;
    });
    return rest;
}

std::string pemOf(const Bytes& der) {
    constexpr std::size_t kLineLength = 64;
    std::string pem(kBegin);
    pem += '\n';
    const std::string text = base64EncodedString(der);
    for (std::size_t start = 0; start < text.size(); start += kLineLength)
        pem += text.substr(start, kLineLength) + "\n";
    pem += kEnd;
    pem += '\n';
    return pem;
}

/// What the first part of a PEM text is called, or an empty text.
std::string labelOf(std::string_view text) {
    constexpr std::string_view kStart = "-----BEGIN ";
    const std::size_t start = text.find(kStart);
    if (start == std::string_view::npos) return {};
    text.remove_prefix(start + kStart.size());
    return std::string(text.substr(0, text.find("-----")));
}

std::string nameOf(SecKeyType type) {
    return type == SecKeyType::kSecAttrKeyTypeRSA ? "RSA" : "EC";
}

/// The certificates of a file as DER: one, or those of a PEM text.
std::vector<Bytes> readCertificates(const std::string& path) {
    const std::string content = tools::readInputFile(path);
    std::vector<Bytes> certificates;
    std::size_t begin = content.find(kBegin);
    if (begin == std::string::npos) {
        if (const std::string label = labelOf(content); !label.empty())
            fail(path, "This PEM text holds no certificate, but: " + label + ".");
        certificates.push_back(toBytes(content));
    }
    for (; begin != std::string::npos; begin = content.find(kBegin, begin)) {
        begin += kBegin.size();
        const std::size_t end = content.find(kEnd, begin);
        if (end == std::string::npos) fail(path, "The last certificate lacks its end.");
        auto der = fromBase64(withoutSpace(std::string_view(content).substr(begin, end - begin)));
        certificates.push_back(std::move(der).value_or(Bytes()));
        begin = end;
    }
    for (const Bytes& der : certificates)
        if (!SecCertificateCreateWithData(der))
            fail(path, "This is no certificate, neither in DER nor in PEM.");
    return certificates;
}

} // namespace

Bytes readCertificate(const std::string& path) {
    return readCertificates(path).front();
}

Bytes readCertificate(const std::string& path, SecKeyType type) {
    Bytes der = readCertificate(path);
    const auto key = SecCertificateCopyKey(SecCertificateCreateWithData(der).value());
    if (!key) fail(path, "The certificate's key is neither RSA nor on P-256, P-384 or P-521.");
    const SecKeyType found = SecKeyCopyAttributes(*key).kSecAttrKeyType;
    if (found != type)
        fail(path, "The certificate has no " + nameOf(type) + " key, as --algorithm says, but an " +
                       nameOf(found) + " key.");
    return der;
}

TransactionCerts readTransactionCerts(const DirectoryServer& server) {
    const bool isEC = server.algorithm == "EC";
    const SecKeyType type = isEC ? SecKeyType::kSecAttrKeyTypeEC : SecKeyType::kSecAttrKeyTypeRSA;
    return {readCertificate(server.certificate, type), readCertificate(server.root),
            isEC ? CertAlgorithm::EC : CertAlgorithm::RSA, server.identifier};
}

std::string readAuthorities(const std::string& path) {
    std::string pem;
    for (const Bytes& der : readCertificates(path))
        pem += pemOf(der);
    return pem;
}

} // namespace korvane::challenge
