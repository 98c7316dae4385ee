// DER: the layer's own reader, and the platform's keys and certificates.

#include "Crypt/ASN1DER.h"
#include "Crypt/SecKeyRSAPublicKey.h"
#include "Platform/Security/SecCertificate.h"
#include "Platform/Security/SecKey.h"
#include "fuzz/support/Fuzz.h"
#include "fuzz/support/Keys.h"

#include <array>

namespace korvane::fuzzing {

namespace {

using enum SecKeyType;
using enum SecKeyClass;
using enum SecKeyAlgorithm;

void checkElement(ByteView input, ASN1Type type) {
    const auto element = attempt<ASN1DERParsingError>([&] { return nextTLVTriplet(input); });
    const auto value = attempt<ASN1DERParsingError>([&] { return read(input, type); });
    const auto rest = attempt<ASN1DERParsingError>([&] { return skip(input, type); });
    require(value.has_value() == (element && element->tag == tag(type)),
            "An element is read as another type.");
    require(rest.has_value() == value.has_value(), "What can be read cannot be skipped.");
    if (!value) return;
    require(1 + element->length.size() + value->size() + rest->size() == input.size(),
            "Bytes are lost or found.");
    require(value->data() + value->size() == rest->data(), "An element does not end where the next begins.");
    const Bytes encoded = encode(*value, type);
    require(asText(read(encoded, type)) == asText(*value), "An encoded value does not read as itself.");
    require(skip(encoded, type).empty(), "An encoding has something behind it.");
    // A lone length byte of 128 counts as its own value, which takes two bytes to write.
    const bool isLoneLongForm = element->length.size() == 1 && element->length[0] == 128;
    require(isLoneLongForm || encoded.size() <= input.size() - rest->size(),
            "An encoding is not the shortest.");
}

void checkComponents(ByteView input) {
    const auto components = attempt<ASN1DERParsingError>([&] { return rsaPublicKeyComponents(input); });
    if (!components || (!components->modulus.empty() && components->modulus.front() == 0)) return;
    const RSAPublicKeyComponents again =
        rsaPublicKeyComponents(representing(std::type_identity<Bytes>{}, *components));
    require(again.modulus == components->modulus && again.exponent == components->exponent,
            "The numbers of a key differ from themselves after writing and reading.");
}

/// A key that was accepted must be usable, or fail as one that is not.
void use(const SecKey& key) {
    const Bytes message{1, 2, 3};
    const Bytes block(SecKeyGetBlockSize(key), 1);
    const bool isRsa = SecKeyCopyAttributes(key).kSecAttrKeyType == kSecAttrKeyTypeRSA;
    if (SecKeyCopyAttributes(key).kSecAttrKeyClass == kSecAttrKeyClassPrivate) {
        if (isRsa)
            attempt<CFError>(
                [&] { return SecKeyCreateDecryptedData(key, kSecKeyAlgorithmRSAEncryptionPKCS1, block); });
        else
            attempt<CFError>([&] { return SecKeyCopyKeyExchangeResult(key, SecKeyCopyPublicKey(key)); });
        return;
    }
    const auto algorithm = isRsa ? kSecKeyAlgorithmRSASignatureMessagePSSSHA256
                                 : kSecKeyAlgorithmECDSASignatureMessageX962SHA256;
    attempt<CFError>([&] { return SecKeyVerifySignature(key, algorithm, message, block); });
    attempt<CFError>(
        [&] { return SecKeyCreateEncryptedData(key, kSecKeyAlgorithmRSAEncryptionOAEPSHA256, message); });
    attempt<CFError>([&] { return SecKeyCopyKeyExchangeResult(keys().ecPrivateSecKey, key); });
}

void checkKey(const std::optional<SecKey>& key) {
    if (!key) return;
    const SecKeyAttributes attributes = SecKeyCopyAttributes(*key);
    const auto bytes = attempt<CFError>([&] { return SecKeyCopyExternalRepresentation(*key); });
    if (bytes) {
        const auto again = attempt<CFError>([&] { return SecKeyCreateWithData(*bytes, attributes); });
        require(again.has_value(), "A key does not read what it has written.");
        require(SecKeyCopyAttributes(*again) == attributes &&
                    SecKeyCopyExternalRepresentation(*again) == *bytes,
                "A key differs from itself after writing and reading.");
    }
    use(*key);
}

void checkData(ByteView input) {
    constexpr std::array<SecKeyAttributes, 4> kForms{{{kSecAttrKeyTypeRSA, kSecAttrKeyClassPublic, 0},
                                                      {kSecAttrKeyTypeEC, kSecAttrKeyClassPublic, 256},
                                                      {kSecAttrKeyTypeEC, kSecAttrKeyClassPublic, 384},
                                                      {kSecAttrKeyTypeEC, kSecAttrKeyClassPublic, 521}}};
    for (SecKeyAttributes form : kForms)
        for (const SecKeyClass keyClass : {kSecAttrKeyClassPublic, kSecAttrKeyClassPrivate}) {
            form.kSecAttrKeyClass = keyClass;
            checkKey(attempt<CFError>([&] { return SecKeyCreateWithData(input, form); }));
        }
}

} // namespace

void run(ByteView input) {
    checkElement(input, ASN1Type::integer);
    checkElement(input, ASN1Type::sequence);
    checkComponents(input);
    checkData(input);
    checkKey(attempt<CFError>([&] { return SecKeyCreateWithPKCS8(input); }));
    checkKey(attempt<CFError>([&] { return SecKeyCreateWithSubjectPublicKeyInfo(input); }));
    checkKey(attempt<CFError>([&] { return SecKeyCreateWithPEM(asText(input)); }));
    const auto certificate = SecCertificateCreateWithData(input);
    if (certificate) checkKey(SecCertificateCopyKey(*certificate));
}

} // namespace korvane::fuzzing
