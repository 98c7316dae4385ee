#include "Platform/Security/SecKeyMaterial.h"

#include <openssl/pem.h>

namespace korvane {

namespace {

using namespace openssl;

constexpr auto kPublic = SecKeyClass::kSecAttrKeyClassPublic;
constexpr auto kPrivate = SecKeyClass::kSecAttrKeyClassPrivate;

/// Nobody is asked for a password.
int refusePassword(char*, int, int, void*) {
    return -1;
}

SecKey adoptWhole(EVP_PKEY* key, const unsigned char* end, ByteView der, SecKeyClass keyClass) {
    Key owned(key);
    if (!owned || end != der.data() + der.size())
        throw platformError(CFError::errSecDecode, "The bytes are not one key.");
    return adoptParsedKey(std::move(owned), keyClass);
}

} // namespace

SecKey SecKeyCreateWithPKCS8(ByteView der) {
    const ErrorScope errors;
    const unsigned char* position = der.data();
    const Handle<PKCS8_PRIV_KEY_INFO, PKCS8_PRIV_KEY_INFO_free> info(
        d2i_PKCS8_PRIV_KEY_INFO(nullptr, &position, static_cast<long>(der.size())));
    return adoptWhole(info ? EVP_PKCS82PKEY(info.get()) : nullptr, position, der, kPrivate);
}

SecKey SecKeyCreateWithSubjectPublicKeyInfo(ByteView der) {
    const ErrorScope errors;
    const unsigned char* position = der.data();
    EVP_PKEY* key = d2i_PUBKEY(nullptr, &position, static_cast<long>(der.size()));
    return adoptWhole(key, position, der, kPublic);
}

SecKey SecKeyCreateWithPEM(std::string_view text) {
    const ErrorScope errors;
    const bool isPrivate = text.find("PRIVATE KEY-----") != std::string_view::npos;
    const Bio source(BIO_new_mem_buf(text.data(), static_cast<int>(text.size())));
    Key key(isPrivate ? PEM_read_bio_PrivateKey(source.get(), nullptr, refusePassword, nullptr)
                      : PEM_read_bio_PUBKEY(source.get(), nullptr, refusePassword, nullptr));
    if (!key) throw platformError(CFError::errSecDecode, "The text is not a PEM key.");
    return adoptParsedKey(std::move(key), isPrivate ? kPrivate : kPublic);
}

} // namespace korvane
