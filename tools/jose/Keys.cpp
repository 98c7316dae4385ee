#include "tools/jose/Keys.h"

#include "Crypt/DataExtensions.h"
#include "Crypt/JWKSet.h"
#include "Crypt/RSAPrivateKey.h"
#include "Crypt/RSAPublicKey.h"
#include "Crypt/SymmetricKey.h"
#include "Input/Arguments.h"
#include "Platform/Security/SecCertificate.h"

namespace korvane::jose {

using namespace input;

/// An RSA private key by its numbers. The library makes no platform key of an RSA private JWK; this type is
/// the way that it leaves to applications.
struct RSAPrivateNumbers {
    RSAPrivateKeyComponents components;
};

RSAPrivateKeyComponents rsaPrivateKeyComponents(const RSAPrivateNumbers& key) {
    return key.components;
}

RSAPrivateNumbers representing(std::type_identity<RSAPrivateNumbers>,
                               const RSAPrivateKeyComponents& components) {
    return {components};
}

static_assert(ExpressibleAsRSAPrivateKeyComponents<RSAPrivateNumbers>);

namespace {

using enum InputErrorCase;

/// A key as the input gives it. EC keys and RSA public keys of a PEM text or certificate are JWKs here too;
/// the platform's form is left to RSA private ones.
using GivenKey = std::variant<SymmetricKey, RSAPublicKey, RSAPrivateKey, ECPublicKey, ECPrivateKey, SecKey>;

template <class... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};
template <class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

bool isPrivate(const SecKey& key) {
    return SecKeyCopyAttributes(key).kSecAttrKeyClass == SecKeyClass::kSecAttrKeyClassPrivate;
}

bool isRSA(const SecKey& key) {
    return SecKeyCopyAttributes(key).kSecAttrKeyType == SecKeyType::kSecAttrKeyTypeRSA;
}

GivenKey ofPlatform(const SecKey& key) {
    if (isRSA(key)) return isPrivate(key) ? GivenKey(key) : GivenKey(RSAPublicKey(key));
    return isPrivate(key) ? GivenKey(ECPrivateKey(key)) : GivenKey(ECPublicKey(key));
}

GivenKey readPEM(const JSON& key, const std::string& path) {
    constexpr Member kPEM{"pem"};
    return ofPlatform(SecKeyCreateWithPEM(Arguments(key, {&kPEM, 1}, path).text(kPEM.name)));
}

GivenKey readCertificate(const JSON& key, const std::string& path) {
    constexpr Member kCertificate{"cert"};
    const std::string name = path + "cert";
    const auto der = fromBase64(Arguments(key, {&kCertificate, 1}, path).text(kCertificate.name));
    if (!der) throw memberError(notBase64, name, "is not Base64.");
    const auto certificate = SecCertificateCreateWithData(*der);
    const auto publicKey = certificate ? SecCertificateCopyKey(*certificate) : std::nullopt;
    if (!publicKey) throw memberError(wrongKey, name, "is no certificate with an RSA or EC key.");
    return ofPlatform(*publicKey);
}

JWKTypeErrorCase typeOfJWK(const JSON& key) {
    try {
        JWKBase::make(key);
    } catch (const JWKTypeError& type) {
        return type.kind();
    }
}

GivenKey readJWK(const JSON& key, std::string_view member) {
    switch (typeOfJWK(key)) {
    case JWKTypeErrorCase::typeIsECPrivate: return ECPrivateKey::decode(key);
    case JWKTypeErrorCase::typeIsECPublic: return ECPublicKey::decode(key);
    case JWKTypeErrorCase::typeIsRSAPublic: return RSAPublicKey::decode(key);
    case JWKTypeErrorCase::typeIsRSAPrivate: return RSAPrivateKey::decode(key);
    case JWKTypeErrorCase::typeIsSymmetric: return SymmetricKey::decode(key);
    case JWKTypeErrorCase::typeIsUnknown: break;
    }
    throw memberError(wrongKey, member, "is of an unknown type: \"kty\" is none of RSA, EC and oct.");
}

GivenKey readGivenKey(const JSON& key, std::string_view member) {
    const std::string path = std::string(member) + ".";
    if (key.contains("pem")) return readPEM(key, path);
    if (key.contains("cert")) return readCertificate(key, path);
    return readJWK(key, member);
}

SecKey platformKey(const RSAPrivateKey& key) {
    const RSAPrivateKeyComponents numbers = key.converted<RSAPrivateNumbers>().components;
    return SecKeyCreateWithRSAPrivateNumbers(numbers.modulus, numbers.exponent, numbers.privateExponent);
}

Bytes coordinate(const std::string& text, JOSEErrorCase failure) {
    std::optional<Bytes> bytes = fromBase64URL(text);
    if (!bytes) throw JOSEError(failure);
    return std::move(*bytes);
}

/// Made of the coordinates at their full length: `ECPublicKey::converted` would cost a
/// P-384 key a byte of each.
SecKey platformKey(const ECPublicKey& key) {
    return representing(std::type_identity<SecKey>{},
                        ECPublicKeyComponents{std::string(rawValue(key.crv())),
                                              coordinate(key.x(), JOSEErrorCase::xNotBase64URLUIntEncoded),
                                              coordinate(key.y(), JOSEErrorCase::yNotBase64URLUIntEncoded)});
}

InputError privateKeyNeeded(std::string_view member) {
    return memberError(wrongKey, member, "is a public key where a private one is needed.");
}

InputError asymmetricKeyNeeded(std::string_view member) {
    return memberError(wrongKey, member, "is a symmetric key where an RSA or EC one is needed.");
}

InputError ecKeyNeeded(std::string_view member) {
    return memberError(wrongKey, member, "is not an EC key.");
}

} // namespace

Key readKey(const JSON& key, std::string_view member) {
    return std::visit(
        Overloaded{[](const SymmetricKey& given) { return Key(given.converted<SecretBytes>()); },
                   [](const RSAPublicKey& given) { return Key(given.converted<SecKey>()); },
                   [](const RSAPrivateKey& given) { return Key(platformKey(given)); },
                   [](const auto& given) { return Key(given); }},
        readGivenKey(key, member));
}

std::string thumbprint(const JSON& key, std::string_view member) {
    return std::visit(
        Overloaded{[](const JWK& given) { return given.thumbprint(); },
                   [](const SecKey& given) { return RSAPublicKey(SecKeyCopyPublicKey(given)).thumbprint(); }},
        readGivenKey(key, member));
}

AnyKey asAnyKey(const Key& key) {
    return std::visit([](const auto& held) { return AnyKey(held); }, key);
}

Key sealingKey(const JSON& key, std::string_view member) {
    return std::visit(Overloaded{[](const SecKey& held) { return Key(SecKeyCopyPublicKey(held)); },
                                 [](const ECPrivateKey& held) { return Key(held.getPublic()); },
                                 [](const auto& held) { return Key(held); }},
                      readKey(key, member));
}

Key openingKey(const JSON& key, std::string_view member) {
    Key read = readKey(key, member);
    const auto* platform = std::get_if<SecKey>(&read);
    const bool isPublic = std::holds_alternative<ECPublicKey>(read) || (platform && !isPrivate(*platform));
    if (isPublic) throw privateKeyNeeded(member);
    return read;
}

SecKey signingKey(const JSON& key, std::string_view member) {
    return std::visit(Overloaded{[&](const SecretBytes&) -> SecKey { throw asymmetricKeyNeeded(member); },
                                 [&](const ECPublicKey&) -> SecKey { throw privateKeyNeeded(member); },
                                 [](const ECPrivateKey& held) { return held.converted<SecKey>(); },
                                 [&](const SecKey& held) {
                                     if (!isPrivate(held)) throw privateKeyNeeded(member);
                                     return held;
                                 }},
                      readKey(key, member));
}

SecKey verifyingKey(const JSON& key, std::string_view member) {
    return std::visit(Overloaded{[&](const SecretBytes&) -> SecKey { throw asymmetricKeyNeeded(member); },
                                 [](const ECPublicKey& held) { return platformKey(held); },
                                 [](const ECPrivateKey& held) { return platformKey(held.getPublic()); },
                                 [](const SecKey& held) { return SecKeyCopyPublicKey(held); }},
                      readKey(key, member));
}

ECPrivateKey agreementPrivateKey(const JSON& key, std::string_view member) {
    const Key read = openingKey(key, member);
    const auto* privateKey = std::get_if<ECPrivateKey>(&read);
    if (!privateKey) throw ecKeyNeeded(member);
    return *privateKey;
}

ECPublicKey agreementPublicKey(const JSON& key, std::string_view member) {
    const Key read = sealingKey(key, member);
    const auto* publicKey = std::get_if<ECPublicKey>(&read);
    if (!publicKey) throw ecKeyNeeded(member);
    return *publicKey;
}

} // namespace korvane::jose
