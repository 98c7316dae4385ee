#include "tests/support/TestPki.h"

#include "Crypt/DataExtensions.h"

#include <openssl/core_names.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/params.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

#include <memory>
#include <type_traits>

namespace korvane {

namespace {

template <class Object, auto Free>
using Owned = std::unique_ptr<Object, std::integral_constant<decltype(Free), Free>>;
using Key = Owned<EVP_PKEY, EVP_PKEY_free>;
using Certificate = Owned<X509, X509_free>;

/// An RSA key like any other, whose exponents then become 1.
Key rsaOfOne() {
    const Key ordinary(EVP_RSA_gen(2048U));
    OSSL_PARAM* numbers = nullptr;
    EVP_PKEY_todata(ordinary.get(), EVP_PKEY_KEYPAIR, &numbers);
    const Owned<OSSL_PARAM, OSSL_PARAM_free> owner(numbers);
    for (const char* name : {OSSL_PKEY_PARAM_RSA_E, OSSL_PKEY_PARAM_RSA_D, OSSL_PKEY_PARAM_RSA_EXPONENT1,
                             OSSL_PKEY_PARAM_RSA_EXPONENT2})
        OSSL_PARAM_set_ulong(OSSL_PARAM_locate(numbers, name), 1);
    const Owned<EVP_PKEY_CTX, EVP_PKEY_CTX_free> context(EVP_PKEY_CTX_new_from_name(nullptr, "RSA", nullptr));
    EVP_PKEY* key = nullptr;
    EVP_PKEY_fromdata_init(context.get());
    EVP_PKEY_fromdata(context.get(), &key, EVP_PKEY_KEYPAIR, numbers);
    return Key(key);
}

Key generate(TestKeyType type) {
    switch (type) {
    case TestKeyType::p256: return Key(EVP_EC_gen("P-256"));
    case TestKeyType::p384: return Key(EVP_EC_gen("P-384"));
    case TestKeyType::rsa2048: return Key(EVP_RSA_gen(2048U));
    case TestKeyType::rsa1024: return Key(EVP_RSA_gen(1024U));
    case TestKeyType::rsaOfOne: return rsaOfOne();
    case TestKeyType::ed25519: break;
    }
    return Key(EVP_PKEY_Q_keygen(nullptr, nullptr, "ED25519"));
}

/// What one of OpenSSL's writers gives.
template <class Object, class Write>
Bytes derOf(Object* object, Write write) {
    unsigned char* octets = nullptr;
    const int length = write(object, &octets);
    Bytes bytes(octets, octets + length);
    OPENSSL_free(octets);
    return bytes;
}

Bytes pkcs8Of(EVP_PKEY* key) {
    const Owned<PKCS8_PRIV_KEY_INFO, PKCS8_PRIV_KEY_INFO_free> info(EVP_PKEY2PKCS8(key));
    return derOf(info.get(), i2d_PKCS8_PRIV_KEY_INFO);
}

void addExtension(X509* certificate, int nid, const char* value) {
    X509V3_CTX context{};
    X509_EXTENSION* extension = X509V3_EXT_nconf_nid(nullptr, &context, nid, value);
    X509_add_ext(certificate, extension, -1);
    X509_EXTENSION_free(extension);
}

void addExtensions(X509* certificate, const CertificateFields& fields) {
    if (!fields.basicConstraints.empty())
        addExtension(certificate, NID_basic_constraints, fields.basicConstraints.c_str());
    for (const auto& [name, value] : fields.extensions)
        addExtension(certificate, OBJ_sn2nid(name.c_str()), value.c_str());
}

/// @param issuer  null for a certificate that signs itself.
TestIdentity make(const CertificateFields& fields, const TestIdentity* issuer) {
    static long serialNumber = 0;
    const Key key = generate(fields.key);
    const Certificate made(X509_new());
    X509* const certificate = made.get();
    X509_set_version(certificate, X509_VERSION_3);
    ASN1_INTEGER_set(X509_get_serialNumber(certificate), ++serialNumber);
    X509_gmtime_adj(X509_getm_notBefore(certificate), 86400L * fields.firstDay);
    X509_gmtime_adj(X509_getm_notAfter(certificate), 86400L * fields.lastDay);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(certificate), "CN", MBSTRING_UTF8,
                               asBytes(fields.commonName).data(), -1, -1, 0);
    X509_set_pubkey(certificate, key.get());
    addExtensions(certificate, fields);

    const unsigned char* keyAt = issuer ? issuer->pkcs8.data() : nullptr;
    const unsigned char* at = issuer ? issuer->der.data() : nullptr;
    const Key itsKey(issuer ? d2i_AutoPrivateKey(nullptr, &keyAt, static_cast<long>(issuer->pkcs8.size()))
                            : nullptr);
    const Certificate its(issuer ? d2i_X509(nullptr, &at, static_cast<long>(issuer->der.size())) : nullptr);
    EVP_PKEY* const signer = issuer ? itsKey.get() : key.get();
    X509_set_issuer_name(certificate, X509_get_subject_name(issuer ? its.get() : certificate));
    const bool hasOwnDigest = EVP_PKEY_is_a(signer, "ED25519") == 1;
    X509_sign(certificate, signer, hasOwnDigest ? nullptr : EVP_get_digestbyname(fields.digest.c_str()));
    return {derOf(certificate, i2d_X509), pkcs8Of(key.get())};
}

} // namespace

std::string TestIdentity::base64() const {
    return base64EncodedString(der);
}

TestIdentity TestIdentity::issue(const CertificateFields& fields) const {
    return make(fields, this);
}

void leaveOpenSSLError() {
    ERR_raise(ERR_LIB_EVP, ERR_R_MALLOC_FAILURE);
}

TestIdentity selfSigned(const CertificateFields& fields) {
    return make(fields, nullptr);
}

CertificateFields authority(const std::string& commonName) {
    CertificateFields fields;
    fields.commonName = commonName;
    fields.basicConstraints = "critical,CA:TRUE";
    return fields;
}

std::vector<TestIdentity> authorities(std::size_t intermediates) {
    std::vector<TestIdentity> made{selfSigned(authority("Root"))};
    while (made.size() <= intermediates)
        made.push_back(made.back().issue(authority("Intermediate " + std::to_string(made.size()))));
    return made;
}

} // namespace korvane
