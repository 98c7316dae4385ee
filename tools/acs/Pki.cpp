#include "tools/acs/Pki.h"

#include "Platform/Security/OpenSSLHandles.h"
#include "tools/common/InputFile.h"
#include "tools/common/UsageError.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>
#include <unistd.h>

#include <array>
#include <map>

namespace korvane::acs {

using tools::UsageError;

namespace {

namespace fs = std::filesystem;

enum class KeyKind { RSA, EC, borrowed };
enum class Role { authority, server, signing, encryption };

struct CertificateRow {
    std::string_view name;
    KeyKind kind;
    Role role;
    /// A name above, or empty for a certificate that signs itself.
    std::string_view issuer;
    const char* commonName;
    /// The row above whose key a `borrowed` one certifies.
    std::string_view keyOf = {};
};

constexpr std::string_view kForeignRoot = "foreign-root";

constexpr std::array<CertificateRow, 12> kCertificates{{
    {Pki::tlsRoot, KeyKind::EC, Role::authority, "", "Korvane test TLS root"},
    {Pki::tlsServer, KeyKind::EC, Role::server, Pki::tlsRoot, "localhost"},
    {Pki::directoryServerRoot, KeyKind::EC, Role::authority, "", "Korvane test directory server root"},
    {Pki::directoryServerIntermediate, KeyKind::EC, Role::authority, Pki::directoryServerRoot,
     "Korvane test intermediate"},
    {Pki::signingRSA, KeyKind::RSA, Role::signing, Pki::directoryServerIntermediate, "Korvane test ACS, RSA"},
    {Pki::signingEC, KeyKind::EC, Role::signing, Pki::directoryServerIntermediate, "Korvane test ACS, EC"},
    {Pki::deviceDataRSA, KeyKind::RSA, Role::encryption, Pki::directoryServerRoot,
     "Korvane test device data, RSA"},
    {Pki::deviceDataEC, KeyKind::EC, Role::encryption, Pki::directoryServerRoot,
     "Korvane test device data, EC"},
    {kForeignRoot, KeyKind::EC, Role::authority, "", "Korvane test foreign root"},
    {Pki::foreignIntermediate, KeyKind::EC, Role::authority, kForeignRoot,
     "Korvane test foreign intermediate"},
    {Pki::foreignRSA, KeyKind::borrowed, Role::signing, Pki::foreignIntermediate, "Korvane test ACS, RSA",
     Pki::signingRSA},
    {Pki::foreignEC, KeyKind::borrowed, Role::signing, Pki::foreignIntermediate, "Korvane test ACS, EC",
     Pki::signingEC},
}};

struct ExtensionRow {
    Role role;
    int identifier;
    const char* value;
};

constexpr std::array<ExtensionRow, 9> kExtensions{{
    {Role::authority, NID_basic_constraints, "critical,CA:TRUE"},
    {Role::authority, NID_key_usage, "critical,keyCertSign,cRLSign"},
    {Role::server, NID_subject_alt_name, "IP:127.0.0.1,DNS:localhost"},
    {Role::server, NID_ext_key_usage, "serverAuth"},
    {Role::server, NID_key_usage, "critical,digitalSignature"},
    {Role::signing, NID_basic_constraints, "critical,CA:FALSE"},
    {Role::signing, NID_key_usage, "critical,digitalSignature"},
    {Role::encryption, NID_basic_constraints, "critical,CA:FALSE"},
    {Role::encryption, NID_key_usage, "critical,keyEncipherment,keyAgreement"},
}};

constexpr long kDay = 24L * 60 * 60;
constexpr long kValidity = 3650 * kDay;

void require(bool isDone, const char* what) {
    if (!isDone) throw UsageError(std::string("OpenSSL could not ") + what + ".");
}

struct Issued {
    openssl::Certificate certificate;
    openssl::Key key;
};

using IssuedByName = std::map<std::string_view, Issued>;

openssl::Key makeKey(const CertificateRow& row, const IssuedByName& issued) {
    switch (row.kind) {
    case KeyKind::RSA: return openssl::Key(EVP_RSA_gen(2048));
    case KeyKind::EC: return openssl::Key(EVP_EC_gen("P-256"));
    case KeyKind::borrowed: break;
    }
    EVP_PKEY* key = issued.at(row.keyOf).key.get();
    EVP_PKEY_up_ref(key);
    return openssl::Key(key);
}

void setSerialNumber(X509& certificate) {
    std::array<unsigned char, 16> serial{};
    require(RAND_bytes(serial.data(), static_cast<int>(serial.size())) == 1, "make a serial number");
    serial[0] &= 0x7F;
    const openssl::Number number(BN_bin2bn(serial.data(), static_cast<int>(serial.size()), nullptr));
    require(BN_to_ASN1_INTEGER(number.get(), X509_get_serialNumber(&certificate)) != nullptr,
            "set a serial number");
}

void setNames(X509& certificate, X509& issuer, const CertificateRow& row) {
    const auto* name = reinterpret_cast<const unsigned char*>(row.commonName);
    require(X509_NAME_add_entry_by_txt(X509_get_subject_name(&certificate), "CN", MBSTRING_UTF8, name, -1, -1,
                                       0) == 1,
            "set a name");
    require(X509_set_issuer_name(&certificate, X509_get_subject_name(&issuer)) == 1, "set an issuer");
}

bool isAddress(const std::string& host) {
    in_addr address{};
    return ::inet_pton(AF_INET, host.c_str(), &address) == 1;
}

/// It becomes a part of an extension's text, where other characters would say more than a name.
void requireHost(std::string_view host) {
    constexpr std::string_view kCharacters =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.-";
    constexpr std::size_t kLongest = 253;
    if (host.size() > kLongest || host.find_first_not_of(kCharacters) != std::string_view::npos)
        throw UsageError("--expose: " + std::string(host) + " is no name or IPv4 address of a host.");
}

void addExtensions(X509& certificate, Role role, const std::string& host) {
    for (const ExtensionRow& row : kExtensions) {
        if (row.role != role) continue;
        std::string value = row.value;
        if (row.identifier == NID_subject_alt_name && !host.empty())
            value += (isAddress(host) ? ",IP:" : ",DNS:") + host;
        X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, nullptr, row.identifier, value.c_str());
        const bool isAdded = extension && X509_add_ext(&certificate, extension, -1) == 1;
        X509_EXTENSION_free(extension);
        require(isAdded, "add an extension");
    }
}

Issued issue(const CertificateRow& row, const IssuedByName& issued, const std::string& host) {
    Issued made{openssl::Certificate(X509_new()), makeKey(row, issued)};
    require(made.certificate && made.key, "make a key");
    X509& certificate = *made.certificate;
    const Issued& issuer = row.issuer.empty() ? made : issued.at(row.issuer);
    require(X509_set_version(&certificate, X509_VERSION_3) == 1, "set a version");
    setSerialNumber(certificate);
    setNames(certificate, *issuer.certificate, row);
    // A day back, for peers whose clock is behind.
    X509_gmtime_adj(X509_getm_notBefore(&certificate), -kDay);
    X509_gmtime_adj(X509_getm_notAfter(&certificate), kValidity);
    require(X509_set_pubkey(&certificate, made.key.get()) == 1, "set a key");
    addExtensions(certificate, row.role, host);
    require(X509_sign(&certificate, issuer.key.get(), EVP_sha256()) > 0, "sign a certificate");
    return made;
}

template <class Write>
std::string encoded(Write write) {
    const openssl::Bio memory(BIO_new(BIO_s_mem()));
    require(memory && write(memory.get()) == 1, "encode a certificate or key");
    const char* text = nullptr;
    const long length = BIO_get_mem_data(memory.get(), &text);
    return {text, static_cast<std::size_t>(length)};
}

/// Creates the file with its mode, so that a key is never readable by others, not even for a moment.
void writeFile(const fs::path& path, std::string_view content, mode_t mode) {
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    const bool isWritten =
        file >= 0 && ::write(file, content.data(), content.size()) == static_cast<ssize_t>(content.size());
    const bool isClosed = file >= 0 && ::close(file) == 0;
    if (!isWritten || !isClosed) throw UsageError(path.string() + " cannot be written.");
}

void write(const fs::path& folder, const CertificateRow& row, const Issued& made) {
    const auto path = [&](const char* extension) { return folder / (std::string(row.name) + extension); };
    X509* certificate = made.certificate.get();
    writeFile(path(".der"), encoded([&](BIO* bio) { return i2d_X509_bio(bio, certificate); }), 0644);
    writeFile(path(".pem"), encoded([&](BIO* bio) { return PEM_write_bio_X509(bio, certificate); }), 0644);
    if (row.role == Role::authority || row.kind == KeyKind::borrowed) return;
    std::string key = encoded([&](BIO* bio) {
        return PEM_write_bio_PKCS8PrivateKey(bio, made.key.get(), nullptr, nullptr, 0, nullptr, nullptr);
    });
    writeFile(path(".key"), key, 0600);
    OPENSSL_cleanse(key.data(), key.size());
}

/// Fills a folder beside the wanted one and moves it there as a whole.
void fill(const fs::path& folder, const std::string& host) {
    const fs::path beside = folder.string() + "." + std::to_string(::getpid()) + ".new";
    std::error_code error;
    fs::create_directories(beside, error);
    if (error) throw UsageError(beside.string() + " cannot be made: " + error.message() + ".");
    IssuedByName issued;
    for (const CertificateRow& row : kCertificates)
        write(beside, row, issued.emplace(row.name, issue(row, issued, host)).first->second);
    fs::rename(beside, folder, error);
    if (!error) return;
    std::error_code ignored;
    fs::remove_all(beside, ignored);
    // Another process may have filled it meanwhile.
    const bool isFilled = fs::is_directory(folder, ignored) && !fs::is_empty(folder, ignored) && !ignored;
    if (!isFilled) throw UsageError(folder.string() + " cannot be made: " + error.message() + ".");
}

fs::path withoutTrailingSlash(const fs::path& folder) {
    return folder.has_filename() ? folder : folder.parent_path();
}

} // namespace

Pki::Pki(const fs::path& folder, const std::string& host) : folder_(withoutTrailingSlash(folder)) {
    requireHost(host);
    std::error_code error;
    if (!fs::exists(folder_, error) || fs::is_empty(folder_, error)) fill(folder_, host);
    if (error)
        throw UsageError(folder_.string() + " is no folder that can be read: " + error.message() + ".");
    if (!host.empty()) requireServerFor(host);
}

void Pki::requireServerFor(const std::string& host) const {
    const Bytes encoded = certificate(tlsServer);
    const unsigned char* at = encoded.data();
    const openssl::Certificate read(d2i_X509(nullptr, &at, static_cast<long>(encoded.size())));
    const bool isFor =
        read && (isAddress(host) ? X509_check_ip_asc(read.get(), host.c_str(), 0)
                                 : X509_check_host(read.get(), host.data(), host.size(), 0, nullptr)) == 1;
    if (!isFor)
        throw UsageError(file(tlsServer, ".pem").string() + " is not for " + host +
                         ": give --pki a new folder.");
}

fs::path Pki::file(std::string_view name, std::string_view extension) const {
    return folder_ / (std::string(name) + std::string(extension));
}

Bytes Pki::certificate(std::string_view name) const {
    return toBytes(tools::readInputFile(file(name, ".der")));
}

std::string Pki::key(std::string_view name) const {
    return tools::readInputFile(file(name, ".key"));
}

} // namespace korvane::acs
